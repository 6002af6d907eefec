#pragma once

#include "apps/inspect/lint/lint_context.h"
#include "apps/inspect/lint/lint_rule.h"

namespace selvane_inspect {

// What an author would regret in the links between nodes, and the engine keeps silent about.

void check_category_circles(lint_context& context, finding_list& findings);
void check_silent_links(lint_context& context, finding_list& findings);

}  // namespace selvane_inspect
