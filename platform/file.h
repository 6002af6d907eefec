#pragma once

#include <cstdio>
#include <string>

namespace platform {

/// Reads a whole file, whose path is in UTF-8. False if it cannot be read.
[[nodiscard]] bool read_file(const std::string& path, std::string& contents);

/// Null if the file cannot be opened.
[[nodiscard]] std::FILE* open_for_reading(const std::string& path);

}  // namespace platform
