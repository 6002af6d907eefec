#pragma once

#include "propui/windows/framework/superclass.h"

namespace ZELPropUI {

/// The window class of check boxes and push buttons.
[[nodiscard]] Framework::Superclass& ButtonClass() noexcept;

}  // namespace ZELPropUI
