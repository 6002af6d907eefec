#pragma once

#include "genicam/core/eval_value.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace GenICam {

// Each parser gives the number of characters it consumed and sets its number; 0 means failure, and the number
// is then left as it was. None depends on the locale of the process.

/// White space, "+" and "-" (each flips the sign) up to the first digit, then decimal or, behind 0x,
/// hexadecimal digits. Text behind the digits is ignored. Wraps silently at 64 bits.
[[nodiscard]] std::size_t parse_int(std::string_view text, std::int64_t& number) noexcept;

/// As `parse_int`, but always hexadecimal and without a prefix: of 0x10 only the 0 is read.
[[nodiscard]] std::size_t parse_hex(std::string_view text, std::uint64_t& number) noexcept;

/// What `strtod` reads in the C locale.
[[nodiscard]] std::size_t parse_double(std::string_view text, double& number);

/// An integer as `parse_int` reads it, or a double where ".", "e" or "E" follows its digits.
[[nodiscard]] std::size_t parse_number(std::string_view text, eval_value& number);

}  // namespace GenICam
