#pragma once

// A lock that the thread which holds it may take again, for std::lock_guard. The one of the standard library
// leaves memory behind with each that is made on Windows.

#ifdef _WIN32

#include <windows.h>

namespace platform {

class recursive_lock {
public:
    recursive_lock() noexcept { InitializeCriticalSection(&section_); }
    recursive_lock(const recursive_lock&) = delete;
    recursive_lock& operator=(const recursive_lock&) = delete;
    ~recursive_lock() { DeleteCriticalSection(&section_); }
    void lock() noexcept { EnterCriticalSection(&section_); }
    void unlock() noexcept { LeaveCriticalSection(&section_); }

private:
    CRITICAL_SECTION section_{};
};

}  // namespace platform

#else

#include <mutex>

namespace platform {

using recursive_lock = std::recursive_mutex;

}  // namespace platform

#endif
