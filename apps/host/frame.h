#pragma once

#include "apps/host/frame_window.h"
#include "platform/com.h"

#include <functional>
#include <string>
#include <vector>

namespace selvane_host {

/// Runs again and again while a frame is open, on the thread of the frame. What it throws closes the frame
/// and leaves `show_frame`.
using frame_task = std::function<void(const frame_window&)>;

/// Shows pages of a camera in the platform's property frame, until it is closed. Throws `host_error` when it
/// cannot be opened, or does not open for want of a display.
void show_frame(const std::string& caption, IUnknown& camera, std::vector<CLSID> pages,
                const frame_task& task);

}  // namespace selvane_host
