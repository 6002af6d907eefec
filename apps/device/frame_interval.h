#pragma once

#include "simcam/simulated_camera.h"

#include <strmif.h>

namespace selvane_camera {

/// Time from one frame to the next.
struct interval_range {
    REFERENCE_TIME now;
    REFERENCE_TIME shortest;
    REFERENCE_TIME longest;
};

/// What the camera's feature for its frame rate says at the moment.
[[nodiscard]] interval_range read_interval(const simcam::simulated_camera& camera);
[[nodiscard]] REFERENCE_TIME to_interval(double frames_a_second) noexcept;

/// Sets that feature to what comes nearest to a wish, 0 for none, and gives what came of it. Throws
/// std::bad_alloc.
REFERENCE_TIME set_interval(simcam::simulated_camera& camera, REFERENCE_TIME wish);

}  // namespace selvane_camera
