#pragma once

#include <windows.h>

#include <map>

namespace page_test {

/// Notes what windows of this thread were asked to be: some classes change the styles that they are given.
class CreationWatch {
public:
    struct Request {
        DWORD style = 0;
        DWORD extended_style = 0;
        RECT rect{};
    };

    CreationWatch() {
        requests_.clear();
        hook_ = SetWindowsHookExW(WH_CBT, Hook, nullptr, GetCurrentThreadId());
    }
    CreationWatch(const CreationWatch&) = delete;
    CreationWatch& operator=(const CreationWatch&) = delete;
    ~CreationWatch() { UnhookWindowsHookEx(hook_); }

    [[nodiscard]] static Request RequestOf(HWND window) { return requests_[window]; }

private:
    static LRESULT CALLBACK Hook(int code, WPARAM wparam, LPARAM lparam) {
        if (code == HCBT_CREATEWND) {
            const CREATESTRUCTW& made = *reinterpret_cast<const CBT_CREATEWNDW*>(lparam)->lpcs;
            const RECT rect{made.x, made.y, made.x + made.cx, made.y + made.cy};
            requests_[reinterpret_cast<HWND>(wparam)] = {static_cast<DWORD>(made.style), made.dwExStyle,
                                                         rect};
        }
        return CallNextHookEx(nullptr, code, wparam, lparam);
    }

    static inline std::map<HWND, Request> requests_;
    HHOOK hook_;
};

}  // namespace page_test
