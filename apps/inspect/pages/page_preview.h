#pragma once

#include "apps/inspect/description.h"
#include "apps/inspect/pages/preview_canvas.h"

#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace selvane_inspect {

/// By which access path the pages reach the features.
enum class access_path { registers, named };

/// Lays out the four pages by the code of the pages themselves, over a simulated camera that has the
/// description and its registers, and no fixed driver property. Throws `inspect_error` when the real pages
/// would not survive it.
[[nodiscard]] std::vector<drawn_page> preview_pages(description& of, access_path access);

/// What stands at one height, from left to right.
using drawn_row = std::vector<const drawn_control*>;
/// The rows of a page, from the top.
[[nodiscard]] std::vector<drawn_row> rows_of(const drawn_page& page);

// A page as text, picture and data.
[[nodiscard]] std::string page_text(const drawn_page& page);
[[nodiscard]] std::string page_svg(const drawn_page& page);
[[nodiscard]] nlohmann::ordered_json page_json(const drawn_page& page);

/// "exposure", "feature", "lens", "color"
[[nodiscard]] std::string_view page_word(ZELPropUI::PageName page) noexcept;

}  // namespace selvane_inspect
