#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include <fmt/format.h>

namespace selvane_inspect {

/// "a circle: A needs B needs A", of so many names. Those of a long circle, told anew at each place where it
/// is met, would be longer than any description.
template <class NameAt>
[[nodiscard]] std::string circle_text(std::size_t length, std::string_view verb, NameAt name_at) {
    constexpr std::size_t most_names = 20;
    std::string text = "a circle: ";
    for (std::size_t at = 0; at < std::min(length, most_names); ++at)
        text += fmt::format("{} {} ", name_at(at), verb);
    if (length > most_names) text += fmt::format("({} more) {} ", length - most_names, verb);
    return text + std::string(name_at(0));
}

}  // namespace selvane_inspect
