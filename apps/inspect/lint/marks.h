#pragma once

#include "apps/inspect/lint/lint_context.h"
#include "apps/inspect/marked_items.h"

#include <functional>

namespace selvane_inspect {

/// The id that a mark gives a node; zero for none.
[[nodiscard]] GUID mark_of(GenICam::INode& node, const char* mark);
[[nodiscard]] bool is_marked(GenICam::INode& node, const char* mark);

/// Where the mark stands, or the element where it cannot be found.
[[nodiscard]] text_position position_of_mark(const lint_context& context, GenICam::INode& node,
                                             const char* mark = element_mark);

/// Visits the nodes that are marked as elements.
void for_each_marked_element(lint_context& context, const std::function<void(GenICam::INode&)>& visit);

}  // namespace selvane_inspect
