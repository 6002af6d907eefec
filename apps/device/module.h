#pragma once

#include <windows.h>

namespace selvane_camera {

/// Keeps the module loaded for as long as it lives. Every object that the outside may hold has one.
class module_reference {
public:
    module_reference() noexcept;
    module_reference(const module_reference&) noexcept : module_reference() {}
    module_reference& operator=(const module_reference&) = delete;
    ~module_reference();
};

/// References that live, and locks of the server.
[[nodiscard]] LONG module_references() noexcept;
void lock_module(bool lock) noexcept;

/// The handle of the module that this code is part of. The flags are those of GetModuleHandleEx: without one
/// the module is kept loaded until the handle is freed.
[[nodiscard]] HMODULE own_module(DWORD flags) noexcept;

}  // namespace selvane_camera
