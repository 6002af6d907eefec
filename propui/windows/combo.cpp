#include "propui/windows/combo.h"

#include "propui/control_logic.h"

#include <string>

namespace ZELPropUI {
namespace {

constexpr DWORD style = 0x50210043;
static_assert(style ==
              (WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_TABSTOP | CBS_DROPDOWNLIST | CBS_AUTOHSCROLL));

Framework::Superclass window_class(L"Selvane_COMBOBOX", L"COMBOBOX",
                                   Framework::SuperclassedWindow::Procedure);

}  // namespace

bool CZELCombo::Create(HWND parent, const RECT& rect, HWND) {
    if (!CreateChild(window_class, parent, rect, style)) return false;
    UseFontOfParent();
    return true;
}

void CZELCombo::Init() {
    Send(CB_RESETCONTENT);
    for (const auto& entry : EntriesOf(Item(), Key())) {
        const std::wstring text(entry.View());
        Send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
    }
    Update();
}

void CZELCombo::Update() {
    Enable(IsItemAvailable(Item(), Key()));
    UpdateValue();
}

void CZELCombo::UpdateValue() {
    if (const auto index = SelectionOf(Item(), Key())) Send(CB_SETCURSEL, static_cast<WPARAM>(*index));
    Redraw();
}

bool CZELCombo::OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT&) {
    if (!IsOwnCommand(message, wparam, lparam, CBN_SELCHANGE)) return false;
    SelectEntry(Item(), Key(), static_cast<std::int32_t>(Send(CB_GETCURSEL)));
    PostUpdateControls();
    return true;
}

}  // namespace ZELPropUI
