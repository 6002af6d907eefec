#pragma once

#include <string_view>
#include <vector>

namespace selvane_inspect {

/// The name that someone meant who wrote a wrong one: the first of those that differ least, if that is little
/// enough for a slip; empty for none.
[[nodiscard]] std::string_view find_similar(std::string_view wrong,
                                            const std::vector<std::string_view>& known);

}  // namespace selvane_inspect
