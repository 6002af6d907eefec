#include "propui/windows/button.h"
#include "propui/windows/combo.h"
#include "propui/windows/switch.h"
#include "tests/windows/control_fixture.h"

#include <gmock/gmock.h>

namespace ZELPropUI {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using ComboTest = ItemControlTest;
using SwitchTest = ItemControlTest;
using ButtonTest = ItemControlTest;

std::wstring EntryOf(HWND combo, int index) {
    wchar_t text[64] = {};
    SendMessageW(combo, CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text));
    return text;
}

TEST_F(ComboTest, IsADropDownListWithTheFontOfTheParent) {
    parent_.font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    const auto combo = Make<CZELCombo>();
    EXPECT_EQ(FirstStyleOf(combo->Handle()), 0x50210043u);
    EXPECT_EQ(FontOf(combo->Handle()), parent_.font);
    EXPECT_EQ(RectOf(combo->Handle()).left, rect.left);
    EXPECT_EQ(RectOf(combo->Handle()).top, rect.top);
    EXPECT_EQ(RectOf(combo->Handle()).right, rect.right);
    EXPECT_THAT(script_.log, IsEmpty()) << "only Init asks the item";
}

TEST_F(ComboTest, InitFillsTheListAndShowsTheValue) {
    At().strings = {L"off", L"slow", L"fast"};
    At().value = 2;
    const auto combo = Make<CZELCombo>();
    SendMessageW(combo->Handle(), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"from before"));
    combo->Init();
    EXPECT_THAT(script_.log, ElementsAre("GetMapStrings 7", "IsAvailable 7", "GetValue 7"));
    ASSERT_EQ(SendMessageW(combo->Handle(), CB_GETCOUNT, 0, 0), 3);
    EXPECT_EQ(EntryOf(combo->Handle(), 0), L"off");
    EXPECT_EQ(EntryOf(combo->Handle(), 2), L"fast");
    EXPECT_EQ(SendMessageW(combo->Handle(), CB_GETCURSEL, 0, 0), 2);
    EXPECT_TRUE(IsWindowEnabled(combo->Handle()));
    EXPECT_EQ(parent_.TakeRefreshes(), 0);
}

TEST_F(ComboTest, StaysEmptyWhenTheStringsFail) {
    At().strings = {L"off", L"on"};
    script_.results["GetMapStrings"] = E_FAIL;
    const auto combo = Make<CZELCombo>();
    combo->Init();
    EXPECT_EQ(SendMessageW(combo->Handle(), CB_GETCOUNT, 0, 0), 0);
    EXPECT_THAT(script_.log, ElementsAre("GetMapStrings 7", "IsAvailable 7", "GetValue 7"));
}

TEST_F(ComboTest, KeepsWhatItShowsWhenTheValueFails) {
    At().strings = {L"off", L"on"};
    At().value = 1;
    const auto combo = Make<CZELCombo>();
    combo->Init();
    At().value = 0;
    script_.results["GetValue"] = E_FAIL;
    combo->Update();
    EXPECT_EQ(SendMessageW(combo->Handle(), CB_GETCURSEL, 0, 0), 1);
}

TEST_F(ComboTest, IsDisabledWhileTheItemIsNotAvailable) {
    const auto combo = Make<CZELCombo>();
    At().available = false;
    combo->Update();
    EXPECT_FALSE(IsWindowEnabled(combo->Handle()));
    At().available = true;
    combo->Update();
    EXPECT_TRUE(IsWindowEnabled(combo->Handle()));
    script_.results["IsAvailable"] = E_FAIL;
    combo->Update();
    EXPECT_FALSE(IsWindowEnabled(combo->Handle()));
}

TEST_F(ComboTest, PickingWritesTheIndexAndAsksForARefresh) {
    At().strings = {L"off", L"slow", L"fast"};
    const auto combo = Make<CZELCombo>();
    combo->Init();
    script_.log.clear();
    SendMessageW(combo->Handle(), CB_SETCURSEL, 1, 0);
    NotifyParent(combo->Handle(), CBN_SELCHANGE);
    EXPECT_THAT(script_.log, ElementsAre("SetValue 7"));
    EXPECT_THAT(script_.values, ElementsAre(1));
    EXPECT_TRUE(parent_.reflected_handled);
    EXPECT_EQ(parent_.TakeRefreshes(), 1);
}

TEST_F(ComboTest, AFailedOrThrownWriteIsARefreshLikeAnyOther) {
    const auto combo = Make<CZELCombo>();
    script_.results["SetValue"] = E_ACCESSDENIED;
    NotifyParent(combo->Handle(), CBN_SELCHANGE);
    EXPECT_THAT(script_.values, ElementsAre(CB_ERR));
    EXPECT_EQ(parent_.TakeRefreshes(), 1);
    script_.throwing.insert("SetValue");
    NotifyParent(combo->Handle(), CBN_SELCHANGE);
    EXPECT_EQ(parent_.TakeRefreshes(), 1);
}

TEST_F(ComboTest, OtherNotificationsGoBy) {
    const auto combo = Make<CZELCombo>();
    for (const int code : {CBN_DROPDOWN, CBN_CLOSEUP, CBN_SETFOCUS, CBN_DBLCLK, CBN_SELENDOK}) {
        NotifyParent(combo->Handle(), static_cast<WORD>(code));
        EXPECT_FALSE(parent_.reflected_handled) << code;
    }
    EXPECT_THAT(script_.log, IsEmpty());
    EXPECT_EQ(parent_.TakeRefreshes(), 0);
}

TEST_F(SwitchTest, IsAPlainCheckBox) {
    parent_.font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    const auto box = Make<CZELSwitch>(L"Auto");
    EXPECT_EQ(FirstStyleOf(box->Handle()), 0x50010002u);
    EXPECT_EQ(StyleOf(box->Handle()) & BS_TYPEMASK, static_cast<DWORD>(BS_CHECKBOX));
    EXPECT_EQ(FontOf(box->Handle()), parent_.font);
    box->Init();
    EXPECT_EQ(TextOf(box->Handle()), L"Auto");
    EXPECT_THAT(script_.log, ElementsAre("IsAvailable 7", "GetSwitch 7"));
}

TEST_F(SwitchTest, ShowsTheStateOfTheItem) {
    At().on = true;
    const auto box = Make<CZELSwitch>(L"Auto");
    box->Init();
    EXPECT_EQ(SendMessageW(box->Handle(), BM_GETCHECK, 0, 0), BST_CHECKED);
    EXPECT_TRUE(IsWindowEnabled(box->Handle()));
    script_.results["GetSwitch"] = E_FAIL;
    script_.results["IsAvailable"] = E_FAIL;
    box->Update();
    EXPECT_EQ(SendMessageW(box->Handle(), BM_GETCHECK, 0, 0), BST_UNCHECKED);
    EXPECT_FALSE(IsWindowEnabled(box->Handle()));
}

TEST_F(SwitchTest, AClickTogglesOnceAndWrites) {
    const auto box = Make<CZELSwitch>(L"Auto");
    box->Init();
    script_.log.clear();
    SendMessageW(box->Handle(), BM_CLICK, 0, 0);
    EXPECT_THAT(script_.log, ElementsAre("IsReadOnly 7", "SetSwitch 7"));
    EXPECT_THAT(script_.switches, ElementsAre(true));
    EXPECT_EQ(SendMessageW(box->Handle(), BM_GETCHECK, 0, 0), BST_CHECKED);
    EXPECT_EQ(parent_.TakeRefreshes(), 1);
    SendMessageW(box->Handle(), BM_CLICK, 0, 0);
    EXPECT_THAT(script_.switches, ElementsAre(true, false));
    EXPECT_EQ(SendMessageW(box->Handle(), BM_GETCHECK, 0, 0), BST_UNCHECKED);
}

TEST_F(SwitchTest, AReadOnlyOneNeitherTogglesNorWritesAndIsNotDisabled) {
    At().read_only = true;
    const auto box = Make<CZELSwitch>(L"Auto");
    box->Init();
    EXPECT_TRUE(IsWindowEnabled(box->Handle()));
    script_.log.clear();
    SendMessageW(box->Handle(), BM_CLICK, 0, 0);
    EXPECT_THAT(script_.log, ElementsAre("IsReadOnly 7"));
    EXPECT_EQ(SendMessageW(box->Handle(), BM_GETCHECK, 0, 0), BST_UNCHECKED);
    EXPECT_EQ(parent_.TakeRefreshes(), 0);
}

TEST_F(SwitchTest, HearsOnlyItsOwnNotification) {
    const auto box = Make<CZELSwitch>(L"Auto");
    SendMessageW(box->Handle(), 0x2000 + WM_COMMAND, MAKEWPARAM(0, BN_CLICKED),
                 reinterpret_cast<LPARAM>(parent_.Handle()));
    SendMessageW(box->Handle(), 0x2000 + WM_COMMAND, MAKEWPARAM(0, BN_DBLCLK),
                 reinterpret_cast<LPARAM>(box->Handle()));
    EXPECT_THAT(script_.log, IsEmpty());
    SendMessageW(box->Handle(), 0x2000 + WM_COMMAND, MAKEWPARAM(0, BN_CLICKED),
                 reinterpret_cast<LPARAM>(box->Handle()));
    EXPECT_THAT(script_.switches, ElementsAre(true));
}

TEST_F(ButtonTest, IsAPushButton) {
    parent_.font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    const auto button = Make<CZELButton>(L"One Push");
    EXPECT_EQ(FirstStyleOf(button->Handle()), 0x50010000u);
    EXPECT_EQ(FontOf(button->Handle()), parent_.font);
    At().available = false;
    button->Init();
    EXPECT_EQ(TextOf(button->Handle()), L"One Push");
    EXPECT_THAT(script_.log, ElementsAre("IsAvailable 7"));
    EXPECT_FALSE(IsWindowEnabled(button->Handle()));
}

TEST_F(ButtonTest, AClickPushesAndAsksForARefresh) {
    const auto button = Make<CZELButton>(L"One Push");
    button->Init();
    script_.log.clear();
    SendMessageW(button->Handle(), BM_CLICK, 0, 0);
    EXPECT_THAT(script_.log, ElementsAre("Push 7"));
    EXPECT_EQ(parent_.TakeRefreshes(), 1);
    EXPECT_TRUE(KillTimer(button->Handle(), 1025));
}

TEST_F(ButtonTest, AFailedPushIsARefreshLikeAnyOther) {
    const auto button = Make<CZELButton>(L"One Push");
    script_.throwing.insert("Push");
    SendMessageW(button->Handle(), BM_CLICK, 0, 0);
    EXPECT_EQ(parent_.TakeRefreshes(), 1);
    EXPECT_TRUE(KillTimer(button->Handle(), 1025));
}

// Sends ticks by hand; whether the timer of the platform is there tells if it died.
bool TimerLivesAfter(HWND button, int ticks) {
    for (int tick = 0; tick < ticks; ++tick) SendMessageW(button, WM_TIMER, 1025, 0);
    return KillTimer(button, 1025) != 0;
}

TEST_F(ButtonTest, TheTimerDiesAtTheTwelfthTickAndDoesNothingElse) {
    const auto button = Make<CZELButton>(L"One Push");
    SendMessageW(button->Handle(), BM_CLICK, 0, 0);
    EXPECT_TRUE(TimerLivesAfter(button->Handle(), 11));
    SendMessageW(button->Handle(), BM_CLICK, 0, 0);
    EXPECT_FALSE(TimerLivesAfter(button->Handle(), 12));
    parent_.TakeRefreshes();
    script_.log.clear();
    SendMessageW(button->Handle(), WM_TIMER, 1025, 0);
    EXPECT_THAT(script_.log, IsEmpty());
    EXPECT_EQ(parent_.TakeRefreshes(), 0);
}

TEST_F(ButtonTest, APressWhileTheTimerRunsStartsTheCountAnew) {
    const auto button = Make<CZELButton>(L"One Push");
    SendMessageW(button->Handle(), BM_CLICK, 0, 0);
    for (int tick = 0; tick < 11; ++tick) SendMessageW(button->Handle(), WM_TIMER, 1025, 0);
    SendMessageW(button->Handle(), BM_CLICK, 0, 0);
    EXPECT_TRUE(TimerLivesAfter(button->Handle(), 11));
    EXPECT_FALSE(KillTimer(button->Handle(), 1025)) << "a second timer";
}

TEST_F(ButtonTest, TheTimerOfSomebodyElseDoesNotCount) {
    const auto button = Make<CZELButton>(L"One Push");
    SendMessageW(button->Handle(), BM_CLICK, 0, 0);
    for (int tick = 0; tick < 12; ++tick) SendMessageW(button->Handle(), WM_TIMER, 1024, 0);
    EXPECT_TRUE(KillTimer(button->Handle(), 1025));
}

TEST_F(ButtonTest, TheTimerTicksEveryHalfSecond) {
    const auto button = Make<CZELButton>(L"One Push");
    const DWORD start = GetTickCount();
    SendMessageW(button->Handle(), BM_CLICK, 0, 0);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0 && message.message != WM_TIMER)
        DispatchMessageW(&message);
    EXPECT_EQ(message.wParam, 1025u);
    EXPECT_EQ(message.hwnd, button->Handle());
    EXPECT_GE(GetTickCount() - start, 480u);
}

}  // namespace
}  // namespace ZELPropUI
