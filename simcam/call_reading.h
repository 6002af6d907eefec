#pragma once

#include "simcam/driver_call.h"

namespace simcam {

/// The first 64 KiB of what a call hands over, which is all that is worth keeping of a call; empty for null.
[[nodiscard]] bytes copy_of(const void* data, DWORD size);

/// Notes in a call of the device set what its instance data say: the path of named access, the address of
/// register access. False where they cannot be understood.
[[nodiscard]] bool read_instance(driver_call& call);

}  // namespace simcam
