#pragma once

#include "propui/slider_controller.h"

#include <string_view>

namespace ZELPropUI {

/// Pixels of the page.
struct PageRect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

/// What a layout asks of whatever shows it: a page makes windows, a recorder notes what was asked, a preview
/// draws. Controls are to be made, shown current and remembered in the order of the calls; items and
/// controllers are the caller's, and an implementation that keeps one takes a reference.
class IPageCanvas {
public:
    virtual ~IPageCanvas() = default;
    /// Whether there is nothing left to put rows on: a driver that runs messages while it answers lets a page
    /// be closed in the midst of its layout, which then ends.
    [[nodiscard]] virtual bool IsGone() const { return false; }
    /// Width of the text in the page's font.
    [[nodiscard]] virtual int TextWidth(std::wstring_view text) = 0;
    /// A measure at 96 dots per inch in pixels of the page.
    [[nodiscard]] virtual int ScaleX(int measure) = 0;
    [[nodiscard]] virtual int ScaleY(int measure) = 0;

    /// What the controls of the following calls stand for, for whoever cannot see the labels beside them.
    virtual void BeginElement(std::wstring_view item, std::wstring_view element) {
        static_cast<void>(item);
        static_cast<void>(element);
    }
    virtual void AddLabel(const PageRect& rect, std::wstring_view text) = 0;
    virtual void AddSlider(const PageRect& rect, ISliderController& controller) = 0;
    virtual void AddEdit(const PageRect& rect, ISliderController& controller) = 0;
    /// Belongs to the edit of the call before.
    virtual void AddSpinButton(const PageRect& rect, ISliderController& controller) = 0;
    virtual void AddCombo(const PageRect& rect, CZELItemDataBase& item, InterfaceKey key) = 0;
    virtual void AddSwitch(const PageRect& rect, CZELItemDataBase& item, InterfaceKey key,
                           std::wstring_view caption) = 0;
    virtual void AddButton(const PageRect& rect, CZELItemDataBase& item, InterfaceKey key,
                           std::wstring_view caption) = 0;
};

}  // namespace ZELPropUI
