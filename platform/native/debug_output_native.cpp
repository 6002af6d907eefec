#include "platform/debug_output.h"

#include <chrono>
#include <cstdio>

namespace platform {

void write_debug_channel(const char* text) { std::fputs(text, stderr); }

unsigned long long performance_microseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<unsigned long long>(
        std::chrono::duration_cast<std::chrono::microseconds>(now).count());
}

}  // namespace platform
