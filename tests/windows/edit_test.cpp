#include "propui/windows/edit.h"
#include "tests/windows/control_fixture.h"
#include "tests/windows/error_box.h"
#include "tests/windows/sent_messages.h"

#include <gmock/gmock.h>
#include <imm.h>
#include <richedit.h>

namespace ZELPropUI {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EditTest : public ControllerControlTest {
protected:
    EditTest() { LoadLibraryW(L"Msftedit.dll"); }

    static LRESULT Ask(HWND window, UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
        return SendMessageW(window, message, wparam, lparam);
    }
    // The control tells its background only to whoever changes it.
    static COLORREF BackgroundOf(HWND edit) {
        const auto color = static_cast<COLORREF>(Ask(edit, EM_SETBKGNDCOLOR, 0, 0));
        Ask(edit, EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(color));
        return color;
    }
    static void Type(HWND edit, const std::wstring& text) {
        for (const wchar_t character : text) Ask(edit, WM_CHAR, character, 1);
    }
};

TEST_F(EditTest, IsASunkenRichEdit) {
    parent_.font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    const page_test::SentMessages messages;
    const auto edit = Make<CZELEdit>();
    EXPECT_EQ(FirstStyleOf(edit->Handle()), 0x50815000u);
    constexpr DWORD kept = WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_WANTRETURN;
    EXPECT_EQ(StyleOf(edit->Handle()) & kept, kept);
    EXPECT_EQ(StyleOf(edit->Handle()) & (ES_MULTILINE | ES_READONLY), 0u);
    const auto sent = messages.To(
        edit->Handle(), {EM_SETTEXTMODE, EM_SETOPTIONS, EM_SHOWSCROLLBAR, EM_SETBKGNDCOLOR, WM_SETFONT});
    ASSERT_EQ(sent.size(), 5u);
    EXPECT_EQ(sent[0].message, static_cast<UINT>(EM_SETTEXTMODE));
    EXPECT_EQ(sent[0].wparam, static_cast<WPARAM>(TM_PLAINTEXT));
    EXPECT_EQ(sent[1].message, static_cast<UINT>(EM_SETOPTIONS));
    EXPECT_EQ(sent[1].wparam, static_cast<WPARAM>(ECOOP_SET));
    EXPECT_EQ(sent[1].lparam, 0x1081);
    EXPECT_EQ(sent[2].message, static_cast<UINT>(EM_SHOWSCROLLBAR));
    EXPECT_EQ(sent[2].wparam, static_cast<WPARAM>(SB_HORZ));
    EXPECT_EQ(sent[2].lparam, FALSE);
    EXPECT_EQ(sent[3].message, static_cast<UINT>(EM_SETBKGNDCOLOR));
    EXPECT_EQ(sent[3].lparam, static_cast<LPARAM>(GetSysColor(COLOR_3DFACE)));
    EXPECT_EQ(sent[4].message, static_cast<UINT>(WM_SETFONT));
    EXPECT_EQ(sent[4].wparam, reinterpret_cast<WPARAM>(parent_.font));
    EXPECT_EQ(sent[4].lparam, TRUE);
    EXPECT_EQ(BackgroundOf(edit->Handle()), GetSysColor(COLOR_3DFACE));
    EXPECT_THAT(script_.log, IsEmpty());
}

TEST_F(EditTest, NoScrollBarStandsOverALongText) {
    script_.text = L"1/50000 sec and a unit that goes on and on";
    const auto edit = Make<CZELEdit>();
    MoveWindow(edit->Handle(), 0, 0, 60, 22, FALSE);
    edit->Init();
    SetFocus(edit->Handle());
    Type(edit->Handle(), L"1234567890");
    edit->Update();
    EXPECT_EQ(StyleOf(edit->Handle()) & (WS_HSCROLL | WS_VSCROLL), 0u);
    RECT inside{};
    GetClientRect(edit->Handle(), &inside);
    EXPECT_GE(inside.bottom, 22 - 2 * GetSystemMetrics(SM_CYEDGE));
}

TEST_F(EditTest, TakesPlainTextFromTheKeyboardAlone) {
    const auto edit = Make<CZELEdit>();
    edit->Init();
    EXPECT_TRUE(Ask(edit->Handle(), EM_GETTEXTMODE) & TM_PLAINTEXT);
    EXPECT_EQ(ImmGetContext(edit->Handle()), nullptr) << "no input method";
    BYTE keys[256] = {};
    GetKeyboardState(keys);
    keys[VK_CONTROL] = 0x80;
    SetKeyboardState(keys);
    Ask(edit->Handle(), WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, 5 * WHEEL_DELTA), 0);
    keys[VK_CONTROL] = 0;
    SetKeyboardState(keys);
    WPARAM numerator = 0;
    LPARAM denominator = 0;
    Ask(edit->Handle(), EM_GETZOOM, reinterpret_cast<WPARAM>(&numerator),
        reinterpret_cast<LPARAM>(&denominator));
    EXPECT_EQ(numerator, 0u) << "not magnified";
}

TEST_F(EditTest, OneThatIsDisabledHandsTheFocusOnAndCommitsNothing) {
    script_.accepts = false;
    script_.text = L"7";
    const auto edit = Make<CZELEdit>();
    edit->Init();
    SetFocus(edit->Handle());
    Type(edit->Handle(), L"1/0");
    script_.available = false;
    script_.log.clear();
    page_test::ErrorBoxWatch box;
    edit->Update();
    EXPECT_EQ(box.boxes, 0);
    EXPECT_THAT(script_.TakeLog(), ElementsAre("GetText", "IsAvailable", "IsReadOnly"));
    EXPECT_EQ(parent_.next_dialog_controls, 1);
    EXPECT_EQ(GetFocus(), parent_.Handle()) << "where nobody else takes it";
    EXPECT_FALSE(IsWindowEnabled(edit->Handle()));
    EXPECT_EQ(BackgroundOf(edit->Handle()), GetSysColor(COLOR_3DFACE));
}

TEST_F(EditTest, LeavingAReadOnlyOneShowsNoBox) {
    script_.accepts = false;
    script_.read_only = true;
    const auto edit = Make<CZELEdit>();
    edit->Init();
    SetFocus(edit->Handle());
    script_.log.clear();
    const page_test::ErrorBoxWatch box;
    SetFocus(parent_.Handle());
    EXPECT_EQ(box.boxes, 0);
    EXPECT_THAT(script_.TakeLog(), testing::Contains(testing::StartsWith("SetText")));
}

TEST_F(EditTest, UpdateAsksInTheReverseOrder) {
    script_.text = L"12.5 dB";
    const auto edit = Make<CZELEdit>();
    edit->Init();
    EXPECT_THAT(script_.TakeLog(), ElementsAre("GetText", "IsAvailable", "IsReadOnly"));
    EXPECT_EQ(TextOf(edit->Handle()), L"12.5 dB");
    EXPECT_TRUE(IsWindowEnabled(edit->Handle()));
}

TEST_F(EditTest, ShowsNothingWhenTheTextFails) {
    script_.text = L"12";
    const auto edit = Make<CZELEdit>();
    edit->Init();
    script_.text_known = false;
    edit->Update();
    EXPECT_EQ(TextOf(edit->Handle()), L"");
}

TEST_F(EditTest, FollowsAvailableAndReadOnly) {
    const auto edit = Make<CZELEdit>();
    script_.available = false;
    edit->Update();
    EXPECT_FALSE(IsWindowEnabled(edit->Handle()));
    script_.available = true;
    script_.read_only = true;
    edit->Update();
    EXPECT_TRUE(IsWindowEnabled(edit->Handle())) << "read-only does not disable it";
    EXPECT_TRUE(StyleOf(edit->Handle()) & ES_READONLY);
    script_.read_only = false;
    edit->Update();
    EXPECT_FALSE(StyleOf(edit->Handle()) & ES_READONLY);
}

TEST_F(EditTest, TakesDigitsAndTheSignsOfNumbersOnly) {
    const auto edit = Make<CZELEdit>();
    edit->Init();
    Type(edit->Handle(), L"abc 1/2 x-3,4.5+~:;*\b\x1b\x16");
    EXPECT_EQ(TextOf(edit->Handle()), L"1/2-3,4.5");
}

TEST_F(EditTest, TypingLettersChangesNothing) {
    script_.text = L"7";
    const auto edit = Make<CZELEdit>();
    edit->Init();
    Type(edit->Handle(), L"abc");
    EXPECT_EQ(TextOf(edit->Handle()), L"7");
}

TEST_F(EditTest, ReturnAsksTheParentForTheNextControl) {
    script_.text = L"7";
    const auto edit = Make<CZELEdit>();
    edit->Init();
    Type(edit->Handle(), L"\r");
    EXPECT_EQ(parent_.next_dialog_controls, 1);
    EXPECT_EQ(TextOf(edit->Handle()), L"7");
}

TEST_F(EditTest, WantsAllKeysBesideWhatTheClassWants) {
    const auto edit = Make<CZELEdit>();
    const LRESULT code = Ask(edit->Handle(), WM_GETDLGCODE);
    EXPECT_TRUE(code & DLGC_WANTALLKEYS);
    EXPECT_TRUE(code & DLGC_WANTCHARS) << "the class's own answer";
    EXPECT_TRUE(code & DLGC_HASSETSEL) << "the class's own answer";
}

TEST_F(EditTest, TheFocusWhitensAnEditableOne) {
    const auto edit = Make<CZELEdit>();
    edit->Init();
    ASSERT_NE(GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_3DFACE));
    SetFocus(edit->Handle());
    ASSERT_EQ(GetFocus(), edit->Handle());
    EXPECT_EQ(BackgroundOf(edit->Handle()), GetSysColor(COLOR_WINDOW));
    SetFocus(parent_.Handle());
    EXPECT_EQ(BackgroundOf(edit->Handle()), GetSysColor(COLOR_3DFACE));
}

TEST_F(EditTest, TheFocusLeavesAReadOnlyOneGrey) {
    script_.read_only = true;
    const auto edit = Make<CZELEdit>();
    edit->Init();
    SetFocus(edit->Handle());
    EXPECT_EQ(BackgroundOf(edit->Handle()), GetSysColor(COLOR_3DFACE));
}

TEST_F(EditTest, LeavingCommitsTheTextAndAsksForARefresh) {
    const auto edit = Make<CZELEdit>();
    edit->Init();
    SetFocus(edit->Handle());
    parent_.TakeRefreshes();
    Type(edit->Handle(), L"1/250");
    script_.log.clear();
    SetFocus(parent_.Handle());
    EXPECT_THAT(script_.TakeLog(), ElementsAre("SetText 1/250"));
    EXPECT_EQ(parent_.TakeRefreshes(), 1);
}

TEST_F(EditTest, LeavingWithATextThatDoesNotParseShowsTheBox) {
    script_.accepts = false;
    const auto edit = Make<CZELEdit>();
    edit->Init();
    SetFocus(edit->Handle());
    Type(edit->Handle(), L"1/0");
    parent_.TakeRefreshes();
    script_.log.clear();
    page_test::ErrorBoxWatch box;
    SetFocus(parent_.Handle());
    EXPECT_EQ(box.boxes, 1);
    EXPECT_EQ(box.caption, L"Error");
    EXPECT_EQ(box.text, L"Error parsing value!");
    EXPECT_EQ(box.owner, parent_.Handle()) << "the top-level window of the edit";
    EXPECT_NE(box.icon_style, 0);
    EXPECT_THAT(script_.TakeLog(), testing::Contains("SetText 1/0").Times(1));
    EXPECT_EQ(parent_.TakeRefreshes(), 0);
    EXPECT_EQ(BackgroundOf(edit->Handle()), GetSysColor(COLOR_3DFACE));
    EXPECT_EQ(TextOf(edit->Handle()), L"1/0") << "as typed until the next refresh";
}

TEST_F(EditTest, TheBoxDoesNotBringUpAnother) {
    script_.accepts = false;
    const auto edit = Make<CZELEdit>();
    edit->Init();
    SetFocus(edit->Handle());
    Type(edit->Handle(), L"-");
    page_test::ErrorBoxWatch box;
    static HWND focus_thief;
    focus_thief = edit->Handle();
    box.while_open = [](HWND window) {
        SendMessageW(focus_thief, WM_KILLFOCUS, 0, 0);
        SendMessageW(window, WM_COMMAND, IDOK, 0);
    };
    SetFocus(parent_.Handle());
    EXPECT_EQ(box.boxes, 1);
    SendMessageW(edit->Handle(), WM_KILLFOCUS, 0, 0);
    EXPECT_EQ(box.boxes, 2) << "a later commit shows its own box";
}

TEST_F(EditTest, TheParentMayGoWhileTheBoxIsOpen) {
    script_.accepts = false;
    auto edit = Make<CZELEdit>();
    edit->Init();
    SetFocus(edit->Handle());
    Type(edit->Handle(), L"-");
    page_test::ErrorBoxWatch box;
    static ParentWindow* parent;
    static std::shared_ptr<CZELEdit>* owner;
    parent = &parent_;
    owner = &edit;
    box.while_open = [](HWND window) {
        parent->Destroy();
        owner->reset();
        if (IsWindow(window) != 0) SendMessageW(window, WM_COMMAND, IDOK, 0);
    };
    SendMessageW(edit->Handle(), WM_KILLFOCUS, 0, 0);
    EXPECT_EQ(box.boxes, 1);
    EXPECT_EQ(edit, nullptr);
    EXPECT_EQ(script_.living, 0);
}

}  // namespace
}  // namespace ZELPropUI
