#pragma once

#include "apps/inspect/lint/lint_context.h"
#include "apps/inspect/lint/lint_rule.h"

namespace selvane_inspect {

// What the engine itself says of a description, or what would become of it.
void check_load_messages(lint_context& context, finding_list& findings);
void check_ask_messages(lint_context& context, finding_list& findings);
void check_read_messages(lint_context& context, finding_list& findings);
void check_load_exception(lint_context& context, finding_list& findings);
void check_circles(lint_context& context, finding_list& findings);
void check_depth(lint_context& context, finding_list& findings);
void check_divisions_by_zero(lint_context& context, finding_list& findings);

// What an author would regret in formulas.
void check_refused_formulas(lint_context& context, finding_list& findings);
void check_short_rounds(lint_context& context, finding_list& findings);
void check_broken_off_formulas(lint_context& context, finding_list& findings);
void check_ignored_text(lint_context& context, finding_list& findings);
void check_operator_order(lint_context& context, finding_list& findings);
void check_integer_divisions(lint_context& context, finding_list& findings);
void check_guarded_divisions(lint_context& context, finding_list& findings);

// What an author would regret in elements and their names.
void check_elements_without_node(lint_context& context, finding_list& findings);
void check_unknown_elements(lint_context& context, finding_list& findings);
void check_unread_elements(lint_context& context, finding_list& findings);
void check_unread_cachables(lint_context& context, finding_list& findings);
void check_missing_names(lint_context& context, finding_list& findings);
void check_duplicate_names(lint_context& context, finding_list& findings);
void check_floats_without_min(lint_context& context, finding_list& findings);

// What an author would regret in the links between nodes, and the engine keeps silent about.
void check_category_circles(lint_context& context, finding_list& findings);
void check_silent_links(lint_context& context, finding_list& findings);

// What an author would regret in numbers: how they are read, and how the pages show them.
void check_float_limits(lint_context& context, finding_list& findings);
void check_wide_ranges(lint_context& context, finding_list& findings);
void check_slider_steps(lint_context& context, finding_list& findings);
void check_units_without_room(lint_context& context, finding_list& findings);

// What an author would regret in the marks for the property pages.
void check_for_marks(lint_context& context, finding_list& findings);
void check_mark_texts(lint_context& context, finding_list& findings);
void check_mark_groups(lint_context& context, finding_list& findings);
void check_mark_kinds(lint_context& context, finding_list& findings);
void check_double_marks(lint_context& context, finding_list& findings);
void check_empty_items(lint_context& context, finding_list& findings);
void check_marks_without_lock(lint_context& context, finding_list& findings);
void check_grey_marks(lint_context& context, finding_list& findings);
void check_entry_numbers(lint_context& context, finding_list& findings);
void check_lost_marks(lint_context& context, finding_list& findings);

// What an author would regret when the pages are laid out.
void check_page_edges(lint_context& context, finding_list& findings);

}  // namespace selvane_inspect
