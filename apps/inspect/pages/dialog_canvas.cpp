#include "apps/inspect/pages/dialog_canvas.h"

#include "apps/inspect/pages/dialog_font.h"
#include "propui/scale_measure.h"

#include <cstddef>

namespace selvane_inspect {
namespace {

using ZELPropUI::CZELItemDataBase;
using ZELPropUI::InterfaceKey;
using ZELPropUI::ISliderController;
using ZELPropUI::PageRect;

constexpr int dots_per_inch = 96;
constexpr std::string_view control_words[] = {"label", "slider",    "edit",  "spin button",
                                              "combo", "check box", "button"};

placed_control placed_on(control_kind kind, const PageRect& rect, ISliderController& controller) {
    return {kind, rect, {}, &controller, nullptr, controller.GetKey()};
}

}  // namespace

std::string_view control_word(control_kind kind) noexcept {
    return control_words[static_cast<std::size_t>(kind)];
}

int dialog_canvas::TextWidth(std::wstring_view text) { return dialog_text_width(text); }

int dialog_canvas::ScaleX(int measure) { return ZELPropUI::ScaleMeasure(measure, dots_per_inch); }

int dialog_canvas::ScaleY(int measure) { return ZELPropUI::ScaleMeasure(measure, dots_per_inch); }

void dialog_canvas::AddLabel(const PageRect& rect, std::wstring_view text) {
    add({control_kind::label, rect, text});
}

void dialog_canvas::AddSlider(const PageRect& rect, ISliderController& controller) {
    add(placed_on(control_kind::slider, rect, controller));
}

void dialog_canvas::AddEdit(const PageRect& rect, ISliderController& controller) {
    add(placed_on(control_kind::edit, rect, controller));
}

void dialog_canvas::AddSpinButton(const PageRect& rect, ISliderController& controller) {
    add(placed_on(control_kind::spin_button, rect, controller));
}

void dialog_canvas::AddCombo(const PageRect& rect, CZELItemDataBase& item, InterfaceKey key) {
    add({control_kind::combo, rect, {}, nullptr, &item, key});
}

void dialog_canvas::AddSwitch(const PageRect& rect, CZELItemDataBase& item, InterfaceKey key,
                              std::wstring_view caption) {
    add({control_kind::check_box, rect, caption, nullptr, &item, key});
}

void dialog_canvas::AddButton(const PageRect& rect, CZELItemDataBase& item, InterfaceKey key,
                              std::wstring_view caption) {
    add({control_kind::button, rect, caption, nullptr, &item, key});
}

}  // namespace selvane_inspect
