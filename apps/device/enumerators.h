#pragma once

#include "apps/device/media_type.h"
#include "platform/com_ptr.h"

#include <strmif.h>

#include <vector>

namespace selvane_camera {

[[nodiscard]] platform::com_ptr<IEnumPins> enumerate_pins(std::vector<platform::com_ptr<IPin>> pins);
[[nodiscard]] platform::com_ptr<IEnumMediaTypes> enumerate_media_types(std::vector<media_type> types);

}  // namespace selvane_camera
