#pragma once

#include <string>
#include <string_view>

namespace platform {

// Texts of descriptions and drivers on their way to a terminal, a log or a line that somebody reads. They may
// hold what a terminal obeys, what begins a new line, and what turns the direction of writing, so that the
// line reads as another one. All of that goes out as escapes: "\x1B" for the characters below the blank and
// DEL, "\u202E" for others, "\xFF" for a byte that is no UTF-8.

/// The text with escapes in place of what must not be obeyed. Everything else stays as it is.
[[nodiscard]] std::string visible_text(std::string_view text);

/// The same in double quotes, with a backslash before a quote or a backslash.
[[nodiscard]] std::string quoted_text(std::string_view text);

/// JSON as it is, but for the characters of that kind that JSON allows in texts: they become its own escapes.
[[nodiscard]] std::string visible_json(std::string_view json);

}  // namespace platform
