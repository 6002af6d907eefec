#pragma once

#include "platform/guid.h"

#include <array>

namespace selvane_camera {

/// A capture device that this module brings.
struct device_record {
    CLSID clsid;
    const wchar_t* name;  ///< as applications list it
    const char* camera;   ///< the ready-made camera behind it
    bool named_access;    ///< whether features are reached by name too, or by registers alone
};

constexpr std::array<device_record, 3> devices = {{
    {{0x7A2E5B40, 0x3C6D, 0x4F18, {0x9B, 0x27, 0x5D, 0x0E, 0x81, 0xC4, 0x6A, 0x10}},
     L"Selvane simulated camera",
     "full",
     true},
    {{0x7A2E5B41, 0x3C6D, 0x4F18, {0x9B, 0x27, 0x5D, 0x0E, 0x81, 0xC4, 0x6A, 0x10}},
     L"Selvane simulated camera (registers only)",
     "full",
     false},
    {{0x7A2E5B42, 0x3C6D, 0x4F18, {0x9B, 0x27, 0x5D, 0x0E, 0x81, 0xC4, 0x6A, 0x10}},
     L"Selvane simulated camera (built-in items)",
     "builtin",
     true},
}};

/// Null for a class that is not one of them.
[[nodiscard]] const device_record* find_device(const CLSID& clsid) noexcept;

/// The value of a device's own settings that names a description file, and the variable of the environment
/// that goes before it.
constexpr const wchar_t* description_setting = L"DescriptionFile";
constexpr const wchar_t* description_variable = L"SELVANE_CAMERA_DESCRIPTION";

}  // namespace selvane_camera
