#pragma once

#include "apps/inspect/lint/lint_context.h"
#include "apps/inspect/lint/lint_rule.h"

namespace selvane_inspect {

// What an author would regret in formulas.

void check_refused_formulas(lint_context& context, finding_list& findings);
void check_short_rounds(lint_context& context, finding_list& findings);
void check_broken_off_formulas(lint_context& context, finding_list& findings);
void check_ignored_text(lint_context& context, finding_list& findings);
void check_operator_order(lint_context& context, finding_list& findings);
void check_integer_divisions(lint_context& context, finding_list& findings);
void check_guarded_divisions(lint_context& context, finding_list& findings);

}  // namespace selvane_inspect
