#include "tests/propui/controller_fixture.h"

#include <cmath>
#include <limits>
#include <random>

namespace ZELPropUI {
namespace {

constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();

class AbsController : public ControllerTest<CAbsValSliderController> {
protected:
    void SetLimits(double min, double max, std::int32_t scale = -1) {
        At().abs_range = {min, max, min};
        At().scale = scale;
    }

    double ValueAt(std::int32_t position) {
        EXPECT_TRUE(controller_->SetPosition(position));
        return script_.abs_values.back();
    }

    std::int32_t PositionOf(double value) {
        At().abs_value = value;
        std::int32_t position = 77;
        EXPECT_TRUE(controller_->GetPosition(position));
        return position;
    }
};

TEST_F(AbsController, HasPositionsFrom0To100WithoutAsking) {
    std::int32_t low = 77;
    std::int32_t high = 77;
    EXPECT_TRUE(controller_->GetPositionRange(low, high));
    EXPECT_EQ(low, 0);
    EXPECT_EQ(high, 100);
    EXPECT_TRUE(script_.log.empty());
}

TEST_F(AbsController, DividesALinearScaleIntoHundredSteps) {
    SetLimits(-50, 150);
    EXPECT_EQ(ValueAt(0), -50);
    EXPECT_EQ(ValueAt(30), 10);
    EXPECT_EQ(ValueAt(100), 150);
}

TEST_F(AbsController, MultipliesTheStepLast) {
    SetLimits(0, 0.7);
    EXPECT_EQ(ValueAt(30), 0.7 / 100.0 * 30.0);
    EXPECT_NE(ValueAt(30), 0.7 * 30.0 / 100.0);
}

TEST_F(AbsController, HoldsPositionsToTheLimits) {
    SetLimits(-50, 150);
    EXPECT_EQ(ValueAt(-1), -50);
    EXPECT_EQ(ValueAt(101), 150);
    EXPECT_EQ(ValueAt(smallest), -50);
}

TEST_F(AbsController, LetsTheMinimumWinOverACrossedMaximum) {
    SetLimits(10, 0);
    EXPECT_EQ(ValueAt(0), 10);
    EXPECT_EQ(ValueAt(50), 10);
    EXPECT_EQ(ValueAt(100), 10);
}

TEST_F(AbsController, DividesALogarithmicScaleEvenly) {
    SetLimits(0.0001, 4, 1);
    EXPECT_EQ(ValueAt(0), 0.0001);
    EXPECT_EQ(ValueAt(100), 4);
    const double step = (std::log(4.0) - std::log(0.0001)) / 100.0;
    EXPECT_EQ(ValueAt(25), std::exp(std::log(0.0001) + step * 25.0));
    EXPECT_EQ(ValueAt(50), std::exp(std::log(0.0001) + step * 50.0));
}

// Logarithms and hundredths of a range do not come back to the bit that they came from.
TEST_F(AbsController, WritesTheLimitsAtTheEndsToTheLastBit) {
    std::mt19937 random(6);
    std::uniform_int_distribution<int> microseconds(1, 40'000'000);
    for (int round = 0; round < 2000; ++round) {
        const double min = microseconds(random) / 1e6;
        const double max = min + microseconds(random) / 1e6;
        for (const std::int32_t scale : {0, 1}) {
            const auto item =
                platform::com_ptr<CZELItemDataBase>::attach(new test_support::FakeItem(script_));
            controller_ = platform::com_ptr<CAbsValSliderController>::attach(
                new CAbsValSliderController(item.get(), key));
            SetLimits(min, max, scale);
            ASSERT_EQ(ValueAt(0), min) << max << " on scale " << scale;
            ASSERT_EQ(ValueAt(100), max) << min << " on scale " << scale;
        }
    }
}

TEST_F(AbsController, IsLinearForEveryOtherScale) {
    SetLimits(1, 101, 2);
    EXPECT_EQ(ValueAt(50), 51);
}

TEST_F(AbsController, FindsThePositionsThatItWrote) {
    SetLimits(0.0001, 4, 1);
    for (std::int32_t position = 0; position <= 100; ++position) {
        EXPECT_EQ(PositionOf(ValueAt(position)), position);
    }
}

TEST_F(AbsController, RoundsPositionsByTruncatingTheSum) {
    SetLimits(0, 10);
    EXPECT_EQ(PositionOf(3.14), 31);
    EXPECT_EQ(PositionOf(3.15), 32);
    EXPECT_EQ(PositionOf(-0.07), 0);  // -0.2
    EXPECT_EQ(PositionOf(-0.3), -2);  // -2.5
    EXPECT_EQ(PositionOf(20), 200);
}

TEST_F(AbsController, FormsTheMultiplierOfAPositionFirst) {
    SetLimits(0, 3);
    EXPECT_EQ(PositionOf(0.285), 10);  // 0.285 * 100 / 3 + 0.5 stays below 10
    EXPECT_EQ(PositionOf(1.005), 34);
}

TEST_F(AbsController, TruncatesWhatIsNoNumberToTheSmallest) {
    SetLimits(5, 5);
    EXPECT_EQ(PositionOf(5), smallest);  // NaN
    EXPECT_EQ(PositionOf(6), smallest);  // infinite
    EXPECT_EQ(PositionOf(4), smallest);
}

TEST_F(AbsController, TruncatesWhatDoesNotFitToTheSmallest) {
    SetLimits(0, 1e-9);
    EXPECT_EQ(PositionOf(1), smallest);
    EXPECT_EQ(PositionOf(-1), smallest);
}

TEST_F(AbsController, GivesTheMaximumWhereALogarithmHasNoStart) {
    SetLimits(0, 4, 1);
    EXPECT_EQ(ValueAt(0), 0);
    EXPECT_EQ(ValueAt(1), 4);
    EXPECT_EQ(ValueAt(50), 4);
    EXPECT_EQ(PositionOf(2), smallest);
}

TEST_F(AbsController, FetchesLimitsAndUnitOnce) {
    SetLimits(0, 100);
    (void)ValueAt(5);
    (void)PositionOf(6);
    (void)ValueAt(7);
    EXPECT_EQ(script_.TakeLog(),
              (Log{"GetAbsRange 7", "GetAbsUnit 7", "SetAbsValue 7", "GetAbsValue 7", "SetAbsValue 7"}));
}

TEST_F(AbsController, AsksForTheValueBeforeTheLimits) {
    SetLimits(0, 100);
    (void)PositionOf(6);
    EXPECT_EQ(script_.TakeLog(), (Log{"GetAbsValue 7", "GetAbsRange 7", "GetAbsUnit 7"}));
}

TEST_F(AbsController, LeavesTheLimitsAloneWithoutAValue) {
    script_.results["GetAbsValue"] = E_FAIL;
    std::int32_t position = 77;
    std::wstring text = L"before";
    EXPECT_FALSE((At(), controller_->GetPosition(position)));
    EXPECT_FALSE(controller_->GetText(text));
    EXPECT_EQ(position, 77);
    EXPECT_EQ(text, L"before");
    EXPECT_EQ(script_.TakeLog(), (Log{"GetAbsValue 7", "GetAbsValue 7"}));
}

TEST_F(AbsController, AsksForLimitsAndUnitUntilTheLimitsAreThere) {
    SetLimits(0, 100);
    At().unit = L"dB";
    script_.results["GetAbsRange"] = E_FAIL;
    std::int32_t position = 77;
    EXPECT_FALSE(controller_->SetPosition(5));
    EXPECT_FALSE(controller_->GetPosition(position));
    EXPECT_EQ(position, 77);
    EXPECT_EQ(script_.TakeLog(),
              (Log{"GetAbsRange 7", "GetAbsUnit 7", "GetAbsValue 7", "GetAbsRange 7", "GetAbsUnit 7"}));

    std::wstring text;
    EXPECT_TRUE(controller_->GetText(text));
    EXPECT_EQ(text, L"0.000 dB");
    script_.results.clear();
    EXPECT_EQ(ValueAt(5), 5);
}

TEST_F(AbsController, DoesWithoutAUnit) {
    SetLimits(1, 101, 1);
    At().unit = L"dB";
    script_.results["GetAbsUnit"] = E_NOTIMPL;
    EXPECT_EQ(ValueAt(50), 51);
    std::wstring text;
    EXPECT_TRUE(controller_->GetText(text));
    EXPECT_EQ(text, L"51.000 ");
}

TEST_F(AbsController, DoesNotAskForTheUnitToShowAText) {
    At().abs_value = 1.5;
    At().unit = L"dB";
    std::wstring text;
    EXPECT_TRUE(controller_->GetText(text));
    EXPECT_EQ(text, L"1.500 ");
    EXPECT_EQ(script_.TakeLog(), Log{"GetAbsValue 7"});

    (void)PositionOf(1.5);
    EXPECT_TRUE(controller_->GetText(text));
    EXPECT_EQ(text, L"1.500 dB");
}

TEST_F(AbsController, WritesWhatIsTypedAsItStands) {
    SetLimits(0, 1);
    At().unit = L"sec";
    (void)PositionOf(0);
    for (const wchar_t* text : {L"0,5 sec", L"12abc", L"-3", L"1/1000 sec"}) {
        EXPECT_TRUE(controller_->SetText(text)) << text;
    }
    EXPECT_EQ(script_.abs_values, (std::vector<double>{0.5, 12, -3, 0.001}));
}

// Whatever the value and its unit are: the text reads as a number not further away than it was rounded.
TEST_F(AbsController, TakesItsOwnTextBackWithTheRoundingAlone) {
    constexpr double values[] = {
        0,      1.5,    -0.0004, 1234567,  -1234567.125, 999999999.9995, 123456789012345.0,
        1.5e20, -1e300, 0.29,    -1.5e-300};
    for (const wchar_t* unit : {L"", L"dB", L"counts/", L"counts/s", L"1/s", L"micrometers a second",
                                L"counts/s ", L" 1/s", L"counts/\ns", L"%", L"/"}) {
        for (const double value : values) {
            At().unit = unit;
            SetLimits(-1e301, 1e301);
            const auto item =
                platform::com_ptr<CZELItemDataBase>::attach(new test_support::FakeItem(script_));
            controller_ = platform::com_ptr<CAbsValSliderController>::attach(
                new CAbsValSliderController(item.get(), key));
            (void)PositionOf(value);
            std::wstring text;
            ASSERT_TRUE(controller_->GetText(text));
            // An edit holds one line.
            ASSERT_TRUE(controller_->SetText(text.substr(0, text.find(L'\n')))) << text;
            EXPECT_LE(std::fabs(script_.abs_values.back() - value), 0.0005) << text;
        }
    }
}

TEST_F(AbsController, WritesNothingForATextThatIsNoValue) {
    for (const wchar_t* text : {L"", L"abc", L"1/0", L"1/2.5", L"sec"})
        EXPECT_FALSE(controller_->SetText(text)) << text;
    EXPECT_TRUE(script_.log.empty());
}

TEST_F(AbsController, TurnsExceptionsIntoFailures) {
    SetLimits(0, 1);
    for (const char* operation :
         {"GetAbsRange", "GetAbsUnit", "GetAbsValue", "SetAbsValue", "IsAvailable", "IsReadOnly"}) {
        script_.throwing = {operation};
        const auto item = platform::com_ptr<CZELItemDataBase>::attach(new test_support::FakeItem(script_));
        CAbsValSliderController controller(item.get(), key);
        std::int32_t position = 0;
        std::wstring text;
        const bool all = controller.GetPosition(position) && controller.SetPosition(0) &&
                         controller.GetText(text) && controller.SetText(L"5") && controller.IsAvailable() &&
                         !controller.IsReadOnly();
        // One that tells no unit is shown without.
        const bool goes_on = std::string(operation) == "IsReadOnly" || std::string(operation) == "GetAbsUnit";
        EXPECT_EQ(all, goes_on) << operation;
    }
}

TEST_F(AbsController, SnapsNothing) {
    SetLimits(0, 1);
    EXPECT_EQ(controller_->SnapValue(0.499), 0.499);
}

}  // namespace
}  // namespace ZELPropUI
