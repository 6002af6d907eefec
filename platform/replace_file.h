#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

namespace platform {

/// Puts contents into a file in one step: they are written to a new file beside it, which then takes its
/// name. Until then, and after a failure, what stood there stands there. Where a link stands, the file takes
/// the place of the link, and what it led to stays as it is. Fails with `not_supported` for a device, a pipe
/// and what else cannot be replaced.
[[nodiscard]] std::error_code replace_file(const std::filesystem::path& path, std::string_view contents);

/// Makes a file that is not there yet, and writes it. Fails where anything stands at that path, be it a link
/// that leads nowhere.
[[nodiscard]] std::error_code write_new_file(const std::filesystem::path& path, std::string_view contents);

}  // namespace platform
