#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ZELPropUI {

// Numbers as an edit shows and takes them. The decimal sign is a point whatever the locale of the process.

/// What "%.<decimals>f %s" prints of the value and its unit, cut to the 19 characters that an edit shows.
[[nodiscard]] std::wstring FormatValue(double value, int decimals, std::wstring_view unit);

/// What "1/%d %s" prints, cut likewise.
[[nodiscard]] std::wstring FormatFraction(std::int32_t denominator, std::wstring_view unit);

/// The decimal text. False for a number of more than 9 characters, which has no room: a part of its digits
/// would be another number, and one that goes to the device when the user leaves the edit.
[[nodiscard]] bool FormatInteger(std::int32_t value, std::wstring& text);

/// The text without white space at both ends.
[[nodiscard]] std::wstring_view TrimSpace(std::wstring_view text) noexcept;

/// Reads an integer that is written as `FormatInteger` would write it, of any length, with white space
/// around.
[[nodiscard]] bool ParseInteger(std::wstring_view text, std::int32_t& value);

/// Reads the number that the text begins with; a comma counts as a point, text behind the number as nothing.
[[nodiscard]] bool ParseFloat(std::wstring_view text, double& value);

/// Reads a value with or without its unit: a number or a fraction of two integers, the second not 0.
[[nodiscard]] bool ParseValue(std::wstring_view text, std::wstring_view unit, double& value);

}  // namespace ZELPropUI
