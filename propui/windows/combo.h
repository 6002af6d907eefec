#pragma once

#include "propui/windows/item_control.h"

namespace ZELPropUI {

/// A drop-down list of the texts of an element; the value is the index of the selected one.
class CZELCombo : public CItemControl {
public:
    using CItemControl::CItemControl;
    bool Create(HWND parent, const RECT& rect, HWND extra) override;
    void Init() override;
    void Update() override;
    void UpdateValue() override;

protected:
    bool OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) override;
};

}  // namespace ZELPropUI
