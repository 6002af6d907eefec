#pragma once

#include <string>
#include <vector>

namespace platform {

/// The words of the command line behind the program's name, in UTF-8.
[[nodiscard]] std::vector<std::string> program_arguments(int count, const char* const* words);

/// Lets a console show UTF-8 text as it is.
void prepare_console();

/// Whether someone watches standard error, rather than a file or a program.
[[nodiscard]] bool is_error_a_terminal();

}  // namespace platform
