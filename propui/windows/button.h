#pragma once

#include "propui/windows/item_control.h"

#include <cstdint>
#include <string>

namespace ZELPropUI {

/// A push button. Each click starts a timer that ticks twelve times and does nothing.
class CZELButton : public CItemControl {
public:
    CZELButton(ZELAdapterHelper::CZELItemDataBase* item, ZELAdapterHelper::InterfaceKey key,
               std::wstring caption);
    bool Create(HWND parent, const RECT& place, HWND extra) override;
    void Init() override;
    void Update() override;

protected:
    bool OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) override;

private:
    void Click();
    void Tick();

    std::int32_t ticks_ = 0;
    std::wstring caption_;
};

}  // namespace ZELPropUI
