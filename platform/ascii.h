#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace platform {

// What the C locale says of characters, whatever locale the process has. Other characters are left alone.

/// White space.
constexpr std::string_view white_space = " \t\n\v\f\r";
constexpr std::wstring_view wide_white_space = L" \t\n\v\f\r";

/// The text without the characters of `blanks` at both ends.
template <class Char>
[[nodiscard]] constexpr std::basic_string_view<Char> trimmed(std::basic_string_view<Char> text,
                                                             std::basic_string_view<Char> blanks) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}
[[nodiscard]] constexpr std::string_view trimmed(std::string_view text) noexcept {
    return trimmed(text, white_space);
}
[[nodiscard]] constexpr std::wstring_view trimmed(std::wstring_view text) noexcept {
    return trimmed(text, wide_white_space);
}

/// A capital as its small letter.
[[nodiscard]] constexpr char lower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
[[nodiscard]] inline std::string lower(std::string_view text) {
    std::string lowered(text);
    for (char& c : lowered) c = lower(c);
    return lowered;
}

}  // namespace platform
