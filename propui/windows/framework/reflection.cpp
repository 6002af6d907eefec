#include "propui/windows/framework/reflection.h"

#include "propui/windows/framework/superclassed_window.h"

namespace ZELPropUI::Framework {
namespace {

template <class Record>
const Record& RecordAt(LPARAM lparam) noexcept {
    return *reinterpret_cast<const Record*>(lparam);
}

HWND SenderOfParentNotify(HWND parent, WPARAM wparam, LPARAM lparam) noexcept {
    const WORD event = LOWORD(wparam);
    if (event == WM_CREATE || event == WM_DESTROY) return reinterpret_cast<HWND>(lparam);
    return GetDlgItem(parent, HIWORD(wparam));
}

// Owner-draw messages of a menu carry no control id.
HWND SenderOfOwnerDraw(HWND parent, UINT message, LPARAM lparam) noexcept {
    if (lparam == 0) return nullptr;
    switch (message) {
        case WM_DRAWITEM:
            return RecordAt<DRAWITEMSTRUCT>(lparam).hwndItem;
        case WM_COMPAREITEM:
            return RecordAt<COMPAREITEMSTRUCT>(lparam).hwndItem;
        case WM_DELETEITEM:
            return RecordAt<DELETEITEMSTRUCT>(lparam).hwndItem;
        default:
            return GetDlgItem(parent, static_cast<int>(RecordAt<MEASUREITEMSTRUCT>(lparam).CtlID));
    }
}

}  // namespace

HWND SenderOf(HWND parent, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
    switch (message) {
        case WM_COMMAND:
        case WM_HSCROLL:
        case WM_VSCROLL:
        case WM_VKEYTOITEM:
        case WM_CHARTOITEM:
        case WM_CTLCOLORMSGBOX:
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORLISTBOX:
        case WM_CTLCOLORBTN:
        case WM_CTLCOLORDLG:
        case WM_CTLCOLORSCROLLBAR:
        case WM_CTLCOLORSTATIC:
            return reinterpret_cast<HWND>(lparam);
        case WM_NOTIFY:
            return lparam != 0 ? RecordAt<NMHDR>(lparam).hwndFrom : nullptr;
        case WM_PARENTNOTIFY:
            return SenderOfParentNotify(parent, wparam, lparam);
        case WM_DRAWITEM:
        case WM_MEASUREITEM:
        case WM_COMPAREITEM:
        case WM_DELETEITEM:
            return wparam != 0 ? SenderOfOwnerDraw(parent, message, lparam) : nullptr;
        default:
            return nullptr;
    }
}

bool Reflect(HWND parent, UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) {
    const HWND sender = SenderOf(parent, message, wparam, lparam);
    if (IsChild(parent, sender) == 0) return false;
    if (SuperclassedWindow* const own = SuperclassedWindow::FromHandle(sender)) {
        return own->SendReflected(ocm_base + message, wparam, lparam, result);
    }
    SendMessageW(sender, ocm_base + message, wparam, lparam);
    return false;
}

}  // namespace ZELPropUI::Framework
