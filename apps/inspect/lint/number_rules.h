#pragma once

#include "apps/inspect/lint/lint_context.h"
#include "apps/inspect/lint/lint_rule.h"

namespace selvane_inspect {

// What an author would regret in numbers: how they are read, and how the pages show them.

void check_float_limits(lint_context& context, finding_list& findings);
void check_wide_ranges(lint_context& context, finding_list& findings);
void check_slider_steps(lint_context& context, finding_list& findings);
void check_units_without_room(lint_context& context, finding_list& findings);

}  // namespace selvane_inspect
