#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

/// "1 call", "0 calls", "2 calls". For words whose plural has an s.
[[nodiscard]] inline std::string count_text(std::uint64_t count, std::string_view word) {
    return std::to_string(count) + " " + std::string(word) + (count == 1 ? "" : "s");
}

}  // namespace platform
