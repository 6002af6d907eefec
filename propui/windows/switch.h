#pragma once

#include "propui/windows/item_control.h"

#include <string>

namespace ZELPropUI {

/// A check box. Not an automatic one: the click is what toggles it.
class CZELSwitch : public CItemControl {
public:
    CZELSwitch(ZELAdapterHelper::CZELItemDataBase* item, ZELAdapterHelper::InterfaceKey key,
               std::wstring caption);
    bool Create(HWND parent, const RECT& place, HWND extra) override;
    void Init() override;
    void Update() override;

protected:
    bool OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) override;

private:
    void Toggle();

    std::wstring caption_;
};

}  // namespace ZELPropUI
