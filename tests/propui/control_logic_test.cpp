#include "propui/control_logic.h"

#include "propui/slider_controller.h"
#include "tests/support/fake_item.h"

#include <gmock/gmock.h>

namespace {

using namespace ZELPropUI;
using test_support::FakeItem;
using testing::ElementsAre;
using testing::IsEmpty;

class ControlLogic : public testing::Test {
protected:
    ControlLogic() { element_.strings = {L"Off", L"On"}; }

    static constexpr InterfaceKey key = 7;
    static constexpr InterfaceKey unknown_key = 8;
    test_support::FakeScript script_;
    test_support::FakeInterface& element_ = script_.interfaces[key];
    platform::com_ptr<FakeItem> item_ = platform::com_ptr<FakeItem>::attach(new FakeItem(script_));
};

TEST_F(ControlLogic, TakesFailuresAndExceptionsForTheQuietAnswer) {
    element_.value = 1;
    element_.on = true;
    for (const bool throws : {false, true}) {
        for (const char* operation : {"IsAvailable", "GetMapStrings", "GetValue", "GetSwitch"}) {
            script_.results[operation] = throws ? S_OK : E_FAIL;
            if (throws) script_.throwing.insert(operation);
        }
        EXPECT_FALSE(IsItemAvailable(*item_, key)) << throws;
        EXPECT_THAT(EntriesOf(*item_, key), IsEmpty()) << throws;
        EXPECT_FALSE(SelectionOf(*item_, key).has_value()) << throws;
        EXPECT_FALSE(IsSwitchedOn(*item_, key)) << throws;
    }
}

TEST_F(ControlLogic, AsksOnceForEachAnswer) {
    element_.value = 1;
    element_.on = true;
    EXPECT_TRUE(IsItemAvailable(*item_, key));
    EXPECT_EQ(EntriesOf(*item_, key).size(), 2U);
    EXPECT_EQ(SelectionOf(*item_, key), 1);
    EXPECT_TRUE(IsSwitchedOn(*item_, key));
    EXPECT_THAT(script_.TakeLog(),
                ElementsAre("IsAvailable 7", "GetMapStrings 7", "GetValue 7", "GetSwitch 7"));
}

TEST_F(ControlLogic, HandsOnWhatTheItemDenies) {
    element_.available = false;
    element_.on = false;
    EXPECT_FALSE(IsItemAvailable(*item_, key));
    EXPECT_FALSE(IsSwitchedOn(*item_, key));
}

TEST_F(ControlLogic, AnEditIsForWhatIsAvailableAndNotReadOnly) {
    for (const bool available : {false, true}) {
        for (const bool read_only : {false, true}) {
            element_.available = available;
            element_.read_only = read_only;
            const auto controller =
                platform::com_ptr<ISliderController>::attach(new CRangeSliderController(item_.get(), key));
            EXPECT_EQ(IsEditable(*controller), available && !read_only) << available << read_only;
        }
    }
}

TEST_F(ControlLogic, WritesAndLeavesTheResultToTheRefresh) {
    script_.throwing = {"Push"};
    SelectEntry(*item_, key, -1);
    SetSwitchTo(*item_, key, true);
    PushButton(*item_, key);
    EXPECT_THAT(script_.values, ElementsAre(-1));
    EXPECT_THAT(script_.switches, ElementsAre(true));
    EXPECT_THAT(script_.TakeLog(), ElementsAre("SetValue 7", "SetSwitch 7", "Push 7"));
}

// One that cannot tell whether it is read-only toggles.
TEST_F(ControlLogic, TogglesUnlessReadOnly) {
    EXPECT_TRUE(MayToggle(*item_, key));
    element_.read_only = true;
    EXPECT_FALSE(MayToggle(*item_, key));
    EXPECT_TRUE(MayToggle(*item_, unknown_key));
}

TEST_F(ControlLogic, LetsDigitsAndWhatStandsBetweenThemIntoAnEdit) {
    std::string taken;
    for (std::uint32_t character = 0; character < 0x200; ++character) {
        if (IsEditCharacter(character)) taken += static_cast<char>(character);
    }
    EXPECT_EQ(taken, ",-./0123456789");
}

}  // namespace
