#pragma once

#include "simcam/driver_call.h"
#include "simcam/feature_server.h"

#include <string>

namespace simcam {

/// What a call asks, the beginning of its line: `Get device 4 Gain/Value`.
[[nodiscard]] std::string call_title(const driver_call& call);

/// The readable line of an answered call, such as `Set device 4 Gain/Value <- 6.5, ok`. `form` tells how the
/// bytes of named access are to be read. A call that an exception left ends in "threw" in place of its
/// result.
[[nodiscard]] std::string describe_call(const driver_call& call, value_form form, bool threw);

/// "ok", or the code in hexadecimal.
[[nodiscard]] std::string describe_result(HRESULT result);

}  // namespace simcam
