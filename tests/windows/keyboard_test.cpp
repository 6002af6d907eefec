#include "tests/support/not_empty.h"
#include "tests/windows/frame_fixture.h"

#include <commctrl.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

namespace page_test {
namespace {

using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::Not;
using Windows = std::vector<HWND>;

// Where the tab key leads in a dialog, once around.
Windows TabOrder(HWND dialog) {
    Windows order;
    for (HWND at = GetNextDlgTabItem(dialog, nullptr, FALSE);
         at != nullptr && std::find(order.begin(), order.end(), at) == order.end();
         at = GetNextDlgTabItem(dialog, at, FALSE)) {
        order.push_back(at);
    }
    return order;
}

Windows TabStopsOf(HWND page) {
    Windows stops;
    for (const HWND child : ChildrenOf(page)) {
        const bool stop = (GetWindowLongPtrW(child, GWL_STYLE) & WS_TABSTOP) != 0;
        if (stop && IsWindowEnabled(child) != 0) stops.push_back(child);
    }
    return stops;
}

// As the keyboard does it; the messages then take the way of the host's loop, which is that of a dialog or,
// with none, one that knows nothing of dialogs.
void Press(HWND dialog, BYTE key, bool shift = false) {
    if (shift) keybd_event(VK_SHIFT, 0, 0, 0);
    keybd_event(key, 0, 0, 0);
    keybd_event(key, 0, KEYEVENTF_KEYUP, 0);
    if (shift) keybd_event(VK_SHIFT, 0, KEYEVENTF_KEYUP, 0);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        if (dialog != nullptr && IsDialogMessageW(dialog, &message) != 0) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void PressTab(HWND dialog, bool shift = false) { Press(dialog, VK_TAB, shift); }

// What a user presses to give the control with the focus another value. An edit has the typed one instead,
// and takes it with the return key.
void ChangeByKeys(HWND dialog, const std::vector<BYTE>& typed) {
    const std::wstring window_class = ClassOf(GetFocus());
    if (window_class == L"Selvane_RICHEDIT50W") {
        Press(dialog, VK_HOME);
        Press(dialog, VK_END, true);
        for (const BYTE key : typed) Press(dialog, key);
        Press(dialog, VK_RETURN);
    } else if (window_class == L"Selvane_BUTTON") {
        Press(dialog, VK_SPACE);
    } else if (window_class == L"Selvane_COMBOBOX") {
        Press(dialog, VK_DOWN);
    } else {
        Press(dialog, VK_RIGHT);
    }
}

// Where the focus is after each of so many tab keys.
Windows WayOfTheFocus(HWND dialog, std::size_t keys, bool shift = false) {
    Windows way;
    while (way.size() < keys) {
        PressTab(dialog, shift);
        way.push_back(GetFocus());
    }
    return way;
}

/// A dialog with a button before the page and one behind it.
class KeyboardTest : public AccessPathTest {
protected:
    KeyboardTest() { SetForegroundWindow(host_.Handle()); }

    HWND AddButton(const wchar_t* caption) {
        return CreateWindowExW(0, L"BUTTON", caption, WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 500, 60, 25,
                               host_.Handle(), nullptr, GetModuleHandleW(nullptr), nullptr);
    }
    HWND OpenPage() {
        EXPECT_EQ(page_->Activate(host_.Handle(), &rect, FALSE), S_OK);
        EXPECT_EQ(page_->Show(SW_SHOW), S_OK);
        return FindWindowExW(host_.Handle(), nullptr, L"#32770", nullptr);
    }

    HWND before_ = AddButton(L"Before");
    PagePtr page_ = GivenPage(exposure_page);
    HWND window_ = OpenPage();
    HWND behind_ = AddButton(L"Behind");
};

TEST_P(KeyboardTest, TheTabOrderOfADialogGoesThroughThePage) {
    Windows expected = TabStopsOf(window_);
    ASSERT_GE(expected.size(), 3U);
    expected.insert(expected.begin(), before_);
    expected.push_back(behind_);
    EXPECT_THAT(TabOrder(host_.Handle()), ElementsAreArray(expected));
}

TEST_P(KeyboardTest, TheTabKeyGoesThroughThePageAndOut) {
    Windows around = TabStopsOf(window_);
    around.push_back(behind_);
    around.push_back(before_);
    SetFocus(before_);
    EXPECT_THAT(WayOfTheFocus(host_.Handle(), around.size()), ElementsAreArray(around));
    std::rotate(around.begin(), around.end() - 1, around.end());
    std::reverse(around.begin(), around.end());
    EXPECT_THAT(WayOfTheFocus(host_.Handle(), around.size(), true), ElementsAreArray(around));
}

TEST_P(KeyboardTest, AControlThatIsDisabledHandsTheFocusOn) {
    UseCamera(CameraOn(GetParam(), "full"));
    ASSERT_EQ(Give(*page_), S_OK);
    ASSERT_EQ(page_->Deactivate(), S_OK);
    window_ = OpenPage();
    std::size_t disabled = 0;
    for (const HWND control : test_support::NotEmpty(TabStopsOf(window_))) {
        camera_->memory().poke(0x100, {0x0F});
        SendMessageW(window_, 1029, 0, 0);
        if (IsWindowEnabled(control) == 0) continue;
        SetFocus(control);
        ASSERT_EQ(GetFocus(), control);
        Settle();
        camera_->memory().poke(0x100, {0x0E});
        SendMessageW(window_, 1029, 0, 0);
        RunMessages();
        EXPECT_NE(GetFocus(), nullptr);
        EXPECT_TRUE(IsWindowEnabled(GetFocus()));
        if (IsWindowEnabled(control) == 0) ++disabled;
        EXPECT_THAT(TakeTranscript(), testing::Each(Not(HasSubstr("Set device")))) << "nobody left an edit";
    }
    EXPECT_GE(disabled, 10U);
}

TEST_P(KeyboardTest, EveryControlObeysKeysInADialogAndInAHostThatTranslatesNothing) {
    const std::vector<BYTE> typed[] = {{'1', VK_DIVIDE, '5', '0'}, {}, {'5', '0'}};
    const CLSID pages[] = {exposure_page, feature_page, lens_page};
    for (std::size_t at = 0; at < std::size(pages); ++at) {
        ASSERT_EQ(page_->Deactivate(), S_OK);
        page_ = GivenPage(pages[at]);
        window_ = OpenPage();
        for (const HWND dialog : {host_.Handle(), HWND{nullptr}}) {
            for (const HWND control : test_support::NotEmpty(TabStopsOf(window_))) {
                SCOPED_TRACE(testing::PrintToString(TextOf(control)));
                SetFocus(control);
                Settle();
                ChangeByKeys(dialog, typed[at]);
                EXPECT_THAT(TakeTranscript(), testing::Contains(HasSubstr(lines_.AnyWrite())))
                    << testing::PrintToString(ClassOf(control)) << (dialog != nullptr ? " of a dialog" : "");
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AccessPaths, KeyboardTest, testing::Values(AccessPath::Named, AccessPath::Registers),
                         AccessPathName);

class KeyboardFrameTest : public FrameTest {};

TEST_P(KeyboardFrameTest, TheTabKeyGoesThroughThePageAndTheFrame) {
    EXPECT_EQ(RunFrame(*camera_,
                       [](HWND sheet) {
                           SetForegroundWindow(sheet);
                           for (const HWND page : OpenPages(sheet)) {
                               if (IsWindowVisible(page) == 0) continue;
                               const Windows order = TabOrder(sheet);
                               const Windows stops = TabStopsOf(page);
                               ASSERT_GE(stops.size(), 3U);
                               const auto first = std::find(order.begin(), order.end(), stops.front());
                               ASSERT_GE(order.end() - first, static_cast<std::ptrdiff_t>(stops.size()));
                               EXPECT_TRUE(std::equal(stops.begin(), stops.end(), first));
                               EXPECT_THAT(order, testing::Contains(GetDlgItem(sheet, IDOK)));
                               SetFocus(order.back());
                               EXPECT_THAT(WayOfTheFocus(sheet, order.size()), ElementsAreArray(order));
                           }
                       }),
              S_OK);
}

INSTANTIATE_TEST_SUITE_P(AccessPaths, KeyboardFrameTest,
                         testing::Values(AccessPath::Named, AccessPath::Registers), AccessPathName);

}  // namespace
}  // namespace page_test
