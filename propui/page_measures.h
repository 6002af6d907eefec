#pragma once

/// Measures of a page in pixels at 96 dots per inch; the canvas scales them.
namespace ZELPropUI::measure {

// Vertical.
constexpr int page_top = 18;
constexpr int row_height = 23;
constexpr int edit_height = 22;  ///< edits and spin buttons
constexpr int row_pitch = 30;
constexpr int combo_height = 150;  ///< with the list that drops down

// Horizontal.
constexpr int left_margin = 20;
constexpr int label_min_width = 110;
constexpr int gap = 5;
constexpr int element_indent = 40;
constexpr int slider_width = 140;
constexpr int edit_width = 60;
constexpr int spin_width = 10;
constexpr int spin_advance = 20;
constexpr int combo_extra = 25;  ///< what a combo is wider than a slider and an edit
constexpr int text_margin = 10;  ///< around the widest text of an edit

/// Around the caption of a switch or a button. In pixels of the screen: the one measure that is not scaled.
constexpr int caption_margin = 25;

}  // namespace ZELPropUI::measure
