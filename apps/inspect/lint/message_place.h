#pragma once

#include "apps/inspect/lint/lint_context.h"

#include <string>
#include <vector>

namespace selvane_inspect {

/// A message with the place in the file that it is about.
struct placed_message {
    text_position at;
    std::string text;
};

/// Finds for each message of the engine the element that it speaks of. Most messages name the node; some
/// quote only a text of the description, which is looked for; those that go before another one about the same
/// formula share its place. Of places that fit equally, each message like the one before gets the next. A
/// message about nothing in the file stands without a place.
[[nodiscard]] std::vector<placed_message> place_messages(const lint_context& context,
                                                         const std::vector<engine_message>& messages);

}  // namespace selvane_inspect
