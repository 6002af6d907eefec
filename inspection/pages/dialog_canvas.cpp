#include "inspection/pages/dialog_canvas.h"

#include "propui/scale_measure.h"

#include <cstddef>
#include <cstdint>
#include <iterator>

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

// clang-format off
constexpr std::uint8_t latin_widths[] = {
    // from the blank on
    3, 3, 5, 8, 6, 12, 8, 3, 4, 4, 7, 9, 3, 4, 3, 4,
    6, 6, 6, 6, 6, 6, 6, 6, 6, 6, 3, 4, 8, 8, 8, 5,
    10, 7, 7, 7, 7, 6, 6, 7, 8, 4, 5, 7, 6, 9, 8, 8,
    6, 8, 7, 6, 7, 7, 7, 10, 6, 7, 7, 4, 4, 4, 8, 6,
    6, 7, 6, 6, 7, 7, 4, 7, 7, 3, 3, 6, 3, 9, 7, 6,
    6, 7, 4, 5, 4, 7, 5, 8, 5, 5, 6, 5, 5, 5, 9, 5,
};
constexpr std::uint8_t upper_latin_widths[] = {
    // from the no-break blank on
    3, 3, 6, 6, 6, 6, 5, 6, 5, 11, 6, 7, 8, 4, 10, 6,
    5, 8, 6, 5, 6, 7, 7, 3, 6, 5, 5, 7, 11, 11, 11, 6,
    7, 7, 7, 7, 7, 7, 10, 7, 6, 6, 6, 6, 4, 4, 4, 4,
    7, 8, 8, 8, 8, 8, 8, 8, 8, 7, 7, 7, 7, 7, 6, 6,
    7, 7, 7, 7, 7, 7, 10, 6, 7, 7, 7, 7, 3, 3, 3, 3,
    6, 7, 6, 6, 6, 6, 6, 7, 6, 7, 7, 7, 7, 5, 6, 5,
};
// clang-format on

constexpr std::uint32_t first_latin = 0x20;
constexpr std::uint32_t first_upper_latin = 0xA0;
constexpr std::uint32_t first_wide = 0x2E80;  // from here on mostly scripts of square characters
constexpr int usual_width = 6;
constexpr int square_width = 11;

int width_of(std::uint32_t character) noexcept {
    if (character < first_latin) return 0;
    if (character - first_latin < std::size(latin_widths)) return latin_widths[character - first_latin];
    if (character < first_upper_latin) return square_width;
    if (character - first_upper_latin < std::size(upper_latin_widths)) {
        return upper_latin_widths[character - first_upper_latin];
    }
    return character < first_wide ? usual_width : square_width;
}

}  // namespace

int dialog_text_width(std::wstring_view text) noexcept {
    int width = 0;
    for (const wchar_t character : text) width += width_of(static_cast<std::uint32_t>(character));
    return width;
}

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
