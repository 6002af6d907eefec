#pragma once

#include "apps/host/options.h"
#include "simcam/simulated_camera.h"

#include <string>

namespace selvane_host {

/// The simulated camera that the options ask for. Throws `host_error` for an unknown camera and for a
/// description that cannot be read or is malformed.
[[nodiscard]] simcam::camera_ptr make_wanted_camera(const host_options& options);

/// What the frame is called: the model of the first description.
[[nodiscard]] std::string camera_caption(simcam::simulated_camera& camera);

/// The ready-made cameras, a line each.
[[nodiscard]] std::string list_cameras();

}  // namespace selvane_host
