#pragma once

#include <windows.h>

#include <filesystem>

namespace selvane_host {

/// Saves what a window shows inside its border as a PNG: who draws the border differs from system to system.
/// The window must be in view. Throws `host_error`.
void save_picture(HWND window, const std::filesystem::path& file);

}  // namespace selvane_host
