#pragma once

#include "inspection/description.h"

#include <optional>
#include <string>

namespace selvane_inspect {

/// The first marked feature over which a page would hang or end its host, with the registers as they are, in
/// words; empty for none.
[[nodiscard]] std::optional<std::string> find_page_hazard(description& in);

}  // namespace selvane_inspect
