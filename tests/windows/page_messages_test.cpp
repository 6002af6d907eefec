#include "tests/windows/error_box.h"
#include "tests/windows/page_fixture.h"

#include <commctrl.h>
#include <gmock/gmock.h>

namespace page_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What each message to a page of the simple camera has it ask and write.
class PageMessagesTest : public OpenPageTest {
protected:
    static void Send(HWND window, UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
        SendMessageW(window, message, wparam, lparam);
    }
    void Scroll(HWND control, UINT message, int code) const {
        Send(window_, message, MAKEWPARAM(code, 0), reinterpret_cast<LPARAM>(control));
    }
    static void Type(HWND window, const std::wstring& text) {
        for (const wchar_t character : text) Send(window, WM_CHAR, character, 1);
    }

    [[nodiscard]] Transcript FloatRefresh(double value, bool automatic) const {
        return {lines_.Locked("ExposureTime", true), lines_.Read("ExposureTime", value),
                lines_.Locked("ExposureAuto", true), lines_.Read("ExposureAuto", automatic ? 1 : 0)};
    }
    [[nodiscard]] Transcript IntegerRefresh(int value) const {
        return {lines_.Locked("Zoom", true), lines_.Read("Zoom", value)};
    }
    [[nodiscard]] Transcript FeatureRefresh(bool enabled, int entry) const {
        return {lines_.Locked("TriggerEnable", true), lines_.Read("TriggerEnable", enabled ? 1 : 0),
                lines_.Locked("TriggerSoftware", enabled), lines_.Locked("TriggerSource", true),
                lines_.ReadEntry(entry)};
    }
    static Transcript WriteAnd(const std::string& write, const Transcript& refresh) {
        Transcript all{write};
        all.insert(all.end(), refresh.begin(), refresh.end());
        return all;
    }
};

TEST_P(PageMessagesTest, ARefreshAsksEachElementOnceInOrder) {
    OpenPage(exposure_page);
    EXPECT_EQ(SendMessageW(window_, 1029, 0, 0), 1);
    EXPECT_EQ(TakeTranscript(), FloatRefresh(0.01, false));
}

// What a window is told to erase before it paints.
class EraseWatch {
public:
    explicit EraseWatch(HWND window) : window_(window) {
        erased = 0;
        before_ = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure)));
    }
    EraseWatch(const EraseWatch&) = delete;
    EraseWatch& operator=(const EraseWatch&) = delete;
    ~EraseWatch() { SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before_)); }

    static inline int erased = 0;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
        if (message == WM_ERASEBKGND) ++erased;
        return CallWindowProcW(before_, window, message, wparam, lparam);
    }

    HWND window_;
    static inline WNDPROC before_ = nullptr;
};

TEST_P(PageMessagesTest, ARefreshPaintsWithoutErasingFirst) {
    const PageControls controls = OpenPage(lens_page);
    for (const HWND control : {controls.sliders.at(0), controls.spins.at(0)}) {
        UpdateWindow(control);
        const EraseWatch watch(control);
        InvalidateRect(control, nullptr, TRUE);
        UpdateWindow(control);
        EXPECT_EQ(EraseWatch::erased, 1) << "so is it seen";
        Send(window_, 1029);
        EXPECT_TRUE(GetUpdateRect(control, nullptr, FALSE));
        UpdateWindow(control);
        EXPECT_EQ(EraseWatch::erased, 1);
    }
}

TEST_P(PageMessagesTest, NothingIsAskedWithoutAReason) {
    const PageControls controls = OpenPage(exposure_page);
    ShowWindow(window_, SW_HIDE);
    ShowWindow(window_, SW_SHOW);
    InvalidateRect(window_, nullptr, TRUE);
    UpdateWindow(window_);
    Send(window_, WM_TIMER, 1025);
    Send(window_, WM_TIMER, 1);
    Send(window_, WM_SIZE);
    Send(window_, WM_ERASEBKGND);
    MoveWindow(window_, 0, 0, 300, 300, TRUE);
    EXPECT_THAT(Seen(), IsEmpty());
}

TEST_P(PageMessagesTest, EachStepOfADragWritesAndTheEndDoesNot) {
    const PageControls controls = OpenPage(exposure_page);
    Send(controls.sliders[0], TBM_SETPOS, TRUE, 100);
    Scroll(controls.sliders[0], WM_HSCROLL, TB_THUMBTRACK);
    EXPECT_EQ(Seen(), WriteAnd(lines_.Write("ExposureTime", 4.0), FloatRefresh(4, false)));
    EXPECT_EQ(TextOf(controls.edits[0]), L"4.000 sec");
    Send(controls.sliders[0], TBM_SETPOS, TRUE, 0);
    Scroll(controls.sliders[0], WM_HSCROLL, TB_THUMBPOSITION);
    EXPECT_THAT(Seen(), testing::SizeIs(5));
    Scroll(controls.sliders[0], WM_HSCROLL, TB_ENDTRACK);
    EXPECT_THAT(Seen(), IsEmpty());
}

TEST_P(PageMessagesTest, ADragWithTheMouseWrites) {
    const PageControls controls = OpenPage(lens_page);
    RECT thumb{};
    Send(controls.sliders[0], TBM_GETTHUMBRECT, 0, reinterpret_cast<LPARAM>(&thumb));
    const int y = (thumb.top + thumb.bottom) / 2;
    const int x = (thumb.left + thumb.right) / 2;
    Send(controls.sliders[0], WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    Settle();
    Send(controls.sliders[0], WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(1000, y));
    EXPECT_EQ(Seen(), WriteAnd(lines_.Write("Zoom", 1000), IntegerRefresh(1000)));
    Send(controls.sliders[0], WM_LBUTTONUP, 0, MAKELPARAM(1000, y));
    for (const std::string& line : Seen()) EXPECT_NE(line, lines_.Write("Zoom", 0));
    std::int64_t value = 0;
    EXPECT_EQ(camera_->get_named("Zoom/Value", value), S_OK);
    EXPECT_EQ(value, 1000);
}

TEST_P(PageMessagesTest, AKeyOfTheSliderWritesOnce) {
    const PageControls controls = OpenPage(lens_page);
    Send(controls.sliders[0], WM_KEYDOWN, VK_RIGHT);
    Send(controls.sliders[0], WM_KEYUP, VK_RIGHT);
    EXPECT_EQ(Seen(), WriteAnd(lines_.Write("Zoom", 210), IntegerRefresh(210)));
    Send(controls.sliders[0], WM_KEYDOWN, VK_END);
    Send(controls.sliders[0], WM_KEYUP, VK_END);
    EXPECT_EQ(Seen(), WriteAnd(lines_.Write("Zoom", 1000), IntegerRefresh(1000)));
    EXPECT_EQ(TextOf(controls.edits[0]), L"1000");
}

TEST_P(PageMessagesTest, ThePositionOfTheUpDownControlWrites) {
    const PageControls controls = OpenPage(lens_page);
    Send(controls.spins[0], UDM_SETPOS, 0, 7);
    Scroll(controls.spins[0], WM_VSCROLL, SB_THUMBPOSITION);
    EXPECT_EQ(Seen(), WriteAnd(lines_.Write("Zoom", 70), IntegerRefresh(70)));
    Scroll(controls.spins[0], WM_VSCROLL, SB_ENDSCROLL);
    EXPECT_THAT(Seen(), IsEmpty());
    EXPECT_EQ(SendMessageW(controls.sliders[0], TBM_GETPOS, 0, 0), 7) << "the slider follows";
}

TEST_P(PageMessagesTest, APressOnTheUpDownControlStepsOnce) {
    const PageControls controls = OpenPage(lens_page);
    Send(controls.spins[0], WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(4, 4));
    Send(controls.spins[0], WM_LBUTTONUP, 0, MAKELPARAM(4, 4));
    EXPECT_EQ(Seen(), WriteAnd(lines_.Write("Zoom", 210), IntegerRefresh(210)));
}

TEST_P(PageMessagesTest, AClickOnASwitchWritesItsNewState) {
    const PageControls controls = OpenPage(exposure_page);
    Send(controls.switches[0], BM_CLICK);
    EXPECT_EQ(Seen(), WriteAnd(lines_.Write("ExposureAuto", 1), FloatRefresh(0.01, true)));
    EXPECT_EQ(SendMessageW(controls.switches[0], BM_GETCHECK, 0, 0), BST_CHECKED);
    Send(controls.switches[0], BM_CLICK);
    EXPECT_EQ(Seen(), WriteAnd(lines_.Write("ExposureAuto", 0), FloatRefresh(0.01, false)));
}

TEST_P(PageMessagesTest, AClickOnAButtonExecutes) {
    const PageControls controls = OpenPage(feature_page);
    Send(controls.buttons[0], BM_CLICK);
    EXPECT_EQ(Seen(), WriteAnd(lines_.Push(), FeatureRefresh(true, 0)));
    for (int tick = 0; tick < 13; ++tick) Send(controls.buttons[0], WM_TIMER, 1025);
    EXPECT_THAT(Seen(), IsEmpty()) << "a tick does nothing";
}

TEST_P(PageMessagesTest, APickInAListWritesTheEntry) {
    const PageControls controls = OpenPage(feature_page);
    Send(controls.combos[0], CB_SETCURSEL, 1);
    Send(window_, WM_COMMAND, MAKEWPARAM(0, CBN_SELCHANGE), reinterpret_cast<LPARAM>(controls.combos[0]));
    EXPECT_EQ(Seen(), WriteAnd(lines_.WriteEntry(1), FeatureRefresh(true, 1)));
    EXPECT_EQ(TextOf(controls.combos[0]), L"Line 1");
    Send(controls.combos[0], CB_SETCURSEL, static_cast<WPARAM>(-1));
    Send(window_, WM_COMMAND, MAKEWPARAM(0, CBN_SELCHANGE), reinterpret_cast<LPARAM>(controls.combos[0]));
    EXPECT_EQ(Seen(), FeatureRefresh(true, 1)) << "no entry, no write";
}

TEST_P(PageMessagesTest, AKeyInAListWritesTheEntry) {
    const PageControls controls = OpenPage(feature_page);
    Send(controls.combos[0], WM_KEYDOWN, VK_DOWN);
    EXPECT_EQ(Seen(), WriteAnd(lines_.WriteEntry(1), FeatureRefresh(true, 1)));
}

TEST_P(PageMessagesTest, TheFocusAsksWhetherAnEditMayBeChanged) {
    const PageControls controls = OpenPage(exposure_page);
    SetFocus(controls.edits[0]);
    EXPECT_THAT(Seen(), ElementsAre(lines_.Locked("ExposureTime", true)));
}

TEST_P(PageMessagesTest, LeavingAnEditWritesWhatWasTyped) {
    const PageControls controls = OpenPage(exposure_page);
    SetFocus(controls.edits[0]);
    SetWindowTextW(controls.edits[0], L"");
    Type(controls.edits[0], L"1/1000");
    EXPECT_EQ(TextOf(controls.edits[0]), L"1/1000");
    Settle();
    SetFocus(controls.sliders[0]);
    EXPECT_EQ(Seen(), WriteAnd(lines_.Write("ExposureTime", 0.001), FloatRefresh(0.001, false)));
    EXPECT_EQ(TextOf(controls.edits[0]), L"1/1000 sec");
}

TEST_P(PageMessagesTest, LeavingAnEditUntouchedWritesWhatItShows) {
    const PageControls controls = OpenPage(exposure_page);
    SetFocus(controls.edits[0]);
    Settle();
    SetFocus(controls.sliders[0]);
    EXPECT_EQ(Seen(), WriteAnd(lines_.Write("ExposureTime", 0.01), FloatRefresh(0.01, false)));
}

TEST_P(PageMessagesTest, ReturnMovesTheFocusOnAndSoCommits) {
    const PageControls controls = OpenPage(lens_page);
    SetFocus(controls.edits[0]);
    SetWindowTextW(controls.edits[0], L"");
    Type(controls.edits[0], L"430");
    Settle();
    Type(controls.edits[0], L"\r");
    EXPECT_NE(GetFocus(), controls.edits[0]);
    EXPECT_EQ(Seen(), WriteAnd(lines_.Write("Zoom", 430), IntegerRefresh(430)));
}

TEST_P(PageMessagesTest, ATextThatIsNoNumberWritesNothingAndShowsTheBox) {
    const PageControls controls = OpenPage(exposure_page);
    SetFocus(controls.edits[0]);
    SetWindowTextW(controls.edits[0], L"1/0");
    Settle();
    ErrorBoxWatch box;
    SetFocus(controls.sliders[0]);
    EXPECT_EQ(box.boxes, 1);
    EXPECT_EQ(box.text, L"Error parsing value!");
    EXPECT_EQ(box.caption, L"Error");
    EXPECT_EQ(box.owner, host_.Handle());
    for (const std::string& line : Seen()) EXPECT_THAT(line, testing::Not(testing::StartsWith("Set")));
    EXPECT_EQ(TextOf(controls.edits[0]), L"1/0");
    SendMessageW(window_, 1029, 0, 0);
    EXPECT_EQ(TextOf(controls.edits[0]), L"1/100 sec") << "until the next refresh";
}

TEST_P(PageMessagesTest, ARefusedValueShowsTheBoxToo) {
    const PageControls controls = OpenPage(exposure_page);
    SetFocus(controls.edits[0]);
    Settle();
    camera_->add_fault(simcam::fail_when(simcam::calls_of(simcam::call_kind::set), E_ACCESSDENIED));
    ErrorBoxWatch box;
    SetFocus(controls.sliders[0]);
    EXPECT_EQ(box.boxes, 1);
}

TEST_P(PageMessagesTest, ARefusedWriteIsFollowedByTheTrueState) {
    const PageControls controls = OpenPage(lens_page);
    camera_->add_fault(simcam::fail_when(simcam::calls_of(simcam::call_kind::set), E_ACCESSDENIED));
    Send(controls.sliders[0], TBM_SETPOS, TRUE, 77);
    Scroll(controls.sliders[0], WM_HSCROLL, TB_THUMBTRACK);
    EXPECT_EQ(Seen(), WriteAnd(lines_.RefusedWrite("Zoom", 770), IntegerRefresh(200)));
    EXPECT_EQ(SendMessageW(controls.sliders[0], TBM_GETPOS, 0, 0), 20);
}

TEST_P(PageMessagesTest, AChangeGreysOutWhatDependsOnIt) {
    const PageControls controls = OpenPage(feature_page);
    EXPECT_TRUE(IsWindowEnabled(controls.buttons[0]));
    Send(controls.switches[0], BM_CLICK);
    RunMessages();
    EXPECT_FALSE(IsWindowEnabled(controls.buttons[0])) << "no software trigger without a trigger";
    Send(controls.switches[0], BM_CLICK);
    RunMessages();
    EXPECT_TRUE(IsWindowEnabled(controls.buttons[0]));
}

TEST_P(PageMessagesTest, ALockedFeatureGreysOutItsControls) {
    const PageControls controls = OpenPage(exposure_page);
    EXPECT_EQ(camera_->set_named("Changeable/Value", 0), S_OK);
    EXPECT_TRUE(IsWindowEnabled(controls.sliders[0])) << "nothing is polled";
    SendMessageW(window_, 1029, 0, 0);
    for (const HWND control :
         {controls.sliders[0], controls.edits[0], controls.spins[0], controls.switches[0]}) {
        EXPECT_FALSE(IsWindowEnabled(control)) << ClassOf(control);
    }
}

TEST_P(PageMessagesTest, ARefreshIsPostedNotSent) {
    const PageControls controls = OpenPage(lens_page);
    Send(controls.sliders[0], WM_HSCROLL, TB_LINEDOWN);
    EXPECT_THAT(TakeTranscript(), testing::SizeIs(1)) << "the write alone";
    RunMessages();
    EXPECT_EQ(TakeTranscript(), IntegerRefresh(200));
}

TEST_P(PageMessagesTest, NotificationsWithOddContentsAreHarmless) {
    const PageControls controls = OpenPage(exposure_page);
    constexpr UINT messages[] = {WM_COMMAND,        WM_HSCROLL,      WM_VSCROLL,
                                 WM_CTLCOLORSTATIC, WM_CTLCOLOREDIT, WM_VKEYTOITEM};
    for (const UINT message : messages) {
        Send(window_, message, 0, 0);
        Send(window_, message, 5, reinterpret_cast<LPARAM>(host_.Handle()));
        Send(window_, message, 5, 0x12340);
        Send(window_, message, 5, reinterpret_cast<LPARAM>(window_));
    }
    Send(window_, WM_NOTIFY, 0, 0);
    Send(window_, WM_DRAWITEM, 0, 0);
    Send(window_, WM_DRAWITEM, 1, 0);
    Send(window_, WM_MEASUREITEM, 1, 0);
    Send(window_, WM_PARENTNOTIFY, MAKEWPARAM(WM_LBUTTONDOWN, 77), 0);
    EXPECT_THAT(Seen(), IsEmpty());
}

TEST_P(PageMessagesTest, AScrollOfAnotherAxisWritesNothing) {
    const PageControls controls = OpenPage(lens_page);
    Scroll(controls.sliders[0], WM_VSCROLL, SB_THUMBPOSITION);
    Scroll(controls.spins[0], WM_HSCROLL, TB_THUMBTRACK);
    EXPECT_THAT(Seen(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(AccessPaths, PageMessagesTest,
                         testing::Values(AccessPath::Named, AccessPath::Registers), AccessPathName);

}  // namespace
}  // namespace page_test
