#include "items/exposure_base.h"

#include "items/interface_keys.h"

namespace ZELAdapterHelper {
namespace {

// The values give way to their automatic modes.
std::array<PropertyRow, 7> MakeRows(const ExposureProperties& properties) noexcept {
    return {
        PropertyRow(exposure_key::value, InterfaceType::Range, properties.value)
            .Needs(Need::ManualMode, camera_exposure)
            .Is(Available::UnlessOn, exposure_key::automatic),
        PropertyRow(exposure_key::abs_value, InterfaceType::AbsoluteValue, properties.seconds)
            .Ticks(properties.ticks_per_second)
            .Logarithmic()
            .Is(Available::UnlessOn, exposure_key::automatic),
        PropertyRow(exposure_key::automatic, InterfaceType::Switch, properties.automatic)
            .Needs(Need::AutomaticMode, camera_exposure),
        PropertyRow(exposure_key::auto_reference, InterfaceType::Range,
                    Vendor(SELVANE_AUTO_EXPOSURE_REFERENCE)),
        PropertyRow(exposure_key::auto_max, InterfaceType::Range, properties.limit)
            .Ticks(properties.ticks_per_second)
            .Is(Available::UnlessOn, exposure_key::auto_max_automatic),
        PropertyRow(exposure_key::auto_max_abs, InterfaceType::AbsoluteValue, properties.limit)
            .Ticks(properties.ticks_per_second)
            .Logarithmic()
            .Is(Available::UnlessOn, exposure_key::auto_max_automatic),
        PropertyRow(exposure_key::auto_max_automatic, InterfaceType::Switch,
                    Vendor(SELVANE_AUTO_MAX_AUTOMATIC)),
    };
}

}  // namespace

CExposureBase::CExposureBase(Device device, const ExposureProperties& properties)
    : CPropertyItem(std::move(device), {}, L"sec"), rows_(MakeRows(properties)) {
    UseRows(AllOf(rows_));
}

}  // namespace ZELAdapterHelper
