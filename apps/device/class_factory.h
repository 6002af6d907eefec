#pragma once

#include <unknwn.h>

namespace selvane_camera {

/// What `DllGetClassObject` does: a new factory for a device of the table.
[[nodiscard]] HRESULT get_class_object(REFCLSID clsid, REFIID iid, void** out) noexcept;

}  // namespace selvane_camera
