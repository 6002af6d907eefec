#pragma once

#include "items/property_item.h"

#include <array>

namespace ZELAdapterHelper {

constexpr PropertyAddress camera_exposure = OnCamera(wire::camera_control_exposure);

/// Where a driver has the values of the item Exposure.
struct ExposureProperties {
    PropertyAddress value;
    PropertyAddress seconds;
    PropertyAddress automatic;
    PropertyAddress limit;
    std::int32_t ticks_per_second;
};

/// What the two classes of the item Exposure have in common.
class CExposureBase : public CPropertyItem {
protected:
    CExposureBase(Device device, const ExposureProperties& properties);

private:
    std::array<PropertyRow, 7> rows_;
};

}  // namespace ZELAdapterHelper
