#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace page_test {

/// A top-level window to put pages in.
class HostWindow {
public:
    HostWindow()
        : handle_(CreateWindowExW(WS_EX_CONTROLPARENT, L"#32770", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                  0, 0, 600, 600, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr)) {}
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;
    ~HostWindow() { Destroy(); }

    void Destroy() {
        if (handle_ != nullptr) DestroyWindow(handle_);
        handle_ = nullptr;
    }
    [[nodiscard]] HWND Handle() const { return handle_; }

private:
    HWND handle_;
};

/// Runs what is in the queue of the thread.
inline void RunMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

inline std::wstring TextOf(HWND window) {
    wchar_t text[256] = {};
    GetWindowTextW(window, text, 256);
    return text;
}

inline std::wstring ClassOf(HWND window) {
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    return name;
}

/// The windows right below another one, in the order in which they were made.
inline std::vector<HWND> ChildrenOf(HWND parent) {
    std::vector<HWND> children;
    for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        children.push_back(child);
    }
    return children;
}

inline RECT RectOf(HWND window) {
    RECT edges{};
    GetWindowRect(window, &edges);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&edges), 2);
    return edges;
}

}  // namespace page_test
