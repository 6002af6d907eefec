#pragma once

#include <windows.h>

namespace selvane_camera {

/// For std::lock_guard. The lock of the standard library leaves memory behind with each that is made.
class plain_lock {
public:
    plain_lock() noexcept = default;
    plain_lock(const plain_lock&) = delete;
    plain_lock& operator=(const plain_lock&) = delete;
    void lock() noexcept { AcquireSRWLockExclusive(&lock_); }
    void unlock() noexcept { ReleaseSRWLockExclusive(&lock_); }

private:
    SRWLOCK lock_ = SRWLOCK_INIT;
};

}  // namespace selvane_camera
