#pragma once

#include "platform/com_ptr.h"
#include "propui/control_logic.h"
#include "propui/slider_controller.h"
#include "propui/windows/accessible_name.h"
#include "propui/windows/control_window.h"

#include <string>

namespace ZELPropUI {

/// A control that shows what a slider controller tells.
class CControllerControl : public CControlWindow {
public:
    ~CControllerControl() override { ForgetName(); }
    /// The name that screen readers say, for a window that has no text of that kind.
    void SetName(const std::wstring& name) noexcept { named_ = SetAccessibleName(Handle(), name); }
    [[nodiscard]] ISliderController* SharedController() const noexcept override { return controller_.get(); }
    void Update() override {
        Enable(IsEditable(*controller_));
        UpdateValue();
    }

protected:
    explicit CControllerControl(ISliderController* controller) : controller_(controller) {}

    bool OnMessage(UINT message, WPARAM, LPARAM, LRESULT&) override {
        if (message == WM_DESTROY) ForgetName();
        return false;
    }

    [[nodiscard]] ISliderController& Controller() const noexcept { return *controller_; }

private:
    void ForgetName() noexcept {
        if (named_) ClearAccessibleName(Handle());
        named_ = false;
    }

    bool named_ = false;
    platform::com_ptr<ISliderController> controller_;
};

}  // namespace ZELPropUI
