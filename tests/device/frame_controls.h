#pragma once

#include "apps/host/page_control.h"

#include <string>

namespace device_test {

/// The control of a kind in the row of a label on the shown page; null if there is none.
[[nodiscard]] HWND control_in_row(HWND frame, const std::string& label, selvane_host::control_kind kind);
/// The one that bears a caption of its own.
[[nodiscard]] HWND control_captioned(HWND frame, const std::string& caption, selvane_host::control_kind kind);

}  // namespace device_test
