#pragma once

#include "propui/windows/item_control.h"

namespace ZELPropUI {

/// A check box. Not an automatic one: the click is what toggles it.
class CZELSwitch : public CItemControl {
public:
    using CItemControl::CItemControl;
    bool Create(HWND parent, const RECT& rect, HWND extra) override;
    void Init() override;
    void Update() override;

protected:
    bool OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) override;

private:
    void Toggle();
};

}  // namespace ZELPropUI
