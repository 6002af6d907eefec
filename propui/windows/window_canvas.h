#pragma once

#include "propui/page_canvas.h"
#include "propui/windows/control_window.h"

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

namespace ZELPropUI {

class CControllerControl;

using ControlList = std::vector<std::shared_ptr<CZELControlBase>>;

/// Makes a layout's rows as windows on a page. Controls go into the list of the page in the order of
/// creation.
class WindowCanvas final : public IPageCanvas {
public:
    /// The list belongs to the page. Each control keeps `source`, whatever its item needs to live, for as
    /// long as it lives itself: a page may turn to another camera in the midst of a control's work.
    WindowCanvas(HWND page, ControlList& controls, std::shared_ptr<const void> source);

    [[nodiscard]] bool IsGone() const override { return IsWindow(page_) == 0; }
    [[nodiscard]] int TextWidth(std::wstring_view text) override;
    [[nodiscard]] int ScaleX(int measure) override;
    [[nodiscard]] int ScaleY(int measure) override;
    void BeginElement(std::wstring_view item, std::wstring_view element) override;
    void AddLabel(const PageRect& rect, std::wstring_view text) override;
    void AddSlider(const PageRect& rect, ISliderController& controller) override;
    void AddEdit(const PageRect& rect, ISliderController& controller) override;
    void AddSpinButton(const PageRect& rect, ISliderController& controller) override;
    void AddCombo(const PageRect& rect, CZELItemDataBase& item, InterfaceKey key) override;
    void AddSwitch(const PageRect& rect, CZELItemDataBase& item, InterfaceKey key,
                   std::wstring_view caption) override;
    void AddButton(const PageRect& rect, CZELItemDataBase& item, InterfaceKey key,
                   std::wstring_view caption) override;

private:
    [[nodiscard]] HFONT PageFont() const;
    [[nodiscard]] int DotsPerInch(int direction) const;
    /// Every window of a page has an id of its own, counted in the order of creation.
    void GiveId(HWND window);
    /// Without a window on a page that is gone.
    std::shared_ptr<CControlWindow> Add(const PageRect& rect, HWND extra,
                                        std::unique_ptr<CControlWindow> made);
    /// The same for a control without a text of its own, and gives its window.
    HWND AddNamed(const PageRect& rect, HWND extra, std::unique_ptr<CControllerControl> made);

    HWND page_;
    ControlList& controls_;
    std::shared_ptr<const void> source_;
    HWND edit_ = nullptr;  // of the latest AddEdit
    LONG_PTR next_id_;
    std::wstring element_name_;  // of the latest BeginElement
};

}  // namespace ZELPropUI
