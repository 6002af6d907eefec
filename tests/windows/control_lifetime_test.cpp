#include "propui/windows/button.h"
#include "propui/windows/combo.h"
#include "propui/windows/edit.h"
#include "propui/windows/slider.h"
#include "propui/windows/spin_button.h"
#include "propui/windows/switch.h"
#include "tests/windows/control_fixture.h"

#include <commctrl.h>

namespace ZELPropUI {
namespace {

// The least that a control needs, and what the page does with it, over and over.
template <class Test>
class LifetimeTest : public Test {
protected:
    LifetimeTest() {
        InitCommonControls();
        LoadLibraryW(L"Msftedit.dll");
    }

    void Poke(CZELControlBase& control, HWND handle) {
        control.Init();
        control.Update();
        control.UpdateValue();
        SendMessageW(handle, 0x2000 + WM_COMMAND, 0, reinterpret_cast<LPARAM>(handle));
        SendMessageW(handle, 0x2000 + WM_HSCROLL, 0, 0);
        SendMessageW(handle, 0x2000 + WM_VSCROLL, 0, 0);
        this->parent_.TakeRefreshes();
    }

    template <class Control>
    void SurvivesItsParent(const std::shared_ptr<Control>& control) {
        const HWND handle = control->Handle();
        Poke(*control, handle);
        this->parent_.Destroy();
        EXPECT_EQ(control->Handle(), nullptr);
        EXPECT_FALSE(IsWindow(handle));
        Poke(*control, handle);
        // Without a window nothing is posted to the thread and no timer is started for it.
        MSG message;
        EXPECT_FALSE(PeekMessageW(&message, reinterpret_cast<HWND>(-1), 0, 0, PM_NOREMOVE));
    }
};

using ItemLifetimeTest = LifetimeTest<ItemControlTest>;
using ControllerLifetimeTest = LifetimeTest<ControllerControlTest>;

TEST_F(ItemLifetimeTest, ComboSurvivesItsParent) { SurvivesItsParent(Make<CZELCombo>()); }
TEST_F(ItemLifetimeTest, SwitchSurvivesItsParent) { SurvivesItsParent(Make<CZELSwitch>(L"Auto")); }
TEST_F(ItemLifetimeTest, ButtonSurvivesItsParent) { SurvivesItsParent(Make<CZELButton>(L"Push")); }
TEST_F(ControllerLifetimeTest, SliderSurvivesItsParent) { SurvivesItsParent(Make<CZELSlider>()); }
TEST_F(ControllerLifetimeTest, EditSurvivesItsParent) { SurvivesItsParent(Make<CZELEdit>()); }
TEST_F(ControllerLifetimeTest, SpinButtonSurvivesItsParent) { SurvivesItsParent(Make<CZELSpinButton>()); }

TEST_F(ControllerLifetimeTest, AControlMayBeDroppedInTheMidstOfItsOwnWrite) {
    auto slider = Make<CZELSlider>();
    const HWND handle = slider->Handle();
    script_.during_write = [&] {
        parent_.Destroy();
        slider.reset();
        EXPECT_EQ(script_.living, 1) << "kept until its handler is done";
    };
    SendMessageW(handle, WM_HSCROLL, TB_THUMBTRACK, 0);
    EXPECT_EQ(script_.living, 0);
}

TEST_F(ControllerLifetimeTest, ADroppedControlTakesItsWindowAlong) {
    auto slider = Make<CZELSlider>();
    const HWND handle = slider->Handle();
    script_.during_write = [&] {
        slider.reset();
        EXPECT_TRUE(IsWindow(handle));
    };
    SendMessageW(parent_.Handle(), WM_HSCROLL, TB_THUMBTRACK, reinterpret_cast<LPARAM>(handle));
    EXPECT_FALSE(IsWindow(handle));
    EXPECT_EQ(script_.living, 0);
}

TEST_F(ItemLifetimeTest, AControlWithoutAWindowStillWorksAsFarAsItCan) {
    const auto item = platform::com_ptr<test_support::FakeItem>::attach(new test_support::FakeItem(script_));
    const auto button = std::make_shared<CZELButton>(item.get(), key, L"Push");
    EXPECT_FALSE(button->Create(nullptr, rect, nullptr));
    button->Init();
    button->Update();
    EXPECT_EQ(button->Handle(), nullptr);
}

}  // namespace
}  // namespace ZELPropUI
