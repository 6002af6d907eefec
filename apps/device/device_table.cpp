#include "apps/device/device_table.h"

#include <algorithm>

namespace selvane_camera {

const device_record* find_device(const CLSID& clsid) noexcept {
    const auto* found = std::find_if(devices.begin(), devices.end(),
                                     [&](const device_record& device) { return device.clsid == clsid; });
    return found == devices.end() ? nullptr : found;
}

}  // namespace selvane_camera
