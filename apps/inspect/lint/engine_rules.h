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

}  // namespace selvane_inspect
