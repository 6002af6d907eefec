#pragma once

#include <windows.h>

namespace ZELPropUI::Framework {

class Window;

/// Announces that this thread is about to create the window of an object. The first message of the window
/// takes the object; if none comes, the announcement ends with this guard. Lives on the stack around the call
/// that creates.
class PendingWindow {
public:
    explicit PendingWindow(Window& window) noexcept;
    PendingWindow(const PendingWindow&) = delete;
    PendingWindow& operator=(const PendingWindow&) = delete;
    ~PendingWindow();

    /// The object that this thread announced last and that nobody took yet; null for none.
    [[nodiscard]] static Window* Take() noexcept;

private:
    static bool Unlink(const PendingWindow* entry) noexcept;

    Window* window_;
    DWORD thread_;
    PendingWindow* next_;
};

}  // namespace ZELPropUI::Framework
