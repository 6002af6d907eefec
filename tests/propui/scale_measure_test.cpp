#include "propui/scale_measure.h"

#include <gtest/gtest.h>

namespace ZELPropUI {
namespace {

constexpr int largest = std::numeric_limits<int>::max();

TEST(ScaleMeasure, IsTheMeasureAt96) { EXPECT_EQ(ScaleMeasure(18, 96), 18); }

TEST(ScaleMeasure, RoundsHalvesAwayFromZero) {
    EXPECT_EQ(ScaleMeasure(5, 120), 6);      // 6.25
    EXPECT_EQ(ScaleMeasure(18, 120), 23);    // 22.5
    EXPECT_EQ(ScaleMeasure(-18, 120), -23);  // -22.5
    EXPECT_EQ(ScaleMeasure(23, 120), 29);    // 28.75
    EXPECT_EQ(ScaleMeasure(5, 144), 8);      // 7.5
    EXPECT_EQ(ScaleMeasure(-5, 144), -8);
    EXPECT_EQ(ScaleMeasure(23, 192), 46);
    EXPECT_EQ(ScaleMeasure(23, 72), 17);  // 17.25
    EXPECT_EQ(ScaleMeasure(0, 120), 0);
}

TEST(ScaleMeasure, TellsOverflowByMinusOne) {
    EXPECT_EQ(ScaleMeasure(largest, 96), largest);
    EXPECT_EQ(ScaleMeasure(largest, 192), -1);
    EXPECT_EQ(ScaleMeasure(-largest, 192), -1);
}

}  // namespace
}  // namespace ZELPropUI
