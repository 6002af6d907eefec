#include "apps/host/frame_window.h"

#include "platform/text.h"

#include <commctrl.h>

#include <array>
#include <cwchar>

namespace selvane_host {
namespace {

BOOL CALLBACK take_tabs(HWND window, LPARAM found) {
    if (_wcsicmp(class_name(window).c_str(), WC_TABCONTROLW) != 0) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

HWND find_tabs(HWND frame) {
    HWND tabs = nullptr;
    EnumChildWindows(frame, take_tabs, reinterpret_cast<LPARAM>(&tabs));
    return tabs;
}

struct frame_parts {
    HWND frame = nullptr;
    HWND tabs = nullptr;
};

BOOL CALLBACK take_frame(HWND window, LPARAM found) {
    if (IsWindowVisible(window) == 0) return TRUE;
    const HWND tabs = find_tabs(window);
    if (tabs == nullptr) return TRUE;
    *reinterpret_cast<frame_parts*>(found) = {window, tabs};
    return FALSE;
}

}  // namespace

std::optional<frame_window> frame_window::find() {
    frame_parts found;
    EnumThreadWindows(GetCurrentThreadId(), take_frame, reinterpret_cast<LPARAM>(&found));
    if (found.frame == nullptr) return std::nullopt;
    return frame_window(found.frame, found.tabs);
}

int frame_window::page_count() const noexcept {
    return static_cast<int>(SendMessageW(tabs_, TCM_GETITEMCOUNT, 0, 0));
}

int frame_window::shown_page() const noexcept {
    return static_cast<int>(SendMessageW(tabs_, TCM_GETCURSEL, 0, 0));
}

void frame_window::show_page(int page) const noexcept {
    // Other than TCM_SETCURSEL, this one tells the frame.
    SendMessageW(tabs_, TCM_SETCURFOCUS, static_cast<WPARAM>(page), 0);
}

std::string frame_window::page_title(int page) const {
    std::array<wchar_t, 256> text{};
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    SendMessageW(tabs_, TCM_GETITEMW, static_cast<WPARAM>(page), reinterpret_cast<LPARAM>(&item));
    return platform::narrow(item.pszText);
}

RECT frame_window::tab_rect(int page) const noexcept {
    RECT rect{};
    SendMessageW(tabs_, TCM_GETITEMRECT, static_cast<WPARAM>(page), reinterpret_cast<LPARAM>(&rect));
    MapWindowPoints(tabs_, nullptr, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

void frame_window::repaint() const noexcept {
    RedrawWindow(frame_, nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

void frame_window::close() const noexcept { PostMessageW(frame_, WM_CLOSE, 0, 0); }

std::wstring class_name(HWND window) {
    std::array<wchar_t, 256> name{};
    const int length = GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return std::wstring(name.data(), static_cast<std::size_t>(length));
}

std::string window_text(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(length));
    return platform::narrow(text);
}

}  // namespace selvane_host
