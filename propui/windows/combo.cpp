#include "propui/windows/combo.h"

#include "propui/attempt.h"

#include <string>
#include <tuple>
#include <vector>

namespace ZELPropUI {
namespace {

constexpr DWORD style = 0x50210043;
static_assert(style ==
              (WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_TABSTOP | CBS_DROPDOWNLIST | CBS_AUTOHSCROLL));

Framework::Superclass window_class(L"Selvane_COMBOBOX", L"COMBOBOX",
                                   Framework::SuperclassedWindow::Procedure);

}  // namespace

bool CZELCombo::Create(HWND parent, const RECT& place, HWND) {
    if (!CreateChild(window_class, parent, place, style)) return false;
    UseFontOfParent();
    return true;
}

void CZELCombo::Init() {
    Send(CB_RESETCONTENT);
    std::vector<ZELAdapterHelper::SharedString> strings;
    if (SUCCEEDED(Attempt([&] { return Item().GetMapStrings(Key(), strings); }))) {
        for (const auto& string : strings) {
            const std::wstring text(string.View());
            Send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
        }
    }
    Update();
}

void CZELCombo::Update() {
    Enable(IsItemAvailable());
    UpdateValue();
}

void CZELCombo::UpdateValue() {
    std::int32_t index = 0;
    if (SUCCEEDED(Attempt([&] { return Item().GetValue(Key(), index); }))) {
        Send(CB_SETCURSEL, static_cast<WPARAM>(index));
    }
    Redraw();
}

bool CZELCombo::OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT&) {
    if (!IsOwnCommand(message, wparam, lparam, CBN_SELCHANGE)) return false;
    const auto index = static_cast<std::int32_t>(Send(CB_GETCURSEL));
    std::ignore = Attempt([&] { return Item().SetValue(Key(), index); });
    PostUpdateControls();
    return true;
}

}  // namespace ZELPropUI
