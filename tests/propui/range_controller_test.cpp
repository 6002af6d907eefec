#include "tests/propui/controller_fixture.h"

#include <limits>

namespace ZELPropUI {
namespace {

using limits = std::numeric_limits<std::int32_t>;

class RangeController : public ControllerTest<CRangeSliderController> {
protected:
    void SetRange(std::int32_t min, std::int32_t max, std::int32_t step) {
        At().range = {min, max, min, step};
    }

    std::int32_t HighPosition() {
        std::int32_t low = 77;
        std::int32_t high = 77;
        EXPECT_TRUE(controller_->GetPositionRange(low, high));
        EXPECT_EQ(low, 0);
        return high;
    }

    std::int32_t PositionOf(std::int32_t value) {
        At().value = value;
        std::int32_t position = 77;
        EXPECT_TRUE(controller_->GetPosition(position));
        return position;
    }

    std::int32_t ValueAt(std::int32_t position) {
        EXPECT_TRUE(controller_->SetPosition(position));
        return script_.values.back();
    }
};

TEST_F(RangeController, CountsPositionsInSteps) {
    SetRange(10, 100, 10);
    EXPECT_EQ(HighPosition(), 9);
    EXPECT_EQ(ValueAt(3), 40);
    EXPECT_EQ(ValueAt(0), 10);
    EXPECT_EQ(ValueAt(9), 100);
    EXPECT_EQ(PositionOf(47), 3);
    EXPECT_EQ(PositionOf(10), 0);
}

TEST_F(RangeController, TruncatesTowardZero) {
    SetRange(10, 109, 10);
    EXPECT_EQ(HighPosition(), 9);
    EXPECT_EQ(PositionOf(5), 0);
    EXPECT_EQ(PositionOf(-9), -1);
}

TEST_F(RangeController, DoesNotHoldPositionsToTheRange) {
    SetRange(0, 10, 2);
    EXPECT_EQ(ValueAt(50), 100);
    EXPECT_EQ(ValueAt(-3), -6);
    EXPECT_EQ(PositionOf(100), 50);
}

TEST_F(RangeController, HasNoPositionsWithoutStep) {
    SetRange(10, 100, 0);
    EXPECT_EQ(HighPosition(), 77);
    std::int32_t position = 77;
    EXPECT_FALSE(controller_->GetPosition(position));
    EXPECT_EQ(position, 77);
    EXPECT_EQ(ValueAt(3), 10);
}

TEST_F(RangeController, TakesANegativeStepForWritingOnly) {
    SetRange(100, 10, -10);
    EXPECT_EQ(HighPosition(), 9);
    EXPECT_EQ(ValueAt(2), 80);
    std::int32_t position = 77;
    EXPECT_FALSE(controller_->GetPosition(position));
    EXPECT_EQ(position, 77);
}

TEST_F(RangeController, AsksForTheValueBeforeItLooksAtTheStep) {
    SetRange(10, 100, 0);
    std::int32_t position = 0;
    EXPECT_FALSE(controller_->GetPosition(position));
    EXPECT_EQ(script_.TakeLog(), (Log{"GetRange 7", "GetValue 7"}));
}

TEST_F(RangeController, WrapsWhereLimitsGoBeyond32Bits) {
    SetRange(limits::min(), limits::max(), 1);
    EXPECT_EQ(HighPosition(), -1);
    EXPECT_EQ(PositionOf(limits::max()), -1);
    EXPECT_EQ(PositionOf(0), limits::min());
    EXPECT_EQ(ValueAt(-1), limits::max());
}

TEST_F(RangeController, WrapsTheProductOfStepAndPosition) {
    SetRange(1, 100, 1 << 30);
    EXPECT_EQ(ValueAt(4), 1);
    EXPECT_EQ(ValueAt(2), limits::min() + 1);
}

TEST_F(RangeController, WrapsTheOneQuotientThatDoesNotFit) {
    SetRange(0, limits::min(), -1);
    EXPECT_EQ(HighPosition(), limits::min());
}

TEST_F(RangeController, FetchesTheRangeOnce) {
    SetRange(0, 10, 1);
    (void)HighPosition();
    (void)PositionOf(5);
    (void)ValueAt(6);
    (void)HighPosition();
    EXPECT_EQ(script_.TakeLog(), (Log{"GetRange 7", "GetValue 7", "SetValue 7"}));
}

TEST_F(RangeController, TriesTheRangeAgainAfterAFailure) {
    SetRange(0, 10, 1);
    script_.results["GetRange"] = E_FAIL;
    std::int32_t low = 77;
    std::int32_t high = 77;
    EXPECT_FALSE(controller_->GetPositionRange(low, high));
    EXPECT_FALSE(controller_->GetPosition(low));
    EXPECT_FALSE(controller_->SetPosition(3));
    EXPECT_EQ(low, 77);
    EXPECT_EQ(high, 77);
    EXPECT_EQ(script_.TakeLog(), (Log{"GetRange 7", "GetRange 7", "GetRange 7"}));

    script_.results.clear();
    EXPECT_EQ(HighPosition(), 10);
}

TEST_F(RangeController, HandsOnFailuresOfTheValue) {
    SetRange(0, 10, 1);
    script_.results["GetValue"] = E_FAIL;
    script_.results["SetValue"] = E_ACCESSDENIED;
    std::int32_t position = 77;
    std::wstring text = L"before";
    EXPECT_FALSE(controller_->GetPosition(position));
    EXPECT_FALSE(controller_->SetPosition(1));
    EXPECT_FALSE(controller_->GetText(text));
    EXPECT_FALSE(controller_->SetText(L"5"));
    EXPECT_EQ(position, 77);
    EXPECT_EQ(text, L"before");
}

TEST_F(RangeController, ShowsTheValueAsText) {
    At().value = -42;
    std::wstring text;
    EXPECT_TRUE(controller_->GetText(text));
    EXPECT_EQ(text, L"-42");
    EXPECT_EQ(script_.TakeLog(), Log{"GetValue 7"});
}

TEST_F(RangeController, ShowsEveryNumberWholeAndTakesItBack) {
    for (const std::int32_t number : {999999999, 1000000000, -100000000, limits::max(), limits::min()}) {
        At().value = number;
        std::wstring text;
        EXPECT_TRUE(controller_->GetText(text));
        EXPECT_EQ(text, std::to_wstring(number));
        EXPECT_TRUE(controller_->SetText(text));
        EXPECT_EQ(script_.values.back(), number);
    }
}

TEST_F(RangeController, WritesWhatIsTypedAsItStands) {
    SetRange(0, 10, 5);
    EXPECT_TRUE(controller_->SetText(L" 1003 "));
    EXPECT_TRUE(controller_->SetText(L"-3"));
    EXPECT_EQ(script_.values, (std::vector<std::int32_t>{1003, -3}));
    EXPECT_EQ(script_.TakeLog(), (Log{"SetValue 7", "SetValue 7"}));
}

TEST_F(RangeController, WritesNothingForATextThatIsNoInteger) {
    for (const wchar_t* text : {L"+5", L"007", L"1.5", L"", L"abc", L"2147483648"}) {
        EXPECT_FALSE(controller_->SetText(text)) << text;
    }
    EXPECT_TRUE(script_.log.empty());
}

}  // namespace
}  // namespace ZELPropUI
