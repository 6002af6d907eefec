#include "propui/windows/spin_button.h"

#include "propui/control_logic.h"

#include <commctrl.h>

namespace ZELPropUI {
namespace {

constexpr DWORD style = 0x50000000;
static_assert(style == (WS_CHILD | WS_VISIBLE));

Framework::Superclass window_class(L"Selvane_msctls_updown32", L"msctls_updown32",
                                   Framework::SuperclassedWindow::Procedure);

}  // namespace

bool CZELSpinButton::Create(HWND parent, const RECT& rect, HWND extra) {
    if (!CreateChild(window_class, parent, rect, style)) return false;
    Send(UDM_SETBUDDY, reinterpret_cast<WPARAM>(extra));
    return true;
}

void CZELSpinButton::Init() {
    std::int32_t low = 0;
    std::int32_t high = 0;
    // The upper bound stands in the low word.
    if (Controller().GetPositionRange(low, high)) Send(UDM_SETRANGE, 0, MAKELPARAM(high, low));
    Update();
}

void CZELSpinButton::UpdateValue() {
    std::int32_t position = 0;
    if (Controller().GetPosition(position)) Send(UDM_SETPOS, 0, MAKELPARAM(position, 0));
    Redraw();
}

bool CZELSpinButton::OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) {
    if (message != WM_VSCROLL && message != Framework::ocm_base + WM_VSCROLL)
        return CControllerControl::OnMessage(message, wparam, lparam, result);
    if (LOWORD(wparam) == SB_ENDSCROLL) return true;
    Controller().SetPosition(static_cast<std::int16_t>(LOWORD(Send(UDM_GETPOS))));
    PostUpdateControls();
    return true;
}

}  // namespace ZELPropUI
