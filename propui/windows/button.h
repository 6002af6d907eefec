#pragma once

#include "propui/windows/item_control.h"

#include <cstdint>

namespace ZELPropUI {

/// A push button. Each click starts a timer that ticks twelve times and does nothing.
class CZELButton : public CItemControl {
public:
    using CItemControl::CItemControl;
    bool Create(HWND parent, const RECT& rect, HWND extra) override;
    void Init() override;
    void Update() override;

protected:
    bool OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) override;

private:
    void Click();
    void Tick();

    std::int32_t ticks_ = 0;
};

}  // namespace ZELPropUI
