#pragma once

#include "platform/guid.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

/// UTF-8 to the platform's wide text: UTF-16 on Windows, UTF-32 elsewhere. Bad sequences become U+FFFD.
[[nodiscard]] std::wstring widen(std::string_view utf8);

/// The platform's wide text to UTF-8.
[[nodiscard]] std::string narrow(std::wstring_view wide);

/// Characters of the braced form.
constexpr std::size_t guid_length = 38;

/// Reads exactly the braced form with 32 hexadecimal digits and hyphens; anything else gives false and the
/// zero GUID.
[[nodiscard]] bool parse_guid(std::wstring_view text, GUID& guid);

/// The braced form in upper case.
[[nodiscard]] std::wstring format_guid(const GUID& guid);

/// What `strtod` reads in the C locale, whatever the locale of the process: the number of characters
/// consumed, 0 for failure, and the number, left as it was on failure.
[[nodiscard]] std::size_t read_double(std::string_view text, double& number);

}  // namespace platform
