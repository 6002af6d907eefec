#pragma once

#include "apps/inspect/lint/lint_context.h"
#include "apps/inspect/lint/lint_rule.h"

namespace selvane_inspect {

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

}  // namespace selvane_inspect
