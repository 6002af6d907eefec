#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace selvane_inspect {

/// The name that someone meant who wrote a wrong one: the first of those that differ least, if that is little
/// enough for a slip; empty for none.
[[nodiscard]] std::string_view find_similar(std::string_view wrong,
                                            const std::vector<std::string_view>& known);

/// " (did you mean Gain?)", or the other words in place of that where nothing is similar.
[[nodiscard]] std::string did_you_mean(std::string_view wrong, const std::vector<std::string_view>& known,
                                       std::string_view otherwise = {});

}  // namespace selvane_inspect
