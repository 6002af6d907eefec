#pragma once

#include "apps/inspect/pages/dialog_canvas.h"
#include "propui/page_groups.h"

#include <optional>
#include <string>
#include <vector>

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

/// Keeps what it is told, together with what each control would show.
class preview_canvas final : public dialog_canvas {
public:
    explicit preview_canvas(drawn_page& page) : page_(page) {}

private:
    void add(const placed_control& placed) override;

    drawn_page& page_;
};

}  // namespace selvane_inspect
