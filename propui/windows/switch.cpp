#include "propui/windows/switch.h"

#include "propui/control_logic.h"
#include "propui/windows/button_class.h"

#include <utility>

namespace ZELPropUI {
namespace {

constexpr DWORD style = 0x50010002;
static_assert(style == (WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_CHECKBOX));

}  // namespace

CZELSwitch::CZELSwitch(ZELAdapterHelper::CZELItemDataBase* item, ZELAdapterHelper::InterfaceKey key,
                       std::wstring caption)
    : CItemControl(item, key), caption_(std::move(caption)) {}

bool CZELSwitch::Create(HWND parent, const RECT& place, HWND) {
    if (!CreateChild(ButtonClass(), parent, place, style)) return false;
    UseFontOfParent();
    return true;
}

void CZELSwitch::Init() {
    SetText(caption_);
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
