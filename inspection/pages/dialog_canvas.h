#pragma once

#include "propui/page_canvas.h"

#include <string_view>

namespace selvane_inspect {

/// Width of a text in the font of dialogs, 8-point Tahoma at 96 dots per inch, in pixels. The sum of the
/// advances of its characters as that font has them on a screen; characters outside Latin-1 count with one of
/// two typical widths. Real systems differ by a pixel here and there: they may have another font under that
/// name, and hint it otherwise.
[[nodiscard]] int dialog_text_width(std::wstring_view text) noexcept;

enum class control_kind { label, slider, edit, spin_button, combo, check_box, button };
[[nodiscard]] std::string_view control_word(control_kind kind) noexcept;

/// What a layout tells of one control. The pointers are for the time of the call.
struct placed_control {
    control_kind kind;
    ZELPropUI::PageRect rect;
    std::wstring_view text;                              ///< of labels, check boxes and buttons
    ZELPropUI::ISliderController* controller = nullptr;  ///< of sliders, edits and spin buttons
    ZELPropUI::CZELItemDataBase* item = nullptr;         ///< of combos, check boxes and buttons
    ZELPropUI::InterfaceKey key = 0;                     ///< 0 for labels alone
};

/// A canvas with the measures of a dialog at 96 dots per inch, and no window: its rows stand where those of a
/// page do. What it is told of a control comes as one record.
class dialog_canvas : public ZELPropUI::IPageCanvas {
public:
    int TextWidth(std::wstring_view text) final;
    int ScaleX(int measure) final;
    int ScaleY(int measure) final;
    void AddLabel(const ZELPropUI::PageRect& rect, std::wstring_view text) final;
    void AddSlider(const ZELPropUI::PageRect& rect, ZELPropUI::ISliderController& controller) final;
    void AddEdit(const ZELPropUI::PageRect& rect, ZELPropUI::ISliderController& controller) final;
    void AddSpinButton(const ZELPropUI::PageRect& rect, ZELPropUI::ISliderController& controller) final;
    void AddCombo(const ZELPropUI::PageRect& rect, ZELPropUI::CZELItemDataBase& item,
                  ZELPropUI::InterfaceKey key) final;
    void AddSwitch(const ZELPropUI::PageRect& rect, ZELPropUI::CZELItemDataBase& item,
                   ZELPropUI::InterfaceKey key, std::wstring_view caption) final;
    void AddButton(const ZELPropUI::PageRect& rect, ZELPropUI::CZELItemDataBase& item,
                   ZELPropUI::InterfaceKey key, std::wstring_view caption) final;

protected:
    /// Makes the control, as it is to be shown now.
    virtual void add(const placed_control& control) = 0;
};

}  // namespace selvane_inspect
