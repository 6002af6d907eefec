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

/// Closes a handle of the kernel.
class kernel_handle {
public:
    explicit kernel_handle(HANDLE handle = nullptr) noexcept : handle_(handle) {}
    kernel_handle(const kernel_handle&) = delete;
    kernel_handle& operator=(const kernel_handle&) = delete;
    ~kernel_handle() { reset(); }
    void reset(HANDLE handle = nullptr) noexcept {
        if (handle_ != nullptr) CloseHandle(handle_);
        handle_ = handle;
    }
    [[nodiscard]] HANDLE get() const noexcept { return handle_; }

private:
    HANDLE handle_;
};

}  // namespace selvane_camera
