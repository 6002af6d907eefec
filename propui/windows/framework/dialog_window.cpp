#include "propui/windows/framework/dialog_window.h"

#include "propui/windows/framework/module.h"
#include "propui/windows/framework/pending_window.h"

namespace ZELPropUI::Framework {
namespace {

// A window is destroyed by its own thread only; others ask it to. No platform message has this number.
constexpr UINT end_request = WM_APP + 0x3D1;
constexpr UINT end_request_limit = 1000;  // ms

// For these a dialog procedure returns the result itself.
bool ReturnsResultItself(UINT message) noexcept {
    switch (message) {
        case WM_INITDIALOG:
        case WM_COMPAREITEM:
        case WM_VKEYTOITEM:
        case WM_CHARTOITEM:
        case WM_QUERYDRAGICON:
            return true;
        default:
            return message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC;
    }
}

}  // namespace

bool DialogWindow::CreateFromResource(int id, HWND parent) {
    const PendingWindow pending(*this);
    return CreateDialogParamW(ModuleHandle(), MAKEINTRESOURCEW(id), parent, Procedure, 0) != nullptr;
}

void DialogWindow::DestroyDialog() noexcept {
    const HWND handle = Handle();
    if (handle != nullptr) DestroyWindow(handle);
}

bool DialogWindow::LivesElsewhere() const noexcept {
    const DWORD thread = GetWindowThreadProcessId(Handle(), nullptr);
    return thread != 0 && thread != GetCurrentThreadId();
}

void DialogWindow::RequestEnd(HWND window) noexcept {
    DWORD_PTR result = 0;
    if (SendMessageTimeoutW(window, end_request, 0, 0, SMTO_NORMAL, end_request_limit, &result) == 0) {
        PostMessageW(window, end_request, 0, 0);
    }
}

INT_PTR CALLBACK DialogWindow::Procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* window = reinterpret_cast<DialogWindow*>(GetWindowLongPtrW(handle, DWLP_USER));
    if (window == nullptr) {
        window = static_cast<DialogWindow*>(PendingWindow::Take());
        if (window == nullptr) return FALSE;
        window->Attach(handle);
        SetWindowLongPtrW(handle, DWLP_USER, reinterpret_cast<LONG_PTR>(window));
    }
    const Holder hold(*window);
    if (message == end_request) {
        window->OnEndRequest();
        return TRUE;
    }
    if (message == WM_NCDESTROY) {
        SetWindowLongPtrW(handle, DWLP_USER, 0);
        if (window->Detach(handle)) window->OnDetached();
        return FALSE;
    }
    LRESULT result = 0;
    if (!window->Dispatch(message, wparam, lparam, result)) return FALSE;
    if (ReturnsResultItself(message)) return result;
    SetWindowLongPtrW(handle, DWLP_MSGRESULT, result);
    return TRUE;
}

}  // namespace ZELPropUI::Framework
