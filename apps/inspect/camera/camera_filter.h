#pragma once

#include "apps/inspect/camera/live_camera.h"
#include "platform/com_ptr.h"

namespace selvane_inspect {

/// A camera as the pages reach one through its driver: its description, and its registers. Both outlive it.
[[nodiscard]] platform::com_ptr<IKsPropertySet> make_camera_filter(live_camera& camera);

}  // namespace selvane_inspect
