#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ZELPropUI {

// Numbers as an edit shows and takes them. The decimal sign is a point whatever the locale of the process.

/// Decimals of a value as its edit shows it.
constexpr int shown_decimals = 3;

/// What "%.<decimals>f %s" prints of the value and its unit. The unit is left out where an edit's 19
/// characters do not hold both, or where `ParseValue` would not find the number again in front of it; digits
/// never are.
[[nodiscard]] std::wstring FormatValue(double value, int decimals, std::wstring_view unit);

/// What "1/%d %s" prints, with or without the unit as above.
[[nodiscard]] std::wstring FormatFraction(std::int32_t denominator, std::wstring_view unit);

/// Whether an edit has room for the unit behind the value as `FormatValue` shows it with `shown_decimals`.
[[nodiscard]] bool HasRoomForUnit(double value, std::wstring_view unit);

/// What the width of an edit is measured by: "%.2f %s" of a limit and its unit, cut to 19 characters wherever
/// that is.
[[nodiscard]] std::wstring FormatLimit(double limit, std::wstring_view unit);

/// The decimal text, of any length: a part of the digits would be another number, and none would be an error,
/// when the user leaves the edit.
[[nodiscard]] std::wstring FormatInteger(std::int32_t value);

/// Reads an integer that is written as `FormatInteger` would write it, of any length, with white space
/// around.
[[nodiscard]] bool ParseInteger(std::wstring_view text, std::int32_t& value);

/// Reads the number that the text begins with; a comma counts as a point, text behind the number as nothing.
[[nodiscard]] bool ParseFloat(std::wstring_view text, double& value);

/// Reads a value with or without its unit: a number or a fraction of two integers, the second not 0.
[[nodiscard]] bool ParseValue(std::wstring_view text, std::wstring_view unit, double& value);

}  // namespace ZELPropUI
