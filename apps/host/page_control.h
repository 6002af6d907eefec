#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace selvane_host {

enum class control_kind { label, slider, edit, spin_button, combo, check_box, button };

/// A control that stands on the shown page.
struct page_control {
    HWND window;
    control_kind kind;
    RECT rect;  ///< in pixels of the screen
    std::string text;
};

/// Every visible control inside a window, in the order of their creation; windows of other kinds are left
/// out.
[[nodiscard]] std::vector<page_control> find_controls(HWND parent);

[[nodiscard]] const char* kind_word(control_kind kind) noexcept;

/// What it shows at the moment, such as `checked` or `text "6.00 dB"`; empty for a button.
[[nodiscard]] std::string control_state(const page_control& control);

/// An entry of a combo box whose list is open.
struct open_entry {
    std::string text;
    RECT rect;  ///< in pixels of the screen
};

/// The entries that can be picked at the moment; none unless the control is a combo box with its list open.
[[nodiscard]] std::vector<open_entry> open_entries(const page_control& control);

/// "x,y widthxheight"
[[nodiscard]] std::string rect_text(const RECT& rect);

}  // namespace selvane_host
