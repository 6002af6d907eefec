#include "platform/replace_file.h"

#include <windows.h>

#include <algorithm>

namespace platform {
namespace {

std::error_code last_failure() { return {static_cast<int>(GetLastError()), std::system_category()}; }

std::error_code write_all(HANDLE file, std::string_view contents) {
    constexpr std::size_t most = 1U << 30;  // a call takes 32 bits
    while (!contents.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min(contents.size(), most));
        if (WriteFile(file, contents.data(), size, &written, nullptr) == 0) return last_failure();
        contents.remove_prefix(written);
    }
    return {};
}

}  // namespace

std::error_code write_new_file(const std::filesystem::path& path, std::string_view contents) {
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return last_failure();
    std::error_code failure = write_all(file, contents);
    if (CloseHandle(file) == 0 && !failure) failure = last_failure();
    if (failure) DeleteFileW(path.c_str());
    return failure;
}

}  // namespace platform
