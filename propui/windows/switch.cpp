#include "propui/windows/switch.h"

#include "propui/control_logic.h"
#include "propui/windows/button_class.h"

namespace ZELPropUI {
namespace {

constexpr DWORD style = 0x50010002;
static_assert(style == (WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_CHECKBOX));

}  // namespace

bool CZELSwitch::Create(HWND parent, const RECT& rect, HWND) {
    if (!CreateChild(ButtonClass(), parent, rect, style)) return false;
    UseFontOfParent();
    return true;
}

void CZELSwitch::Init() {
    SetText(Caption());
    Update();
}

void CZELSwitch::Update() {
    const bool available = IsItemAvailable(Item(), Key());
    const bool on = IsSwitchedOn(Item(), Key());
    Enable(available);
    Send(BM_SETCHECK, on ? BST_CHECKED : BST_UNCHECKED);
    UpdateValue();
}

bool CZELSwitch::OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT&) {
    if (!IsOwnCommand(message, wparam, lparam, BN_CLICKED)) return false;
    if (MayToggle(Item(), Key())) Toggle();
    return true;
}

void CZELSwitch::Toggle() {
    const bool was_checked = Send(BM_GETCHECK) == BST_CHECKED;
    Send(BM_SETCHECK, was_checked ? BST_UNCHECKED : BST_CHECKED);
    SetSwitchTo(Item(), Key(), Send(BM_GETCHECK) == BST_CHECKED);
    PostUpdateControls();
}

}  // namespace ZELPropUI
