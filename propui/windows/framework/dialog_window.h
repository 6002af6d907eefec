#pragma once

#include "propui/windows/framework/window.h"

namespace ZELPropUI::Framework {

/// An object behind a modeless dialog made from a resource of the module.
class DialogWindow : public Window {
protected:
    DialogWindow() = default;
    ~DialogWindow() = default;

    [[nodiscard]] bool CreateFromResource(int id, HWND parent);
    /// Destroys the window, if there is one. For the window's own thread.
    void DestroyDialog() noexcept;

    /// Whether there is a window and another thread owns it, which alone can destroy it.
    [[nodiscard]] bool LivesElsewhere() const noexcept;
    /// Has `OnEndRequest` called on the thread of a window, and waits for it; but not for ever, since that
    /// thread may itself be waiting for this one. Then it is called when the thread looks at its messages.
    static void RequestEnd(HWND window) noexcept;
    virtual void OnEndRequest() { DestroyDialog(); }
    /// The window is gone.
    virtual void OnDetached() noexcept {}

private:
    static INT_PTR CALLBACK Procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam);
};

}  // namespace ZELPropUI::Framework
