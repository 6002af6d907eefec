#pragma once

#include "inspection/description.h"
#include "inspection/pages/dialog_canvas.h"
#include "propui/page_groups.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace selvane_inspect {

/// One thing on a page, as it would show itself when the page opens. Texts are UTF-8.
struct drawn_control {
    control_kind kind;
    ZELPropUI::PageRect rect;
    std::string text;  ///< label, caption, contents of an edit, selected string of a combo
    bool enabled = true;
    std::string feature;  ///< the node behind it; empty for labels
    // Sliders, edits and spin buttons.
    std::optional<double> minimum;
    std::optional<double> maximum;
    std::optional<double> step;  ///< of integers alone
    std::string unit;
    // Sliders and spin buttons.
    std::optional<int> lowest_position;
    std::optional<int> highest_position;
    std::optional<int> position;
    // Combos.
    std::vector<std::string> strings;
    // Check boxes.
    bool checked = false;
};

struct drawn_page {
    ZELPropUI::PageName name;
    bool offered = false;  ///< whether the page has anything to show
    std::vector<drawn_control> controls;
};

/// The room of a page at 96 dots per inch; what lies outside is cut off.
constexpr int page_width = 428;
constexpr int page_height = 457;

/// Whether a page cuts it off. The list of a combo drops down over everything.
[[nodiscard]] bool is_beyond_edge(const drawn_control& control) noexcept;

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
