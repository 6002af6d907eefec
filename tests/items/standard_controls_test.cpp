#include "items/standard_controls.h"

#include <gtest/gtest.h>

namespace item_tests {
namespace {

using namespace ZELAdapterHelper;

// Claims success and writes nothing.
struct SilentControl {
    HRESULT GetRange(LONG, LONG*, LONG*, LONG*, LONG*, LONG*) { return S_OK; }
    HRESULT Get(LONG, LONG*, LONG*) { return S_OK; }
    HRESULT Set(LONG, LONG value, LONG flags) {
        set_value = value;
        set_flags = flags;
        return S_OK;
    }
    LONG set_value = -1;
    LONG set_flags = -1;
};

TEST(SilentControlTest, ReadsAsZero) {
    SilentControl control;
    RangeInfo range{1, 2, 3, 4};
    std::int32_t value = 5;
    bool on = true;
    EXPECT_EQ(GetControlRange(&control, 4, range), S_OK);
    EXPECT_EQ(range.min, 0);
    EXPECT_EQ(range.max, 0);
    EXPECT_EQ(range.default_value, 0);
    EXPECT_EQ(range.step, 0);
    EXPECT_EQ(ControlCapabilities(&control, 4), 0);
    EXPECT_EQ(GetControlValue(&control, 4, value), S_OK);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(GetControlAutomatic(&control, 4, on), S_OK);
    EXPECT_FALSE(on);
}

TEST(SilentControlTest, IsWrittenWithTheZerosThatItGave) {
    SilentControl control;
    EXPECT_EQ(SetControlValue(&control, 4, 7), S_OK);
    EXPECT_EQ(control.set_value, 7);
    EXPECT_EQ(control.set_flags, 0);
    EXPECT_EQ(SetControlAutomatic(&control, 4, true, ModeWrite::OnChange), S_OK);
    EXPECT_EQ(control.set_value, 0);
    EXPECT_EQ(control.set_flags, 1);
}

}  // namespace
}  // namespace item_tests
