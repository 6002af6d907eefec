#pragma once

#include "propui/windows/framework/window.h"

namespace ZELPropUI::Framework {

/// An object behind a modeless dialog made from a resource of the module.
class DialogWindow : public Window {
protected:
    DialogWindow() = default;
    ~DialogWindow() = default;

    [[nodiscard]] bool CreateFromResource(int id, HWND parent);
    /// Destroys the window, if there is one, on the thread that it lives on.
    void DestroyDialog() noexcept;

private:
    static INT_PTR CALLBACK Procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam);
};

}  // namespace ZELPropUI::Framework
