#pragma once

#include "propui/windows/control_base.h"
#include "propui/windows/framework/reflection.h"
#include "propui/windows/framework/superclassed_window.h"

#include <memory>
#include <string>

namespace ZELPropUI {

/// What the six controls share: a superclassed window of the platform. Must be owned by a shared pointer,
/// which keeps the control alive through its own message even if the page drops it meanwhile.
class CControlWindow : public CZELControlBase,
                       public Framework::SuperclassedWindow,
                       public std::enable_shared_from_this<CControlWindow> {
protected:
    LRESULT Send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const;
    /// A window that is about to be disabled hands the focus on first: nobody else would, and keys would go
    /// nowhere until the next click.
    void Enable(bool enabled) const;
    void SetText(const std::wstring& text) const;
    void Redraw() const;
    void UseFontOfParent() const;
    void PostUpdateControls() const;

    /// Whether the parent passed back a notification with this code that this very window sent.
    [[nodiscard]] bool IsOwnCommand(UINT message, WPARAM wparam, LPARAM lparam, WORD code) const;

    void Hold() noexcept override;
    void Drop() noexcept override;

private:
    void HandFocusOn() const;

    std::shared_ptr<CControlWindow> self_;
    int holders_ = 0;
};

}  // namespace ZELPropUI
