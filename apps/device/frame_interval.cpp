#include "apps/device/frame_interval.h"

#include "apps/device/media_type.h"

#include <algorithm>

namespace selvane_camera {

// Cut off, not rounded: whoever asks for 60 frames a second must find them in the range.
REFERENCE_TIME to_interval(double frames_a_second) noexcept {
    return std::max<REFERENCE_TIME>(static_cast<REFERENCE_TIME>(ticks_a_second / frames_a_second), 1);
}

interval_range read_interval(const simcam::simulated_camera& camera) {
    const simcam::frame_rate_range rate = camera.picture().frame_rate;
    return {to_interval(rate.now), to_interval(rate.max), to_interval(rate.min)};
}

REFERENCE_TIME set_interval(simcam::simulated_camera& camera, REFERENCE_TIME wish) {
    const simcam::frame_rate_range rate = camera.picture().frame_rate;
    const double asked =
        static_cast<double>(ticks_a_second) / static_cast<double>(std::max<REFERENCE_TIME>(wish, 1));
    const double nearest = std::clamp(asked, rate.min, rate.max);
    if (wish == 0 || to_interval(nearest) == to_interval(rate.now)) return to_interval(rate.now);
    // A camera without the feature, or one that is in automatic mode, goes on as before.
    static_cast<void>(camera.set_frame_rate(nearest));
    return read_interval(camera).now;
}

}  // namespace selvane_camera
