#pragma once

#include "items/interface_keys.h"
#include "items/property_item.h"

#include <array>

namespace ZELAdapterHelper {

// What the two classes of the item Exposure have in common.

using ExposureRows = std::array<PropertyRow, 7>;

constexpr const wchar_t* exposure_unit = L"sec";
constexpr PropertyPlace camera_exposure = OnCamera(wire::camera_control_exposure);

/// The values give way to their automatic modes.
constexpr ExposureRows MakeExposureRows(PropertyPlace value, PropertyPlace seconds, PropertyPlace automatic,
                                        PropertyPlace limit, double ticks_per_second) noexcept {
    return {
        PropertyRow(exposure_key::value, InterfaceType::Range, value)
            .Needs(Need::ManualMode, camera_exposure)
            .Governed(AvailableUnlessOn, exposure_key::automatic),
        PropertyRow(exposure_key::abs_value, InterfaceType::AbsoluteValue, seconds)
            .Ticks(ticks_per_second)
            .Scale(scale_logarithmic)
            .Governed(AvailableUnlessOn, exposure_key::automatic),
        PropertyRow(exposure_key::automatic, InterfaceType::Switch, automatic)
            .Needs(Need::AutomaticMode, camera_exposure),
        PropertyRow(exposure_key::auto_reference, InterfaceType::Range,
                    Vendor(SELVANE_AUTO_EXPOSURE_REFERENCE)),
        PropertyRow(exposure_key::auto_max, InterfaceType::Range, limit)
            .Ticks(ticks_per_second)
            .Governed(AvailableUnlessOn, exposure_key::auto_max_automatic),
        PropertyRow(exposure_key::auto_max_abs, InterfaceType::AbsoluteValue, limit)
            .Ticks(ticks_per_second)
            .Scale(scale_logarithmic)
            .Governed(AvailableUnlessOn, exposure_key::auto_max_automatic),
        PropertyRow(exposure_key::auto_max_automatic, InterfaceType::Switch,
                    Vendor(SELVANE_AUTO_MAX_AUTOMATIC)),
    };
}

}  // namespace ZELAdapterHelper
