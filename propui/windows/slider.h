#pragma once

#include "propui/windows/controller_control.h"

namespace ZELPropUI {

/// A trackbar. The device follows each step of a drag.
class CZELSlider : public CControllerControl {
public:
    explicit CZELSlider(ISliderController* controller) : CControllerControl(controller) {}
    bool Create(HWND parent, const RECT& rect, HWND extra) override;
    void Init() override;
    void UpdateValue() override;

protected:
    bool OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) override;
};

}  // namespace ZELPropUI
