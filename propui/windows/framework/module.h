#pragma once

#include <windows.h>

namespace ZELPropUI::Framework {

/// The module that holds the resources and owns the window classes; null stands for the program itself.
[[nodiscard]] HINSTANCE ModuleHandle() noexcept;

/// Told when the module is loaded, and null when it goes.
void SetModuleHandle(HINSTANCE module) noexcept;

}  // namespace ZELPropUI::Framework
