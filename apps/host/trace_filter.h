#pragma once

#include "platform/com_ptr.h"

#include <functional>
#include <string_view>

namespace selvane_host {

/// Takes a finished line, without its end.
using line_sink = std::function<void(std::string_view)>;

/// A filter that stands between the pages and a driver. It forwards every call of IKsPropertySet,
/// IAMCameraControl and IAMVideoProcAmp, as far as the driver has them, and hands a line for each to the
/// sink:
///
///     Set device 4 Gain/Value <- 6.5, ok, 12 us
///
/// Any other interface is the driver's own. What the driver throws passes through.
[[nodiscard]] platform::com_ptr<IUnknown> make_trace_filter(IUnknown& driver, line_sink sink);

}  // namespace selvane_host
