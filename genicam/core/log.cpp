#include "genicam/core/log.h"

#include "platform/debug_output.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <string>
#include <string_view>

namespace GenICam {

std::uint32_t log_threshold = 0;
std::uint32_t log_category_mask = 0;

namespace {

// "I64" is the length modifier of one C library only, while "ll" is known to all of them.
std::string with_portable_lengths(std::string_view format) {
    constexpr std::string_view foreign = "I64";
    std::string portable;
    while (!format.empty()) {
        const std::size_t ordinary = std::min(format.find('%'), format.size());
        const std::size_t conversion =
            std::min(format.find_first_not_of("-+ #0123456789.*", ordinary + 1), format.size());
        portable += format.substr(0, conversion);
        format.remove_prefix(conversion);
        const bool is_foreign = format.substr(0, foreign.size()) == foreign;
        portable += is_foreign ? "ll" : format.substr(0, 1);
        format.remove_prefix(is_foreign ? foreign.size() : std::min<std::size_t>(1, format.size()));
    }
    return portable;
}

void print_time_stamp() {
    char text[log_message_size];
    const unsigned long long now = platform::performance_microseconds();
    std::snprintf(text, log_message_size, "{%lluus} ", now);
    platform::write_debug_output(text);
}

// A message that comes out empty has no stamp either.
void print(bool is_stamped, const char* format, std::va_list arguments) {
    char text[log_message_size];
    const std::string portable = with_portable_lengths(format);
    if (std::vsnprintf(text, log_message_size, portable.c_str(), arguments) <= 0) return;
    if (is_stamped) print_time_stamp();
    platform::write_debug_output(text);
}

}  // namespace

void log_message(std::uint32_t spec, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    print((spec & log_time_stamp) != 0, format, arguments);
    va_end(arguments);
}

}  // namespace GenICam
