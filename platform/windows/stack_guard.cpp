#include <windows.h>

#include <intrin.h>

#include <cstdint>

// What functions with arrays on the stack are compared with when they return. The run-time library has its
// own, which asks a library of the system for random bytes while the loader holds its lock, and explains
// itself on a console.

extern "C" {
extern std::uintptr_t __stack_chk_guard;
[[noreturn]] void __stack_chk_fail();

std::uintptr_t __stack_chk_guard = 0x2B992DDFA23249D6;

// Before anything else of the module runs, and in no function that looks at the guard itself.
[[gnu::constructor(101), gnu::used]] static void make_stack_guard() {
    FILETIME time{};
    GetSystemTimeAsFileTime(&time);
    LARGE_INTEGER count{};
    QueryPerformanceCounter(&count);
    std::uint64_t mixed = reinterpret_cast<std::uintptr_t>(&__stack_chk_guard) ^ __rdtsc();
    mixed ^= static_cast<std::uint64_t>(count.QuadPart) << 17;
    mixed ^= static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    mixed ^= static_cast<std::uint64_t>(GetCurrentProcessId()) << 40 ^ GetCurrentThreadId();
    mixed *= 0x9E3779B97F4A7C15;
    // A text that runs over the guard ends at its first byte.
    __stack_chk_guard = static_cast<std::uintptr_t>((mixed ^ mixed >> 29) & ~std::uint64_t{0xFF});
}

// The system ends the process at once, and reports a buffer overrun.
void __stack_chk_fail() {
    constexpr unsigned stack_cookie_check_failure = 2;
    __asm__ __volatile__("int $0x29" : : "c"(stack_cookie_check_failure));
    __builtin_unreachable();
}
}
