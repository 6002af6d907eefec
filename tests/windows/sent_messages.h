#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace page_test {

/// Notes messages that are sent to windows of this thread, those that a control sends to itself among them.
class SentMessages {
public:
    struct Sent {
        HWND window;
        UINT message;
        WPARAM wparam;
        LPARAM lparam;
    };

    SentMessages() {
        sent_.clear();
        hook_ = SetWindowsHookExW(WH_CALLWNDPROC, Hook, nullptr, GetCurrentThreadId());
    }
    SentMessages(const SentMessages&) = delete;
    SentMessages& operator=(const SentMessages&) = delete;
    ~SentMessages() { UnhookWindowsHookEx(hook_); }

    /// Those of the given numbers that went to one window, in their order.
    [[nodiscard]] static std::vector<Sent> To(HWND window, const std::vector<UINT>& messages) {
        std::vector<Sent> found;
        for (const Sent& sent : sent_) {
            for (const UINT message : messages) {
                if (sent.window == window && sent.message == message) found.push_back(sent);
            }
        }
        return found;
    }

private:
    static LRESULT CALLBACK Hook(int code, WPARAM wparam, LPARAM lparam) {
        if (code == HC_ACTION) {
            const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lparam);
            sent_.push_back({sent.hwnd, sent.message, sent.wParam, sent.lParam});
        }
        return CallNextHookEx(nullptr, code, wparam, lparam);
    }

    static inline std::vector<Sent> sent_;
    HHOOK hook_;
};

}  // namespace page_test
