#pragma once

#include "apps/inspect/lint/lint_context.h"
#include "apps/inspect/lint/lint_rule.h"

namespace selvane_inspect {

// What an author would regret in elements and their names.

void check_elements_without_node(lint_context& context, finding_list& findings);
void check_unknown_elements(lint_context& context, finding_list& findings);
void check_unread_elements(lint_context& context, finding_list& findings);
void check_unread_cachables(lint_context& context, finding_list& findings);
void check_missing_names(lint_context& context, finding_list& findings);
void check_duplicate_names(lint_context& context, finding_list& findings);
void check_floats_without_min(lint_context& context, finding_list& findings);

}  // namespace selvane_inspect
