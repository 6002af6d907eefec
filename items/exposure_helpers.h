#pragma once

#include "items/interface_keys.h"
#include "items/vendor_properties.h"

namespace ZELAdapterHelper {

// What the two classes of the item Exposure have in common.

/// The values give way to their automatic modes; everything else is always available.
[[nodiscard]] inline HRESULT ExposureAvailable(CZELItemDataBase& item, InterfaceKey key, bool& available) {
    switch (key) {
        case exposure_key::value:
        case exposure_key::abs_value:
            return AvailableUnlessOn(item, exposure_key::automatic, available);
        case exposure_key::auto_max:
        case exposure_key::auto_max_abs:
            return AvailableUnlessOn(item, exposure_key::auto_max_automatic, available);
        default:
            return item.CZELItemDataBase::IsAvailable(key, available);
    }
}

/// Seconds; logarithmic for the two physical values.
[[nodiscard]] inline HRESULT ExposureUnit(InterfaceKey key, SharedString& unit, std::int32_t& scale) {
    unit = SharedString(L"sec");
    if (key == exposure_key::abs_value || key == exposure_key::auto_max_abs) {
        scale = scale_logarithmic;
    }
    return S_OK;
}

}  // namespace ZELAdapterHelper
