#include "tests/propui/controller_fixture.h"

#include <cmath>
#include <limits>

namespace ZELPropUI {
namespace {

constexpr double snap_times[] = {0.0001,     0.00025,    0.0005, 0.001, 0.002, 0.004, 1.0 / 120.0, 1.0 / 60.0,
                                 1.0 / 30.0, 1.0 / 15.0, 0.125,  0.25,  0.5,   1.0,   2.0,         4.0};

class ExposureController : public ControllerTest<CAbsValExposureSliderController> {
protected:
    void SetLimits(double min, double max, std::int32_t scale = -1) {
        At().abs_range = {min, max, min};
        At().scale = scale;
        At().unit = L"sec";
    }

    double ValueAt(std::int32_t position) {
        EXPECT_TRUE(controller_->SetPosition(position));
        return script_.abs_values.back();
    }

    std::wstring TextOf(double value) {
        At().abs_value = value;
        std::int32_t position = 0;
        EXPECT_TRUE(controller_->GetPosition(position));
        std::wstring text;
        EXPECT_TRUE(controller_->GetText(text));
        return text;
    }
};

TEST_F(ExposureController, ShowsShortTimesAsFractions) {
    SetLimits(0.0001, 4, 1);
    EXPECT_EQ(TextOf(0.25), L"1/4 sec");
    EXPECT_EQ(TextOf(0.01), L"1/100 sec");
    EXPECT_EQ(TextOf(0.0001), L"1/10000 sec");
    EXPECT_EQ(TextOf(1.0 / 30.0), L"1/30 sec");
    EXPECT_EQ(TextOf(0.0003), L"1/3333 sec");
}

TEST_F(ExposureController, ShowsLongTimesInSeconds) {
    SetLimits(0.0001, 4, 1);
    EXPECT_EQ(TextOf(0.2501), L"0.250 sec");
    EXPECT_EQ(TextOf(4), L"4.000 sec");
}

TEST_F(ExposureController, ShowsWhatIsNoTimeWithoutHarm) {
    SetLimits(0, 4);
    EXPECT_EQ(TextOf(0), L"0.000 sec");
    EXPECT_EQ(TextOf(1e-12), L"0.000 sec");
    EXPECT_EQ(TextOf(5e-10), L"1/2000000000 sec");
    EXPECT_EQ(TextOf(-2), L"-2.000 sec") << "1/0 would be no value";
    EXPECT_EQ(TextOf(-0.25), L"1/-3 sec");  // -3.5
    EXPECT_EQ(TextOf(std::numeric_limits<double>::quiet_NaN()), L"nan sec");
}

TEST_F(ExposureController, FailsToShowWhatItCannotRead) {
    script_.results["GetAbsValue"] = E_FAIL;
    std::wstring text = L"before";
    EXPECT_FALSE(controller_->GetText(text));
    script_.throwing = {"GetAbsValue"};
    EXPECT_FALSE(controller_->GetText(text));
    EXPECT_EQ(text, L"before");
}

TEST_F(ExposureController, SnapsToEveryTimeOfTheTable) {
    SetLimits(0.0001, 4, 1);
    const double tolerance = (std::log(4.0) - std::log(0.0001)) / 200.0;
    for (const double time : snap_times) {
        EXPECT_EQ(controller_->SnapValue(time), time);
        EXPECT_EQ(controller_->SnapValue(time * std::exp(tolerance * 0.999)), time) << time;
        EXPECT_EQ(controller_->SnapValue(time * std::exp(tolerance * -0.999)), time) << time;
        const double above = time * std::exp(tolerance * 1.001);
        EXPECT_EQ(controller_->SnapValue(above), above) << time;
        const double below = time * std::exp(tolerance * -1.001);
        EXPECT_EQ(controller_->SnapValue(below), below) << time;
    }
}

TEST_F(ExposureController, SnapsOnlyStrictlyWithinTheTolerance) {
    SetLimits(0, 100);  // half a step is 0.5
    EXPECT_EQ(controller_->SnapValue(4.5), 4.5);
    EXPECT_EQ(controller_->SnapValue(1.5), 1.5);
    EXPECT_EQ(controller_->SnapValue(4.25), 4.0);
    EXPECT_EQ(controller_->SnapValue(3.75), 4.0);
}

TEST_F(ExposureController, SnapsOnFromWhereItSnappedTo) {
    SetLimits(0, 1000);  // half a step is 5, so -4 alone would reach 0.5 only
    EXPECT_EQ(controller_->SnapValue(-4), 4.0);
}

TEST_F(ExposureController, SnapsNothingWithoutLimits) {
    SetLimits(0, 1000);
    script_.results["GetAbsRange"] = E_FAIL;
    EXPECT_EQ(controller_->SnapValue(0.3), 0.3);
}

TEST_F(ExposureController, WritesTheEndsOfTheScaleExactly) {
    SetLimits(0.0001, 4, 1);
    EXPECT_EQ(ValueAt(0), 0.0001);
    EXPECT_EQ(ValueAt(100), 4.0);
    const double step = (std::log(4.0) - std::log(0.0001)) / 100.0;
    EXPECT_EQ(ValueAt(50), std::exp(std::log(0.0001) + step * 50.0));
}

TEST_F(ExposureController, WritesEndsFarFromTheTableToTheLastBit) {
    SetLimits(1e-6, 30, 1);
    EXPECT_EQ(ValueAt(0), 1e-6);
    EXPECT_EQ(ValueAt(100), 30.0);
    EXPECT_EQ(static_cast<std::int32_t>(ValueAt(100) * 1e6), 30'000'000);
}

TEST_F(ExposureController, TakesItsOwnTextBack) {
    SetLimits(0, 4);
    for (const double time : {0.0, 1e-12, 0.0001, 0.25, 0.251, 4.0, 1e20, -2.0}) {
        const std::wstring text = TextOf(time);
        EXPECT_TRUE(controller_->SetText(text)) << text;
        EXPECT_EQ(TextOf(script_.abs_values.back()), text);
    }
}

TEST_F(ExposureController, SnapsAfterTheLimits) {
    SetLimits(0.00011, 3.9, 1);
    EXPECT_EQ(ValueAt(100), 4.0);
    EXPECT_EQ(ValueAt(0), 0.00011);
}

TEST_F(ExposureController, ReachesEveryTimeOfTheTableFromSomePosition) {
    SetLimits(0.0001, 4, 1);
    for (std::int32_t position = 0; position <= 100; ++position) (void)ValueAt(position);
    for (const double time : snap_times) {
        EXPECT_NE(std::find(script_.abs_values.begin(), script_.abs_values.end(), time),
                  script_.abs_values.end())
            << time;
    }
}

TEST_F(ExposureController, DoesNotSnapWhatIsTyped) {
    SetLimits(0.0001, 4, 1);
    std::int32_t position = 0;
    ASSERT_TRUE(controller_->GetPosition(position));
    EXPECT_TRUE(controller_->SetText(L"0.1251 sec"));
    EXPECT_TRUE(controller_->SetText(L"1/1000 sec"));
    EXPECT_TRUE(controller_->SetText(L"100 sec"));
    EXPECT_EQ(script_.abs_values, (std::vector<double>{0.1251, 0.001, 100}));
}

}  // namespace
}  // namespace ZELPropUI
