#pragma once

#include <windows.h>

namespace selvane_camera {

/// Enters each device of the table as a class and among the video input devices of the system. A failure
/// takes out again what was entered.
[[nodiscard]] HRESULT register_devices() noexcept;
/// S_OK also for devices that were not entered.
[[nodiscard]] HRESULT unregister_devices() noexcept;

}  // namespace selvane_camera
