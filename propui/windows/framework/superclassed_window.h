#pragma once

#include "propui/windows/framework/superclass.h"
#include "propui/windows/framework/window.h"

namespace ZELPropUI::Framework {

/// An object behind a window of a superclassed platform class. Messages that it declines go on to the
/// platform's procedure.
class SuperclassedWindow : public Window {
public:
    /// The procedure for `Superclass`.
    static LRESULT CALLBACK Procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam);

    /// The object behind a window of any class; null where it is none of ours.
    [[nodiscard]] static SuperclassedWindow* FromHandle(HWND handle) noexcept;

    /// Sends a message to the window as the parent's answer to a notification of it. True if the object
    /// handled it.
    bool SendReflected(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result);

    /// Destroys the window if it is still there, with the whole object at hand for its last messages.
    void Close() noexcept;

    /// Takes the windows below a parent that is about to end out of it where the platform is in the midst of
    /// a message of theirs: its code goes on with what belongs to the window once a driver has let the host
    /// close the page. They end with that message.
    static void SaveBusyChildren(HWND parent) noexcept;

protected:
    SuperclassedWindow() = default;
    /// Destroys the window if it is still there; no message reaches the object any more.
    ~SuperclassedWindow();

    /// Creates the window as a child. False if the platform refuses.
    [[nodiscard]] bool CreateChild(Superclass& superclass, HWND parent, const RECT& rect, DWORD style);
    /// False once the page is closed: nobody is left to be told anything.
    [[nodiscard]] bool IsOnPage() const noexcept { return Handle() != nullptr && !outlives_parent_; }
    /// What the platform's class does with a message.
    LRESULT CallBase(UINT message, WPARAM wparam, LPARAM lparam) const;

private:
    // A message on its way through the object and through the platform's code for it.
    class Visit;

    WNDPROC base_procedure_ = nullptr;
    int visits_ = 0;
    bool outlives_parent_ = false;
};

}  // namespace ZELPropUI::Framework
