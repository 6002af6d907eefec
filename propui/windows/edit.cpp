#include "propui/windows/edit.h"

#include <richedit.h>
#include <gsl/util>

namespace ZELPropUI {
namespace {

constexpr DWORD style = 0x50815000;
static_assert(style == (WS_CHILD | WS_VISIBLE | WS_BORDER | WS_TABSTOP | ES_SUNKEN | ES_WANTRETURN));
constexpr LPARAM options = 0x1081;
static_assert(options == (ECO_AUTOWORDSELECTION | ECO_AUTOHSCROLL | ECO_WANTRETURN));

constexpr WPARAM return_key = 13;

Framework::Superclass window_class(L"Selvane_RICHEDIT50W", L"RICHEDIT50W",
                                   Framework::SuperclassedWindow::Procedure);

std::wstring TextOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)), L'\0');
    const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

}  // namespace

bool CZELEdit::Create(HWND parent, const RECT& place, HWND) {
    if (!CreateChild(window_class, parent, place, style)) return false;
    Send(EM_SETOPTIONS, ECOOP_SET, options);
    ShowBackground(COLOR_3DFACE);
    UseFontOfParent();
    return true;
}

void CZELEdit::Init() { Update(); }

// The reverse of the others' order.
void CZELEdit::Update() {
    UpdateValue();
    Enable(Controller().IsAvailable());
    Send(EM_SETREADONLY, Controller().IsReadOnly() ? TRUE : FALSE);
}

void CZELEdit::UpdateValue() {
    std::wstring text;
    if (!Controller().GetText(text)) text.clear();
    SetText(text);
}

bool CZELEdit::OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) {
    switch (message) {
        case WM_SETFOCUS:
            if (IsEditable()) ShowBackground(COLOR_WINDOW);
            return false;
        case WM_KILLFOCUS:
            OnKillFocus();
            return false;
        case WM_CHAR:
            return OnChar(wparam);
        case WM_GETDLGCODE:
            result = CallBase(message, wparam, lparam) | DLGC_WANTALLKEYS;
            return true;
        default:
            return false;
    }
}

void CZELEdit::ShowBackground(int system_color) const {
    Send(EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(GetSysColor(system_color)));
}

// The box takes the focus too, and must not bring up another one.
void CZELEdit::OnKillFocus() {
    const auto restore = gsl::finally([this] { ShowBackground(COLOR_3DFACE); });
    if (committing_) return;
    committing_ = true;
    const auto done = gsl::finally([this] { committing_ = false; });
    Commit();
}

void CZELEdit::Commit() {
    if (Controller().SetText(TextOf(Handle()))) {
        PostUpdateControls();
    } else if (IsOnPage()) {
        MessageBoxW(Handle(), L"Error parsing value!", L"Error", MB_ICONHAND);
    }
}

bool CZELEdit::OnChar(WPARAM character) {
    if (character == return_key) SendMessageW(GetParent(Handle()), WM_NEXTDLGCTL, 0, 0);
    const bool goes_on = character >= L',' && character <= L'9';
    return !goes_on;
}

}  // namespace ZELPropUI
