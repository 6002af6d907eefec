#pragma once

#include "platform/com_ptr.h"
#include "propui/slider_controller.h"
#include "propui/windows/control_window.h"

namespace ZELPropUI {

/// A control that shows what a slider controller tells.
class CControllerControl : public CControlWindow {
protected:
    explicit CControllerControl(ISliderController* controller) : controller_(controller) {}

    [[nodiscard]] ISliderController& Controller() const noexcept { return *controller_; }
    [[nodiscard]] bool IsEditable() const { return controller_->IsAvailable() && !controller_->IsReadOnly(); }

private:
    platform::com_ptr<ISliderController> controller_;
};

}  // namespace ZELPropUI
