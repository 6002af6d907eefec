#include "propui/windows/control_window.h"

#include <utility>

namespace ZELPropUI {

LRESULT CControlWindow::Send(UINT message, WPARAM wparam, LPARAM lparam) const {
    return Handle() != nullptr ? SendMessageW(Handle(), message, wparam, lparam) : 0;
}

void CControlWindow::Enable(bool enabled) const {
    if (!enabled && Handle() != nullptr && GetFocus() == Handle()) HandFocusOn();
    EnableWindow(Handle(), enabled ? TRUE : FALSE);
}

// To the next control, or to the host's own window where there is no other.
void CControlWindow::HandFocusOn() const {
    SendMessageW(GetParent(Handle()), WM_NEXTDLGCTL, 0, 0);
    if (Handle() != nullptr && GetFocus() == Handle()) SetFocus(GetAncestor(Handle(), GA_ROOT));
}

void CControlWindow::SetText(const std::wstring& text) const { SetWindowTextW(Handle(), text.c_str()); }

// Without a window the platform would take the whole screen. Nothing is erased first, which would flicker:
// the controls draw all of themselves.
void CControlWindow::Redraw() const {
    if (Handle() != nullptr) InvalidateRect(Handle(), nullptr, FALSE);
}

void CControlWindow::UseFontOfParent() const {
    const LRESULT font = SendMessageW(GetParent(Handle()), WM_GETFONT, 0, 0);
    Send(WM_SETFONT, static_cast<WPARAM>(font), TRUE);
}

// Without a parent the message would go to the thread.
void CControlWindow::PostUpdateControls() const {
    const HWND parent = GetParent(Handle());
    if (parent != nullptr) PostMessageW(parent, WM_UPDATE_CONTROLS, 0, 0);
}

bool CControlWindow::IsOwnCommand(UINT message, WPARAM wparam, LPARAM lparam, WORD code) const {
    return message == Framework::ocm_base + WM_COMMAND && HIWORD(wparam) == code &&
           reinterpret_cast<HWND>(lparam) == Handle();
}

void CControlWindow::Hold() noexcept {
    if (holders_++ == 0) self_ = weak_from_this().lock();
}

void CControlWindow::Drop() noexcept {
    if (--holders_ == 0) const std::shared_ptr<CControlWindow> last = std::move(self_);
}

}  // namespace ZELPropUI
