#pragma once

#include "apps/device/device_table.h"
#include "platform/com_ptr.h"

#include <strmif.h>

namespace selvane_camera {

/// A source filter that shows a simulated camera: one output pin, the camera's own interfaces, and the names
/// of its property pages. Throws std::bad_alloc.
[[nodiscard]] platform::com_ptr<IBaseFilter> make_capture_filter(const device_record& device);

}  // namespace selvane_camera
