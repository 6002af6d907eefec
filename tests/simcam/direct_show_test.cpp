#include "tests/simcam/driver_client.h"

#include <gtest/gtest.h>

namespace simcam_test {
namespace {

using namespace simcam;

constexpr LONG exposure = 4;
constexpr LONG focus = 6;
constexpr LONG white_balance = 7;
constexpr LONG gain = 9;

class DirectShow : public testing::Test {
protected:
    static camera_options Options() {
        camera_options options;
        options.vendor = full_vendor_model();
        return options;
    }
    camera_ptr camera_ = make_camera(Options());
    IAMCameraControl* const control_ = camera_->camera_control();
    IAMVideoProcAmp* const amp_ = camera_->video_proc_amp();
};

TEST_F(DirectShow, GivesRanges) {
    camera_->vendor()->camera_control[focus] = {1, 2, 3, -4, 5, 6, 7, limit_policy::refuse};
    LONG min = 0, max = 0, step = 0, default_value = 0, flags = 0;
    EXPECT_EQ(control_->GetRange(focus, &min, &max, &step, &default_value, &flags), S_OK);
    EXPECT_EQ(min, -4);
    EXPECT_EQ(max, 5);
    EXPECT_EQ(step, 6);
    EXPECT_EQ(default_value, 7);
    EXPECT_EQ(flags, 3);
    EXPECT_EQ(control_->GetRange(gain, &min, &max, &step, &default_value, &flags), property_unknown);
    EXPECT_EQ(amp_->GetRange(gain, &min, &max, &step, &default_value, &flags), S_OK);
    EXPECT_EQ(amp_->GetRange(exposure, &min, &max, &step, &default_value, &flags), property_unknown);
}

TEST_F(DirectShow, GivesValueAndMode) {
    LONG value = 0, flags = 0;
    EXPECT_EQ(control_->Get(exposure, &value, &flags), S_OK);
    EXPECT_EQ(value, 333);
    EXPECT_EQ(flags, 2);
    EXPECT_EQ(control_->Get(99, &value, &flags), property_unknown);
}

TEST_F(DirectShow, TakesValuesInsideTheLimitsAlone) {
    EXPECT_EQ(control_->Set(focus, 1023, 2), S_OK);
    EXPECT_EQ(control_->Set(focus, 1024, 2), E_INVALIDARG);
    EXPECT_EQ(control_->Set(99, 1, 2), property_unknown);
    EXPECT_EQ(camera_->vendor()->camera_control[focus].value, 1023);
}

TEST_F(DirectShow, TakesTheModesThatItHasAlone) {
    EXPECT_EQ(control_->Set(focus, 1, 0), E_INVALIDARG);
    EXPECT_EQ(control_->Set(focus, 1, 3), E_INVALIDARG);
    EXPECT_EQ(control_->Set(focus, 5000, 1), S_OK);
    EXPECT_EQ(camera_->vendor()->camera_control[focus].flags, 1U);
    camera_->vendor()->camera_control[focus].capabilities = 2;
    EXPECT_EQ(control_->Set(focus, 1, 1), E_INVALIDARG);
}

TEST_F(DirectShow, ChangesTheModeOfWhiteBalanceWithAValueOfZero) {
    EXPECT_EQ(amp_->Set(white_balance, 0, 1), S_OK);
    EXPECT_EQ(amp_->Set(white_balance, 0, 2), S_OK);
    EXPECT_EQ(camera_->vendor()->video_proc_amp[white_balance].value, 2500);
}

TEST_F(DirectShow, RefusesNullPointers) {
    LONG value = 0;
    EXPECT_EQ(control_->Get(exposure, nullptr, &value), E_POINTER);
    EXPECT_EQ(control_->Get(exposure, &value, nullptr), E_POINTER);
    EXPECT_EQ(amp_->GetRange(gain, &value, &value, &value, nullptr, &value), E_POINTER);
}

}  // namespace
}  // namespace simcam_test
