#pragma once

#include "apps/device/device_table.h"
#include "simcam/simulated_camera.h"

#include <memory>
#include <string>

namespace selvane_camera {

/// A camera of this process. All filters of a device show the same one, as they would with a real one: what
/// the pages of one filter change is seen in the pictures of another.
struct camera_source {
    simcam::camera_ptr camera;
    std::string about;  ///< the model, or why the camera has nothing to show, in UTF-8
};

using source_ptr = std::shared_ptr<const camera_source>;

/// The camera behind a device, made if nobody has it yet. The description in a file takes the place of all
/// that the camera has; with an empty name it is the device's own. A file that cannot be used is told to the
/// debugger, and makes a camera with nothing to show. Throws std::bad_alloc.
[[nodiscard]] source_ptr open_camera(const device_record& device, const std::wstring& description_file);

/// The file that the environment names, or else the one that the settings name.
[[nodiscard]] std::wstring choose_description(const std::wstring& from_settings);

}  // namespace selvane_camera
