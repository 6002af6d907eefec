#pragma once

#include "propui/windows/controller_control.h"

namespace ZELPropUI {

/// The up-down control beside an edit.
class CZELSpinButton : public CControllerControl {
public:
    explicit CZELSpinButton(ISliderController* controller) : CControllerControl(controller) {}
    /// `extra` is the window of the edit.
    bool Create(HWND parent, const RECT& rect, HWND extra) override;
    void Init() override;
    void UpdateValue() override;

protected:
    bool OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) override;
};

}  // namespace ZELPropUI
