#include "propui/scale_measure.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace ZELPropUI {
namespace {

TEST(ScaleMeasureOnWindows, IsWhatMulDivGives) {
    for (const int dots : {72, 96, 120, 144, 168, 192, 288}) {
        for (int measure = -300; measure <= 300; ++measure) {
            ASSERT_EQ(ScaleMeasure(measure, dots), MulDiv(measure, dots, 96)) << measure << " at " << dots;
        }
        for (const int extreme : {INT_MAX, INT_MAX / 2, -INT_MAX, -INT_MAX / 2}) {
            EXPECT_EQ(ScaleMeasure(extreme, dots), MulDiv(extreme, dots, 96)) << extreme << " at " << dots;
        }
    }
}

}  // namespace
}  // namespace ZELPropUI
