#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

/// A character at the front of a text, and how many bytes it takes.
struct utf8_character {
    char32_t code;
    std::size_t size;
};

/// The code of a byte that belongs to no character.
constexpr char32_t no_character = 0xFFFFFFFF;

/// The first character of a text that is not empty. A byte that begins none stands alone, with
/// `no_character`.
[[nodiscard]] utf8_character first_character(std::string_view text) noexcept;

/// Appends a character.
void append_utf8(std::string& text, char32_t character);

}  // namespace platform
