#include "propui/windows/edit.h"
#include "propui/windows/slider.h"
#include "propui/windows/spin_button.h"
#include "tests/windows/control_fixture.h"
#include "tests/windows/sent_messages.h"

#include <commctrl.h>
#include <gmock/gmock.h>

#include <limits>

namespace ZELPropUI {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SliderTest : public ControllerControlTest {
protected:
    SliderTest() { InitCommonControls(); }
};
using SpinButtonTest = SliderTest;

LRESULT Ask(HWND window, UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
    return SendMessageW(window, message, wparam, lparam);
}

TEST_F(SliderTest, IsATrackbarWithoutTicks) {
    const auto slider = Make<CZELSlider>();
    EXPECT_EQ(FirstStyleOf(slider->Handle()), 0x50010010u);
    EXPECT_EQ(RectOf(slider->Handle()).bottom, rect.bottom);
    EXPECT_THAT(script_.log, IsEmpty());
}

TEST_F(SliderTest, InitTakesTheRangeOnceAndShowsTheRest) {
    script_.low = 3;
    script_.high = 77;
    script_.position = 20;
    const auto slider = Make<CZELSlider>();
    slider->Init();
    EXPECT_THAT(script_.TakeLog(),
                ElementsAre("GetPositionRange", "IsAvailable", "IsReadOnly", "GetPosition"));
    EXPECT_EQ(Ask(slider->Handle(), TBM_GETRANGEMIN), 3);
    EXPECT_EQ(Ask(slider->Handle(), TBM_GETRANGEMAX), 77);
    EXPECT_EQ(Ask(slider->Handle(), TBM_GETPOS), 20);
    slider->Update();
    EXPECT_THAT(script_.TakeLog(), ElementsAre("IsAvailable", "IsReadOnly", "GetPosition"));
}

TEST_F(SliderTest, KeepsTheRangeOfTheClassAndItsPositionWhenTheControllerFails) {
    script_.range_known = false;
    script_.high = 7;
    script_.position = 50;
    const auto slider = Make<CZELSlider>();
    slider->Init();
    EXPECT_EQ(Ask(slider->Handle(), TBM_GETRANGEMAX), 100);
    script_.position_known = false;
    script_.position = 60;
    slider->Update();
    EXPECT_EQ(Ask(slider->Handle(), TBM_GETPOS), 50);
}

struct HeldPosition {
    std::int32_t low;
    std::int32_t high;
    std::int32_t position;
    LPARAM sent;
};

// What a 32-bit register without limits of its own gives is the first: one such position ended the process.
TEST_F(SliderTest, HoldsPositionsToTheRangeOfTheControl) {
    constexpr HeldPosition rows[] = {
        {0, -1, std::numeric_limits<std::int32_t>::min(), 0},
        {0, -1, 5, 0},
        {0, 9, 10, 9},
        {0, 9, std::numeric_limits<std::int32_t>::max(), 9},
        {-5, 5, -6, -5},
        {0, 50000, 7, 0},  // 16 bits make it 0 to -15536
        {0, 100, 100, 100},
    };
    for (const HeldPosition& row : rows) {
        script_.low = row.low;
        script_.high = row.high;
        script_.position = row.position;
        const page_test::SentMessages messages;
        const auto slider = Make<CZELSlider>();
        slider->Init();
        const auto sent = messages.To(slider->Handle(), {TBM_SETPOS});
        ASSERT_EQ(sent.size(), 1u);
        EXPECT_EQ(sent[0].lparam, row.sent) << row.high << " " << row.position;
    }
}

TEST_F(SliderTest, HandsTheFocusOnBeforeItIsDisabled) {
    const auto slider = Make<CZELSlider>();
    slider->Init();
    SetFocus(slider->Handle());
    slider->Update();
    EXPECT_EQ(GetFocus(), slider->Handle());
    EXPECT_EQ(parent_.next_dialog_controls, 0);
    script_.read_only = true;
    slider->Update();
    EXPECT_EQ(parent_.next_dialog_controls, 1);
    EXPECT_EQ(GetFocus(), parent_.Handle()) << "where nobody else takes it";
    slider->Update();
    EXPECT_EQ(parent_.next_dialog_controls, 1) << "it has none any more";
}

TEST_F(SliderTest, IsDisabledWhenNotAvailableOrReadOnly) {
    const auto slider = Make<CZELSlider>();
    script_.available = false;
    slider->Update();
    EXPECT_FALSE(IsWindowEnabled(slider->Handle()));
    script_.available = true;
    script_.read_only = true;
    slider->Update();
    EXPECT_FALSE(IsWindowEnabled(slider->Handle()));
    script_.read_only = false;
    slider->Update();
    EXPECT_TRUE(IsWindowEnabled(slider->Handle()));
}

TEST_F(SliderTest, EveryScrollCodeButTheEndOfADragWrites) {
    const auto slider = Make<CZELSlider>();
    Ask(slider->Handle(), TBM_SETPOS, TRUE, 42);
    for (const int code : {TB_LINEUP, TB_LINEDOWN, TB_PAGEUP, TB_PAGEDOWN, TB_THUMBPOSITION, TB_THUMBTRACK,
                           TB_TOP, TB_BOTTOM}) {
        // The position comes from the control, not from the message.
        Ask(parent_.Handle(), WM_HSCROLL, MAKEWPARAM(code, 9), reinterpret_cast<LPARAM>(slider->Handle()));
        EXPECT_THAT(script_.TakeLog(), ElementsAre("SetPosition 42")) << code;
        EXPECT_EQ(parent_.TakeRefreshes(), 1) << code;
    }
    Ask(parent_.Handle(), WM_HSCROLL, TB_ENDTRACK, reinterpret_cast<LPARAM>(slider->Handle()));
    EXPECT_THAT(script_.TakeLog(), IsEmpty());
    EXPECT_EQ(parent_.TakeRefreshes(), 0);
}

TEST_F(SliderTest, TakesTheSameMessageDirectly) {
    const auto slider = Make<CZELSlider>();
    Ask(slider->Handle(), TBM_SETPOS, TRUE, 9);
    Ask(slider->Handle(), WM_HSCROLL, TB_THUMBTRACK, 0);
    EXPECT_THAT(script_.TakeLog(), ElementsAre("SetPosition 9"));
    Ask(slider->Handle(), WM_HSCROLL, TB_ENDTRACK, 0);
    EXPECT_THAT(script_.TakeLog(), IsEmpty());
}

TEST_F(SliderTest, AKeyMovesThePositionAndWritesIt) {
    const auto slider = Make<CZELSlider>();
    slider->Init();
    script_.log.clear();
    Ask(slider->Handle(), WM_KEYDOWN, VK_RIGHT, 0);
    Ask(slider->Handle(), WM_KEYUP, VK_RIGHT, 0);
    EXPECT_THAT(script_.TakeLog(), ElementsAre("SetPosition 1"));
    EXPECT_EQ(parent_.TakeRefreshes(), 1);
}

TEST_F(SliderTest, ARefusedPositionIsARefreshLikeAnyOther) {
    script_.accepts = false;
    const auto slider = Make<CZELSlider>();
    Ask(slider->Handle(), WM_HSCROLL, TB_LINEDOWN, 0);
    EXPECT_EQ(parent_.TakeRefreshes(), 1);
}

TEST_F(SpinButtonTest, IsAnUpDownControlBesideItsEdit) {
    const auto edit =
        CreateWindowExW(0, L"EDIT", L"", WS_CHILD, 0, 0, 10, 10, parent_.Handle(), nullptr, nullptr, nullptr);
    const auto spin = Make<CZELSpinButton>(edit);
    EXPECT_EQ(FirstStyleOf(spin->Handle()), 0x50000000u);
    EXPECT_EQ(Ask(spin->Handle(), UDM_GETBUDDY), reinterpret_cast<LRESULT>(edit));
}

TEST_F(SpinButtonTest, InitTakesTheRangeWithTheLowPositionBelow) {
    script_.low = 2;
    script_.high = 30;
    script_.position = 11;
    const auto spin = Make<CZELSpinButton>();
    spin->Init();
    EXPECT_THAT(script_.TakeLog(),
                ElementsAre("GetPositionRange", "IsAvailable", "IsReadOnly", "GetPosition"));
    EXPECT_EQ(Ask(spin->Handle(), UDM_GETRANGE), MAKELPARAM(30, 2));
    EXPECT_EQ(LOWORD(Ask(spin->Handle(), UDM_GETPOS)), 11);
    script_.position_known = false;
    script_.position = 12;
    spin->Update();
    EXPECT_EQ(LOWORD(Ask(spin->Handle(), UDM_GETPOS)), 11);
}

TEST_F(SpinButtonTest, IsDisabledWhenNotAvailableOrReadOnly) {
    const auto spin = Make<CZELSpinButton>();
    script_.read_only = true;
    spin->Update();
    EXPECT_FALSE(IsWindowEnabled(spin->Handle()));
    script_.read_only = false;
    spin->Update();
    EXPECT_TRUE(IsWindowEnabled(spin->Handle()));
}

TEST_F(SpinButtonTest, AStepWritesThePositionAsASixteenBitNumber) {
    const auto spin = Make<CZELSpinButton>();
    Ask(spin->Handle(), UDM_SETRANGE, 0, MAKELPARAM(100, static_cast<WORD>(-100)));
    Ask(spin->Handle(), UDM_SETPOS, 0, MAKELPARAM(static_cast<WORD>(-5), 0));
    Ask(parent_.Handle(), WM_VSCROLL, SB_THUMBPOSITION, reinterpret_cast<LPARAM>(spin->Handle()));
    EXPECT_THAT(script_.TakeLog(), ElementsAre("SetPosition -5"));
    EXPECT_EQ(parent_.TakeRefreshes(), 1);
    Ask(parent_.Handle(), WM_VSCROLL, SB_ENDSCROLL, reinterpret_cast<LPARAM>(spin->Handle()));
    EXPECT_THAT(script_.TakeLog(), IsEmpty());
    EXPECT_EQ(parent_.TakeRefreshes(), 0);
    Ask(spin->Handle(), WM_VSCROLL, SB_THUMBPOSITION, 0);
    EXPECT_THAT(script_.TakeLog(), ElementsAre("SetPosition -5"));
}

TEST_F(SpinButtonTest, APressOfTheMouseStepsOnce) {
    const auto spin = Make<CZELSpinButton>();
    spin->Init();
    Ask(spin->Handle(), UDM_SETPOS, 0, 40);
    script_.log.clear();
    Ask(spin->Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(4, 4));
    Ask(spin->Handle(), WM_LBUTTONUP, 0, MAKELPARAM(4, 4));
    EXPECT_EQ(script_.log.size(), 1u);
    EXPECT_THAT(script_.log, ElementsAre("SetPosition 41"));
}

}  // namespace
}  // namespace ZELPropUI
