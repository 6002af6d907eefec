#pragma once

#include <windows.h>

#include <atomic>

namespace ZELPropUI::Framework {

/// An object behind a window. It knows the window from its first message to its last; when the window goes,
/// whoever destroys it, the handle goes too.
class Window {
public:
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Null before the first message and after the last.
    [[nodiscard]] HWND Handle() const noexcept { return handle_; }

protected:
    Window() = default;
    ~Window() = default;

    /// Handles a message. False leaves it to the class of the window. What it throws counts as false.
    virtual bool OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) = 0;

    // Around each message, so that an object which is given up in the midst of its own handler outlives it.
    virtual void Hold() noexcept = 0;
    virtual void Drop() noexcept = 0;

    class Holder {
    public:
        explicit Holder(Window& window) noexcept : window_(window) { window_.Hold(); }
        Holder(const Holder&) = delete;
        Holder& operator=(const Holder&) = delete;
        ~Holder() { window_.Drop(); }

    private:
        Window& window_;
    };

    [[nodiscard]] bool Dispatch(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) noexcept;
    /// Whether the message before was handled.
    [[nodiscard]] bool HandledLast() const noexcept { return handled_last_; }
    void Attach(HWND handle) noexcept { handle_ = handle; }
    /// False for a window that is not the object's any more: while one ends, another may have come.
    bool Detach(HWND handle) noexcept { return handle_.compare_exchange_strong(handle, nullptr); }

private:
    std::atomic<HWND> handle_{nullptr};  // pages are released on any thread
    bool handled_last_ = false;
};

}  // namespace ZELPropUI::Framework
