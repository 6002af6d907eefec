#pragma once

#include <windows.h>

namespace ZELPropUI::Framework {

/// A notification comes back to the child that sent it as this plus the message.
constexpr UINT ocm_base = 0x2000;

/// The child of `parent` that sent a notification; null for any other message and for a notification without
/// one.
[[nodiscard]] HWND SenderOf(HWND parent, UINT message, WPARAM wparam, LPARAM lparam) noexcept;

/// Passes a notification back to the child that sent it. True if the child handled it.
[[nodiscard]] bool Reflect(HWND parent, UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result);

}  // namespace ZELPropUI::Framework
