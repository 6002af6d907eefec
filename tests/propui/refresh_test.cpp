#include "propui/refresh.h"

#include "propui/slider_controller.h"
#include "tests/support/fake_item.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>

namespace ZELPropUI {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr InterfaceKey key = 7;

/// An item whose driver runs messages while it answers: something may happen within each question.
class BusyItem final : public CZELItemDataBase {
public:
    std::function<void()> meanwhile;
    std::int32_t number = 10;
    std::vector<std::string> log;

    bool SupportsInterface(InterfaceKey) override { return true; }
    HRESULT IsAvailable(InterfaceKey, bool& available) override {
        Note("IsAvailable");
        available = true;
        return S_OK;
    }
    HRESULT GetRange(InterfaceKey, ZELAdapterHelper::RangeInfo& range) override {
        range.max = 100;
        range.step = 1;
        return S_OK;
    }
    HRESULT GetValue(InterfaceKey, std::int32_t& value) override {
        value = number;
        Note("GetValue");
        return S_OK;
    }
    HRESULT SetValue(InterfaceKey, std::int32_t value) override {
        Note("SetValue");
        number = value;
        return S_OK;
    }

    std::vector<std::string> TakeLog() { return std::exchange(log, {}); }

private:
    void Note(const char* line) {
        log.emplace_back(line);
        const auto work = std::exchange(meanwhile, {});
        if (work) work();
    }
};

class BusyRefreshTest : public testing::Test {
protected:
    BusyRefreshTest()
        : item_(platform::com_ptr<BusyItem>::attach(new BusyItem)),
          controller_(platform::com_ptr<CRangeSliderController>::attach(
              new CRangeSliderController(item_.get(), key))) {}

    std::int32_t Position() {
        std::int32_t position = -1;
        EXPECT_TRUE(controller_->GetPosition(position));
        return position;
    }
    std::wstring Text() {
        std::wstring text;
        EXPECT_TRUE(controller_->GetText(text));
        return text;
    }

    platform::com_ptr<BusyItem> item_;
    platform::com_ptr<CRangeSliderController> controller_;
};

TEST_F(BusyRefreshTest, AnotherRefreshWithinAQuestionAsksAnewAndSoDoesTheRest) {
    const ElementRefresh refresh(*controller_);
    item_->meanwhile = [this] {
        item_->number = 20;
        const ElementRefresh inner(*controller_);
        EXPECT_EQ(Position(), 20);
        EXPECT_EQ(Text(), L"20");
        item_->number = 30;
    };
    EXPECT_EQ(Position(), 10) << "what the driver answered first";
    EXPECT_EQ(Text(), L"30") << "what the inner refresh learnt served it alone";
    EXPECT_EQ(Position(), 30);
    EXPECT_THAT(item_->log, ElementsAre("GetValue", "GetValue", "GetValue"));
}

TEST_F(BusyRefreshTest, AWriteWithinAQuestionEndsItsAnswer) {
    const ElementRefresh refresh(*controller_);
    item_->meanwhile = [this] { EXPECT_TRUE(controller_->SetPosition(40)); };
    EXPECT_EQ(Position(), 10);
    EXPECT_EQ(Text(), L"40");
}

TEST_F(BusyRefreshTest, AQuestionWithinAWriteServesNobodyAfterIt) {
    const ElementRefresh refresh(*controller_);
    item_->meanwhile = [this] { EXPECT_EQ(Position(), 10); };
    EXPECT_TRUE(controller_->SetText(L"50"));
    EXPECT_EQ(Position(), 50);
}

template <class Controller>
class RefreshedControllerTest : public testing::Test {
protected:
    RefreshedControllerTest() {
        const auto item = platform::com_ptr<CZELItemDataBase>::attach(new test_support::FakeItem(script_));
        controller_ = platform::com_ptr<Controller>::attach(new Controller(item.get(), key));
        script_.interfaces[key].range = {0, 100, 0, 1};
        script_.interfaces[key].abs_range = {0, 100, 0};
        Show();
        script_.log.clear();
    }

    void SetNumber(int number) {
        script_.interfaces[key].value = number;
        script_.interfaces[key].abs_value = number;
    }
    // What a slider, an edit and an up-down control ask of it.
    void Show() {
        for (int control = 0; control < 3; ++control) {
            static_cast<void>(controller_->IsAvailable());
            static_cast<void>(controller_->IsReadOnly());
            known_ = controller_->GetPosition(positions_[control]);
            static_cast<void>(controller_->GetText(text_));
        }
    }
    [[nodiscard]] std::vector<std::string> Once() const {
        return {"IsAvailable 7", "IsReadOnly 7", script_.log.at(2)};
    }

    test_support::FakeScript script_;
    platform::com_ptr<Controller> controller_;
    std::int32_t positions_[3] = {};
    std::wstring text_;
    bool known_ = false;
};

using Controllers =
    testing::Types<CRangeSliderController, CAbsValSliderController, CAbsValExposureSliderController>;
TYPED_TEST_SUITE(RefreshedControllerTest, Controllers, );

TYPED_TEST(RefreshedControllerTest, ARefreshAsksForEachThingOnce) {
    {
        const ElementRefresh refresh(*this->controller_);
        this->Show();
    }
    EXPECT_EQ(this->script_.log, this->Once());
}

TYPED_TEST(RefreshedControllerTest, TheNextRefreshAsksAgain) {
    for (const int number : {10, 20}) {
        this->SetNumber(number);
        this->script_.log.clear();
        const ElementRefresh refresh(*this->controller_);
        this->Show();
        EXPECT_EQ(this->script_.log, this->Once());
        EXPECT_THAT(this->positions_, ElementsAre(number, number, number));
    }
}

TYPED_TEST(RefreshedControllerTest, OutsideOfARefreshEachQuestionIsAskedAfresh) {
    { const ElementRefresh refresh(*this->controller_); }
    this->Show();
    EXPECT_EQ(this->script_.log.size(), 12u);
}

TYPED_TEST(RefreshedControllerTest, TheShownValuesAgreeWhileTheCameraChangesThem) {
    const ElementRefresh refresh(*this->controller_);
    this->SetNumber(10);
    this->Show();
    this->SetNumber(60);
    this->Show();
    EXPECT_THAT(this->positions_, ElementsAre(10, 10, 10));
}

TYPED_TEST(RefreshedControllerTest, AWriteEndsWhatWasLearnt) {
    const ElementRefresh refresh(*this->controller_);
    this->Show();
    EXPECT_TRUE(this->controller_->SetPosition(30));
    this->Show();
    EXPECT_THAT(this->positions_, ElementsAre(30, 30, 30));
    EXPECT_TRUE(this->controller_->SetText(L"50"));
    this->Show();
    EXPECT_THAT(this->positions_, ElementsAre(50, 50, 50));
}

TYPED_TEST(RefreshedControllerTest, ARefusedWriteEndsItToo) {
    const ElementRefresh refresh(*this->controller_);
    this->Show();
    this->script_.results["SetValue"] = this->script_.results["SetAbsValue"] = E_FAIL;
    EXPECT_FALSE(this->controller_->SetPosition(30));
    this->SetNumber(70);
    this->Show();
    EXPECT_THAT(this->positions_, ElementsAre(70, 70, 70));
}

TYPED_TEST(RefreshedControllerTest, AFailureIsAnAnswerToo) {
    this->script_.results["GetValue"] = this->script_.results["GetAbsValue"] = E_FAIL;
    this->script_.throwing = {"IsAvailable"};
    const ElementRefresh refresh(*this->controller_);
    this->Show();
    EXPECT_FALSE(this->known_);
    EXPECT_EQ(this->script_.log, this->Once());
    this->script_.results.clear();
    this->Show();
    EXPECT_FALSE(this->known_) << "for this refresh";
}

TEST(ElementRefresh, EndsWithTheLastControlOfItsElement) {
    test_support::FakeScript script;
    script.interfaces[key].range.step = 1;
    const auto item = platform::com_ptr<CZELItemDataBase>::attach(new test_support::FakeItem(script));
    const auto make = [&] {
        return platform::com_ptr<CRangeSliderController>::attach(new CRangeSliderController(item.get(), key));
    };
    const auto one = make();
    const auto other = make();
    ElementRefresh refresh;
    EXPECT_FALSE(refresh.Covers(nullptr)) << "controls that speak to their items have nothing in common";
    refresh.TurnTo(one.get());
    EXPECT_TRUE(refresh.Covers(one.get()));
    EXPECT_FALSE(refresh.Covers(other.get()));
    EXPECT_TRUE(one->IsAvailable());
    refresh.TurnTo(one.get());
    EXPECT_TRUE(one->IsAvailable());
    EXPECT_THAT(script.TakeLog(), ElementsAre("IsAvailable 7"));
    refresh.TurnTo(other.get());
    EXPECT_TRUE(one->IsAvailable());
    EXPECT_TRUE(one->IsAvailable());
    EXPECT_THAT(script.TakeLog(), testing::SizeIs(2));
    refresh.TurnTo(nullptr);
    EXPECT_TRUE(other->IsAvailable());
    EXPECT_TRUE(other->IsAvailable());
    EXPECT_THAT(script.TakeLog(), testing::SizeIs(2));
}

std::vector<std::size_t> TakeRest(RefreshTurn& turn, std::size_t controls) {
    std::vector<std::size_t> taken;
    while (!turn.IsOver()) {
        taken.push_back(turn.Next());
        turn.Take(controls);
    }
    return taken;
}

TEST(RefreshTurn, TakesEachControlInOrder) {
    RefreshTurn turn;
    EXPECT_TRUE(turn.IsOver());
    for (int round = 0; round < 2; ++round) {
        turn.Require(4);
        EXPECT_THAT(TakeRest(turn, 4), ElementsAre(0, 1, 2, 3));
    }
    turn.Require(0);
    EXPECT_THAT(TakeRest(turn, 0), IsEmpty());
}

TEST(RefreshTurn, AChangeOnTheWayHasAllShownOnceMoreFromThere) {
    RefreshTurn turn;
    turn.Require(4);
    turn.Take(4);
    turn.Take(4);
    turn.Require(4);
    turn.Require(4);
    EXPECT_THAT(TakeRest(turn, 4), ElementsAre(2, 3, 0, 1));
    turn.Require(4);
    EXPECT_THAT(TakeRest(turn, 4), ElementsAre(0, 1, 2, 3));
}

TEST(RefreshTurn, WaitsForALimitedTime) {
    RefreshTurn turn;
    RefreshTurn::Time now{};
    turn.Require(4);
    for (int pause = 0; pause < 4; ++pause) {
        EXPECT_TRUE(turn.MayWait()) << pause;
        turn.Wait(now);
        EXPECT_TRUE(turn.IsWaiting());
        now += milliseconds(25);
        turn.Require(4);
        turn.GoOn(now);
        EXPECT_FALSE(turn.IsWaiting());
        now += milliseconds(1000);
    }
    EXPECT_FALSE(turn.MayWait());
    TakeRest(turn, 4);
    EXPECT_TRUE(turn.MayWait()) << "the next refresh";
}

TEST(RefreshTurn, GoesOnWithoutHavingWaited) {
    RefreshTurn turn;
    turn.Require(1);
    turn.GoOn(RefreshTurn::Time{} + 10 * RefreshTurn::patience);
    EXPECT_FALSE(turn.IsWaiting());
    EXPECT_TRUE(turn.MayWait());
}

TEST(RefreshTurn, EachTurnOverThePageHasPatienceOfItsOwn) {
    RefreshTurn turn;
    const RefreshTurn::Time start{};
    turn.Require(2);
    turn.Take(2);
    turn.Wait(start);
    turn.GoOn(start + RefreshTurn::patience);
    EXPECT_FALSE(turn.MayWait());
    turn.Require(2);
    turn.Take(2);
    EXPECT_TRUE(turn.MayWait());
    EXPECT_FALSE(turn.IsOver());
}

}  // namespace
}  // namespace ZELPropUI
