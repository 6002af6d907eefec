#include "propui/windows/button.h"

#include "propui/control_logic.h"
#include "propui/windows/button_class.h"

namespace ZELPropUI {
namespace {

constexpr DWORD style = 0x50010000;
static_assert(style == (WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON));

constexpr UINT_PTR timer_id = 1025;
constexpr UINT timer_period = 500;  // ms
constexpr std::int32_t last_tick = 10;

}  // namespace

bool CZELButton::Create(HWND parent, const RECT& rect, HWND) {
    if (!CreateChild(ButtonClass(), parent, rect, style)) return false;
    UseFontOfParent();
    return true;
}

void CZELButton::Init() {
    SetText(Caption());
    Update();
}

void CZELButton::Update() {
    Enable(IsItemAvailable(Item(), Key()));
    UpdateValue();
}

bool CZELButton::OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT&) {
    if (IsOwnCommand(message, wparam, lparam, BN_CLICKED)) {
        Click();
        return true;
    }
    if (message == WM_TIMER && wparam == timer_id) {
        Tick();
        return true;
    }
    return false;
}

void CZELButton::Click() {
    PushButton(Item(), Key());
    PostUpdateControls();
    ticks_ = 0;
    if (Handle() != nullptr) SetTimer(Handle(), timer_id, timer_period, nullptr);
}

void CZELButton::Tick() {
    if (ticks_++ > last_tick) KillTimer(Handle(), timer_id);
}

}  // namespace ZELPropUI
