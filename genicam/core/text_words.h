#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace GenICam {

/// Eight bytes of a text, wherever they stand.
[[nodiscard]] inline std::uint64_t word_at(std::string_view text, std::size_t at) noexcept {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + at, sizeof(word));
    return word;
}

/// Whether two texts are the same. Names of a description are short: calls for each would take longer than
/// the comparisons.
[[nodiscard]] inline bool is_same_text(std::string_view left, std::string_view right) noexcept {
    constexpr std::size_t width = sizeof(std::uint64_t);
    const std::size_t size = left.size();
    if (size != right.size()) return false;
    if (size < width) {
        for (std::size_t at = 0; at < size; ++at) {
            if (left[at] != right[at]) return false;
        }
        return true;
    }
    for (std::size_t at = 0; at + width < size; at += width) {
        if (word_at(left, at) != word_at(right, at)) return false;
    }
    return word_at(left, size - width) == word_at(right, size - width);
}

}  // namespace GenICam
