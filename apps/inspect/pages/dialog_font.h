#pragma once

#include <string_view>

namespace selvane_inspect {

/// Width of a text in the font of dialogs, 8-point Tahoma at 96 dots per inch, in pixels. The sum of the
/// advances of its characters as that font has them on a screen; characters outside Latin-1 count with one of
/// two typical widths. Real systems differ by a pixel here and there: they may have another font under that
/// name, and hint it otherwise.
[[nodiscard]] int dialog_text_width(std::wstring_view text) noexcept;

}  // namespace selvane_inspect
