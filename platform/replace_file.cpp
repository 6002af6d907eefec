#include "platform/replace_file.h"

#include <random>
#include <string>

namespace platform {
namespace {

namespace fs = std::filesystem;

// A link to a device is as good as the device itself.
bool can_be_replaced(const fs::path& path) {
    std::error_code unknown;
    const fs::file_type behind = fs::status(path, unknown).type();
    return behind == fs::file_type::regular || behind == fs::file_type::not_found;
}

bool is_protected(const fs::file_status& file) {
    constexpr fs::perms writable = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    return fs::is_regular_file(file) && (file.permissions() & writable) == fs::perms::none;
}

// Nobody who does not read along knows the name.
fs::path name_beside(const fs::path& path) {
    std::random_device random;
    fs::path name = path;
    name += "." + std::to_string(random()) + ".tmp";
    return name;
}

}  // namespace

std::error_code replace_file(const fs::path& path, std::string_view contents) {
    std::error_code unknown;
    if (fs::is_directory(path, unknown)) return std::make_error_code(std::errc::is_a_directory);
    if (!can_be_replaced(path)) return std::make_error_code(std::errc::not_supported);
    const fs::file_status before = fs::symlink_status(path, unknown);
    if (is_protected(before)) return std::make_error_code(std::errc::permission_denied);
    const fs::path beside = name_beside(path);
    if (const std::error_code failure = write_new_file(beside, contents)) return failure;
    std::error_code failure;
    if (fs::is_regular_file(before)) fs::permissions(beside, before.permissions(), failure);
    if (!failure) fs::rename(beside, path, failure);
    if (failure) fs::remove(beside, unknown);
    return failure;
}

}  // namespace platform
