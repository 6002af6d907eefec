#pragma once

#include "propui/windows/framework/reflection.h"

#include <windows.h>

#include <vector>

namespace ZELPropUI {

/// A window that stands in for a page: has a font, passes notifications back and notes what is posted to it.
class ParentWindow {
public:
    ParentWindow() {
        WNDCLASSW definition{};
        definition.lpfnWndProc = Procedure;
        definition.hInstance = GetModuleHandleW(nullptr);
        definition.lpszClassName = L"parent of a control";
        RegisterClassW(&definition);  // the second time it is there already
        handle_ = CreateWindowExW(0, definition.lpszClassName, L"parent", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
                                  0, 400, 300, nullptr, nullptr, definition.hInstance, nullptr);
        SetWindowLongPtrW(handle_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    ParentWindow(const ParentWindow&) = delete;
    ParentWindow& operator=(const ParentWindow&) = delete;
    ~ParentWindow() { Destroy(); }

    void Destroy() {
        if (handle_ != nullptr) DestroyWindow(handle_);
        handle_ = nullptr;
    }
    [[nodiscard]] HWND Handle() const { return handle_; }

    /// Runs what is in the queue; how often a control asked for a refresh since the last time.
    int TakeRefreshes() {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) DispatchMessageW(&message);
        const int taken = refreshes_;
        refreshes_ = 0;
        return taken;
    }

    HFONT font = nullptr;
    int next_dialog_controls = 0;  ///< WM_NEXTDLGCTL messages
    LRESULT reflected_result = 0;  ///< of the latest notification
    bool reflected_handled = false;

private:
    static constexpr UINT refresh = WM_USER + 5;

    LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
        switch (message) {
            case refresh:
                ++refreshes_;
                return 0;
            case WM_GETFONT:
                return reinterpret_cast<LRESULT>(font);
            case WM_NEXTDLGCTL:
                ++next_dialog_controls;
                return 0;
            case WM_COMMAND:
            case WM_NOTIFY:
            case WM_HSCROLL:
            case WM_VSCROLL:
                reflected_handled = Framework::Reflect(handle_, message, wparam, lparam, reflected_result);
                return 0;
            default:
                return DefWindowProcW(handle_, message, wparam, lparam);
        }
    }

    static LRESULT CALLBACK Procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
        auto* parent = reinterpret_cast<ParentWindow*>(GetWindowLongPtrW(handle, GWLP_USERDATA));
        if (parent == nullptr || parent->handle_ == nullptr)
            return DefWindowProcW(handle, message, wparam, lparam);
        return parent->OnMessage(message, wparam, lparam);
    }

    HWND handle_ = nullptr;
    int refreshes_ = 0;
};

}  // namespace ZELPropUI
