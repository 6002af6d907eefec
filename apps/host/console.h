#pragma once

#include <string>
#include <string_view>

namespace selvane_host {

/// Writes UTF-8 text at once: whoever reads a pipe sees each line when it is written.
void write_output(std::string_view text);
/// One line: what a terminal would obey, line breaks among it, goes out as escapes.
void write_line(std::string_view line);
/// Such a line on standard error behind the program's name.
void write_error(std::string_view line);

/// The system's words for one of its error codes, without a line end.
[[nodiscard]] std::string system_message(unsigned long code);

}  // namespace selvane_host
