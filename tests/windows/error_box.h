#pragma once

#include <windows.h>

#include <string>

namespace page_test {

/// Waits for message boxes of this thread, notes what they say and closes them.
class ErrorBoxWatch {
public:
    ErrorBoxWatch() {
        current_ = this;
        timer_ = SetTimer(nullptr, 0, 20, Tick);
    }
    ErrorBoxWatch(const ErrorBoxWatch&) = delete;
    ErrorBoxWatch& operator=(const ErrorBoxWatch&) = delete;
    ~ErrorBoxWatch() {
        KillTimer(nullptr, timer_);
        current_ = nullptr;
    }

    int boxes = 0;
    std::wstring caption;
    std::wstring text;
    HWND owner = nullptr;
    LONG_PTR icon_style = 0;
    /// Called while the box is open, instead of closing it; null closes it.
    void (*while_open)(HWND box) = nullptr;

private:
    static std::wstring TextOf(HWND window) {
        wchar_t text[256] = {};
        GetWindowTextW(window, text, 256);
        return text;
    }

    static BOOL CALLBACK ForWindow(HWND window, LPARAM) {
        wchar_t name[32] = {};
        GetClassNameW(window, name, 32);
        const bool owned_dialog = std::wstring(name) == L"#32770" && GetWindow(window, GW_OWNER) != nullptr;
        if (owned_dialog && IsWindowVisible(window) != 0) current_->Note(window);
        return TRUE;
    }

    static BOOL CALLBACK ForChild(HWND child, LPARAM) {
        const LONG_PTR style = GetWindowLongPtrW(child, GWL_STYLE);
        const bool icon = (style & SS_TYPEMASK) == SS_ICON;
        wchar_t name[32] = {};
        GetClassNameW(child, name, 32);
        if (std::wstring(name) != L"Static") return TRUE;
        if (icon) {
            current_->icon_style = style;
        } else {
            current_->text = TextOf(child);
        }
        return TRUE;
    }

    static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
        if (current_ != nullptr) EnumThreadWindows(GetCurrentThreadId(), ForWindow, 0);
    }

    void Note(HWND box) {
        ++boxes;
        caption = TextOf(box);
        owner = GetWindow(box, GW_OWNER);
        EnumChildWindows(box, ForChild, 0);
        if (while_open != nullptr) {
            while_open(box);
        } else {
            SendMessageW(box, WM_COMMAND, IDOK, 0);
        }
    }

    static inline thread_local ErrorBoxWatch* current_ = nullptr;
    UINT_PTR timer_ = 0;
};

}  // namespace page_test
