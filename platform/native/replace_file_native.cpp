#include "platform/replace_file.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace platform {
namespace {

std::error_code last_failure() { return {errno, std::generic_category()}; }

std::error_code write_all(int file, std::string_view contents) {
    while (!contents.empty()) {
        const ssize_t written = ::write(file, contents.data(), contents.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return last_failure();
        contents.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

}  // namespace

std::error_code write_new_file(const std::filesystem::path& path, std::string_view contents) {
    constexpr mode_t for_all = 0666;  // as far as the user's mask lets it
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, for_all);
    if (file < 0) return last_failure();
    std::error_code failure = write_all(file, contents);
    if (::close(file) != 0 && !failure) failure = last_failure();
    if (failure) ::unlink(path.c_str());
    return failure;
}

}  // namespace platform
