#pragma once

#include <windows.h>

namespace ZELPropUI {

class ISliderController;

/// Posted by a control to its page after a change; the page refreshes all its controls.
constexpr UINT WM_UPDATE_CONTROLS = WM_USER + 5;
static_assert(WM_UPDATE_CONTROLS == 1029);

/// A window on a page, bound to an element of an item. The page calls `Create`, then `Init`, once, and
/// `Update` at each refresh.
class CZELControlBase {
public:
    CZELControlBase() = default;
    CZELControlBase(const CZELControlBase&) = delete;
    CZELControlBase& operator=(const CZELControlBase&) = delete;
    virtual ~CZELControlBase() = default;

    /// Makes the window. `extra` is the window that belongs to this one: the edit of a spin button. False if
    /// the platform refuses; all other operations do nothing visible then.
    virtual bool Create(HWND parent, const RECT& rect, HWND extra) = 0;
    /// Fetches what is constant and ends in `Update`.
    virtual void Init() {}
    /// Refreshes whether the control is enabled, and its value.
    virtual void Update() {}
    virtual void UpdateValue() {}
    /// What the control shares with the others of its element; null for one that speaks to the item itself.
    [[nodiscard]] virtual ISliderController* SharedController() const noexcept { return nullptr; }
};

}  // namespace ZELPropUI
