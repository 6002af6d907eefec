#pragma once

#include <windows.h>

#include <string>

namespace ZELPropUI {

/// Gives a window the name that screen readers say. It stays with the window until `ClearAccessibleName`,
/// which must come before the window's end. False where the platform has no such service: the window is as
/// good without.
[[nodiscard]] bool SetAccessibleName(HWND window, const std::wstring& name) noexcept;
void ClearAccessibleName(HWND window) noexcept;

}  // namespace ZELPropUI
