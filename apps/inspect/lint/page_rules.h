#pragma once

#include "apps/inspect/lint/lint_context.h"
#include "apps/inspect/lint/lint_rule.h"

namespace selvane_inspect {

// What an author would regret when the pages are laid out.

void check_page_edges(lint_context& context, finding_list& findings);

}  // namespace selvane_inspect
