#include "propui/windows/edit.h"

#include "propui/control_logic.h"

#include <imm.h>
#include <richedit.h>
#include <gsl/util>

#include <utility>

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

bool CZELEdit::Create(HWND parent, const RECT& rect, HWND) {
    if (!CreateChild(window_class, parent, rect, style)) return false;
    TakePlainNumbersOnly();
    Send(EM_SETOPTIONS, ECOOP_SET, options);
    // Some versions grow a bar with automatic scrolling, and it would stand over the text.
    Send(EM_SHOWSCROLLBAR, SB_HORZ, FALSE);
    ShowBackground(COLOR_3DFACE);
    UseFontOfParent();
    return true;
}

// Formats would come with what is pasted, and an input method's characters past the filter of ours. The mode
// can be set only while there is no text.
void CZELEdit::TakePlainNumbersOnly() const {
    Send(EM_SETTEXTMODE, TM_PLAINTEXT);
    Send(EM_SETEDITSTYLE, SES_NOIME, SES_NOIME);
    ImmAssociateContext(Handle(), nullptr);
}

void CZELEdit::Init() { Update(); }

// The reverse of the others' order.
void CZELEdit::Update() {
    UpdateValue();
    {
        // One that is disabled under the user's hands holds the text of this refresh and not the user's.
        const bool commits = std::exchange(commits_, false);
        const auto restore = gsl::finally([&] { commits_ = commits; });
        Enable(Controller().IsAvailable());
    }
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
            if (IsEditable(Controller())) ShowBackground(COLOR_WINDOW);
            return false;
        case WM_KILLFOCUS:
            OnKillFocus();
            return false;
        case WM_CHAR:
            return OnChar(wparam);
        case WM_MOUSEWHEEL:
            return (LOWORD(wparam) & MK_CONTROL) != 0;  // would magnify the text
        case WM_GETDLGCODE:
            result = CallBase(message, wparam, lparam) | DLGC_WANTALLKEYS;
            return true;
        default:
            return CControllerControl::OnMessage(message, wparam, lparam, result);
    }
}

void CZELEdit::ShowBackground(int system_color) const {
    Send(EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(GetSysColor(system_color)));
}

// The box takes the focus too, and must not bring up another one.
void CZELEdit::OnKillFocus() {
    const auto restore = gsl::finally([this] { ShowBackground(COLOR_3DFACE); });
    if (!commits_) return;
    commits_ = false;
    const auto done = gsl::finally([this] { commits_ = true; });
    Commit();
}

// Where nothing could be typed a refusal is no error of the user's: the tab key leads through these too.
void CZELEdit::Commit() {
    if (Controller().SetText(TextOf(Handle()))) {
        PostUpdateControls();
    } else if (IsOnPage() && (GetWindowLongPtrW(Handle(), GWL_STYLE) & ES_READONLY) == 0) {
        MessageBoxW(Handle(), edit_error_text.data(), edit_error_caption.data(), MB_ICONHAND);
    }
}

bool CZELEdit::OnChar(WPARAM character) {
    if (character == return_key) SendMessageW(GetParent(Handle()), WM_NEXTDLGCTL, 0, 0);
    return !IsEditCharacter(static_cast<std::uint32_t>(character));
}

}  // namespace ZELPropUI
