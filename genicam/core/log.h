#pragma once

#include <cstddef>
#include <cstdint>

namespace GenICam {

/// Messages above this level are not made. 0, the default, keeps every message of the engine silent.
extern std::uint32_t log_threshold;
/// Categories that pass, for messages that name any; at the place they have in a spec, bits 16 to 23.
extern std::uint32_t log_category_mask;

constexpr std::uint32_t log_failure = 1;    ///< level of failures
constexpr std::uint32_t log_rejection = 2;  ///< level of refused values and unresolved features
constexpr std::uint32_t log_time_stamp = 1U << 24;

constexpr std::size_t log_message_size = 512;  ///< terminator included

/// Whether a message with this spec (level in bits 0 to 7, categories in bits 16 to 23) would be printed.
[[nodiscard]] inline bool log_enabled(std::uint32_t spec) noexcept {
    if ((spec & 0xFFU) > log_threshold) return false;
    const std::uint32_t categories = spec & 0x00FF0000U;
    return categories == 0 || (categories & log_category_mask) != 0;
}

/// Keeps the log silent while it lives.
class silence {
public:
    silence() noexcept : former_threshold_(log_threshold) { log_threshold = 0; }
    ~silence() { log_threshold = former_threshold_; }
    silence(const silence&) = delete;
    silence& operator=(const silence&) = delete;

private:
    std::uint32_t former_threshold_;
};

/// Formats with printf conventions, cut to 512 characters terminator included, and hands the text to the
/// debug output. Call only after `log_enabled` said yes. Both `%lld` and `%I64d` print 64 bits on every
/// platform.
void log_message(std::uint32_t spec, const char* format, ...);

}  // namespace GenICam
