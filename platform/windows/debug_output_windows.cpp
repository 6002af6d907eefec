#include "platform/debug_output.h"

#include <windows.h>

namespace platform {

void write_debug_channel(const char* text) { OutputDebugStringA(text); }

unsigned long long performance_microseconds() {
    LARGE_INTEGER count;
    LARGE_INTEGER frequency;
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    const auto ticks = static_cast<unsigned long long>(count.QuadPart);
    const auto per_second = static_cast<unsigned long long>(frequency.QuadPart);
    return ticks / per_second * 1000000U + ticks % per_second * 1000000U / per_second;
}

}  // namespace platform
