#pragma once

#include "platform/com_ptr.h"

#include <string>

namespace selvane_host {

/// The names of the video capture devices of this system, a line each. Throws `host_error` if there is none.
[[nodiscard]] std::string list_devices();

/// The capture filter of the first device of that name. Throws `host_error` if there is none or if it cannot
/// be made.
[[nodiscard]] platform::com_ptr<IUnknown> open_device(const std::string& name);

/// What a capture filter tells of itself beside its name, in UTF-8; empty for one that tells nothing.
[[nodiscard]] std::string vendor_information(IUnknown& filter);

}  // namespace selvane_host
