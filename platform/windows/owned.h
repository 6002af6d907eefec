#pragma once

#include <windows.h>

#include <objbase.h>

#include <utility>

namespace platform {

/// Owns something that the system hands out and takes back with `Close`. Null stands for nothing.
template <class Handle, class Close>
class owned {
public:
    explicit owned(Handle handle = nullptr) noexcept : handle_(handle) {}
    owned(owned&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    owned& operator=(owned&& other) noexcept {
        reset(std::exchange(other.handle_, nullptr));
        return *this;
    }
    ~owned() { reset(); }

    void reset(Handle handle = nullptr) noexcept {
        const Handle before = std::exchange(handle_, handle);
        if (before != nullptr) Close()(before);
    }
    [[nodiscard]] Handle get() const noexcept { return handle_; }
    [[nodiscard]] Handle release() noexcept { return std::exchange(handle_, nullptr); }
    explicit operator bool() const noexcept { return handle_ != nullptr; }

    /// Gives back what is held and tells the place where a function puts a new one.
    [[nodiscard]] Handle* put() noexcept {
        reset();
        return &handle_;
    }

private:
    Handle handle_;
};

struct close_kernel_handle {
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
struct close_registry_key {
    void operator()(HKEY key) const noexcept { RegCloseKey(key); }
};
struct free_library {
    void operator()(HMODULE module) const noexcept { FreeLibrary(module); }
};
struct free_task_memory {
    void operator()(void* memory) const noexcept { CoTaskMemFree(memory); }
};
struct free_local_memory {
    void operator()(void* memory) const noexcept { LocalFree(memory); }
};

using kernel_handle = owned<HANDLE, close_kernel_handle>;
using registry_key = owned<HKEY, close_registry_key>;
using library = owned<HMODULE, free_library>;
/// Of the task allocator of COM.
template <class T>
using task_memory = owned<T*, free_task_memory>;
template <class T>
using local_memory = owned<T*, free_local_memory>;

}  // namespace platform
