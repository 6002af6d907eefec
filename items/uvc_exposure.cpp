#include "items/builtin_factories.h"
#include "items/exposure_helpers.h"
#include "items/standard_controls.h"

#include <optional>

namespace ZELAdapterHelper {
namespace {

// The two families of properties that drivers have for exposure times.
struct TimeUnits {
    VendorProperty exposure;
    VendorProperty auto_max;
    double per_second;
};
constexpr TimeUnits ticks = {property_exposure_ticks, property_auto_max_ticks, 10000.0};
constexpr TimeUnits microseconds = {property_exposure_microseconds, property_auto_max_microseconds,
                                    1000000.0};

// Exposure over the integer properties and the camera control.
class CUVCExposure final : public CZELItemDataBase {
public:
    CUVCExposure(platform::com_ptr<IKsPropertySet> filter, bool use_microseconds,
                 platform::com_ptr<IAMCameraControl> camera)
        : filter_(std::move(filter)), camera_(std::move(camera)), use_microseconds_(use_microseconds) {}

    bool SupportsInterface(InterfaceKey key) override;
    HRESULT IsAvailable(InterfaceKey key, bool& available) override;
    HRESULT GetSwitch(InterfaceKey key, bool& on) override;
    HRESULT SetSwitch(InterfaceKey key, bool on) override;
    HRESULT GetRange(InterfaceKey key, RangeInfo& range) override;
    HRESULT GetValue(InterfaceKey key, std::int32_t& value) override;
    HRESULT SetValue(InterfaceKey key, std::int32_t value) override;
    HRESULT GetAbsRange(InterfaceKey key, AbsRangeInfo& range) override;
    HRESULT GetAbsValue(InterfaceKey key, double& value) override;
    HRESULT SetAbsValue(InterfaceKey key, double value) override;
    HRESULT GetAbsUnit(InterfaceKey key, SharedString& unit, std::int32_t& scale) override;

private:
    [[nodiscard]] const TimeUnits& Units() const noexcept { return use_microseconds_ ? microseconds : ticks; }
    [[nodiscard]] std::optional<VendorProperty> RangeProperty(InterfaceKey key) const noexcept;
    [[nodiscard]] std::optional<VendorProperty> AbsProperty(InterfaceKey key) const noexcept;
    [[nodiscard]] bool IsCameraValue(InterfaceKey key) const noexcept {
        return key == exposure_key::value && !use_microseconds_;
    }

    platform::com_ptr<IKsPropertySet> filter_;
    platform::com_ptr<IAMCameraControl> camera_;
    bool use_microseconds_;
};

// The property behind a range; none where the camera control serves it.
std::optional<VendorProperty> CUVCExposure::RangeProperty(InterfaceKey key) const noexcept {
    switch (key) {
        case exposure_key::value:
            return use_microseconds_ ? std::optional(property_exposure_microseconds) : std::nullopt;
        case exposure_key::auto_reference:
            return property_auto_exposure_reference;
        case exposure_key::auto_max:
            return Units().auto_max;
        default:
            return std::nullopt;
    }
}

std::optional<VendorProperty> CUVCExposure::AbsProperty(InterfaceKey key) const noexcept {
    switch (key) {
        case exposure_key::abs_value:
            return Units().exposure;
        case exposure_key::auto_max_abs:
            return Units().auto_max;
        default:
            return std::nullopt;
    }
}

bool CUVCExposure::SupportsInterface(InterfaceKey key) {
    switch (key) {
        case exposure_key::value:
            return (ControlCapabilities(camera_.get(), camera_control_exposure) & control_manual) != 0;
        case exposure_key::abs_value:
            return PropertySupported(*filter_, Units().exposure);
        case exposure_key::automatic:
            return (ControlCapabilities(camera_.get(), camera_control_exposure) & control_automatic) != 0;
        case exposure_key::auto_reference:
            return PropertySupported(*filter_, property_auto_exposure_reference);
        case exposure_key::auto_max:
        case exposure_key::auto_max_abs:
            return PropertySupported(*filter_, Units().auto_max);
        case exposure_key::auto_max_automatic:
            return PropertySupported(*filter_, property_auto_max_automatic);
        default:
            return false;
    }
}

HRESULT CUVCExposure::IsAvailable(InterfaceKey key, bool& available) {
    return ExposureAvailable(*this, key, available);
}

HRESULT CUVCExposure::GetSwitch(InterfaceKey key, bool& on) {
    switch (key) {
        case exposure_key::automatic:
            return GetControlAutomatic(camera_.get(), camera_control_exposure, on);
        case exposure_key::auto_max_automatic:
            return GetPropertySwitch(*filter_, property_auto_max_automatic, on);
        default:
            return E_NOTIMPL;
    }
}

HRESULT CUVCExposure::SetSwitch(InterfaceKey key, bool on) {
    switch (key) {
        case exposure_key::automatic:
            return SetControlAutomatic(camera_.get(), camera_control_exposure, on, ModeWrite::OnChange);
        case exposure_key::auto_max_automatic:
            return SetPropertySwitch(*filter_, property_auto_max_automatic, on);
        default:
            return E_NOTIMPL;
    }
}

HRESULT CUVCExposure::GetRange(InterfaceKey key, RangeInfo& range) {
    if (IsCameraValue(key)) {
        return GetControlRange(camera_.get(), camera_control_exposure, range);
    }
    const auto property = RangeProperty(key);
    return property ? GetPropertyRange(*filter_, *property, range) : E_NOTIMPL;
}

HRESULT CUVCExposure::GetValue(InterfaceKey key, std::int32_t& value) {
    if (IsCameraValue(key)) {
        return GetControlValue(camera_.get(), camera_control_exposure, value);
    }
    const auto property = RangeProperty(key);
    return property ? GetPropertyValue(*filter_, *property, value) : E_NOTIMPL;
}

HRESULT CUVCExposure::SetValue(InterfaceKey key, std::int32_t value) {
    if (IsCameraValue(key)) {
        return SetControlValue(camera_.get(), camera_control_exposure, value);
    }
    const auto property = RangeProperty(key);
    return property ? SetPropertyValue(*filter_, *property, value) : E_NOTIMPL;
}

HRESULT CUVCExposure::GetAbsRange(InterfaceKey key, AbsRangeInfo& range) {
    const auto property = AbsProperty(key);
    return property ? GetScaledRange(*filter_, *property, Units().per_second, range) : E_NOTIMPL;
}

HRESULT CUVCExposure::GetAbsValue(InterfaceKey key, double& value) {
    const auto property = AbsProperty(key);
    return property ? GetScaledValue(*filter_, *property, Units().per_second, value) : E_NOTIMPL;
}

HRESULT CUVCExposure::SetAbsValue(InterfaceKey key, double value) {
    const auto property = AbsProperty(key);
    return property ? SetScaledValue(*filter_, *property, Units().per_second, value) : E_NOTIMPL;
}

HRESULT CUVCExposure::GetAbsUnit(InterfaceKey key, SharedString& unit, std::int32_t& scale) {
    return ExposureUnit(key, unit, scale);
}

}  // namespace

void MakeUVCExposure(CZELItemDataBase** result, IUnknown* filter, const ItemRecord&) {
    *result = nullptr;
    auto properties = platform::query<IKsPropertySet>(filter);
    if (!properties || !PropertySupported(*properties, property_exposure_ticks)) {
        return;
    }
    const bool use_microseconds = PropertySupported(*properties, property_exposure_microseconds);
    *result =
        new CUVCExposure(std::move(properties), use_microseconds, platform::query<IAMCameraControl>(filter));
}

}  // namespace ZELAdapterHelper
