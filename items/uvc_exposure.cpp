#include "items/builtin_factories.h"
#include "items/exposure_helpers.h"
#include "items/standard_controls.h"

#include <optional>

namespace ZELAdapterHelper {
namespace {

// The two families of properties that drivers have for exposure times.
struct TimeUnits {
    selvane_vendor_property exposure;
    selvane_vendor_property auto_max;
    double per_second;
};
constexpr TimeUnits ticks = {SELVANE_EXPOSURE_TICKS, SELVANE_AUTO_MAX_TICKS, 10000.0};
constexpr TimeUnits microseconds = {SELVANE_EXPOSURE_MICROSECONDS, SELVANE_AUTO_MAX_MICROSECONDS, 1000000.0};

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
    [[nodiscard]] std::optional<selvane_vendor_property> RangeProperty(InterfaceKey key) const noexcept;
    [[nodiscard]] std::optional<selvane_vendor_property> AbsProperty(InterfaceKey key) const noexcept;
    [[nodiscard]] bool IsCameraValue(InterfaceKey key) const noexcept {
        return key == exposure_key::value && !use_microseconds_;
    }

    platform::com_ptr<IKsPropertySet> filter_;
    platform::com_ptr<IAMCameraControl> camera_;
    bool use_microseconds_;
};

// The property behind a range; none where the camera control serves it.
std::optional<selvane_vendor_property> CUVCExposure::RangeProperty(InterfaceKey key) const noexcept {
    switch (key) {
        case exposure_key::value:
            return use_microseconds_ ? std::optional(SELVANE_EXPOSURE_MICROSECONDS) : std::nullopt;
        case exposure_key::auto_reference:
            return SELVANE_AUTO_EXPOSURE_REFERENCE;
        case exposure_key::auto_max:
            return Units().auto_max;
        default:
            return std::nullopt;
    }
}

std::optional<selvane_vendor_property> CUVCExposure::AbsProperty(InterfaceKey key) const noexcept {
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
            return (ControlCapabilities(camera_.get(), wire::camera_control_exposure) & control_manual) != 0;
        case exposure_key::abs_value:
            return PropertySupported(*filter_, Units().exposure);
        case exposure_key::automatic:
            return (ControlCapabilities(camera_.get(), wire::camera_control_exposure) & control_automatic) !=
                   0;
        case exposure_key::auto_reference:
            return PropertySupported(*filter_, SELVANE_AUTO_EXPOSURE_REFERENCE);
        case exposure_key::auto_max:
        case exposure_key::auto_max_abs:
            return PropertySupported(*filter_, Units().auto_max);
        case exposure_key::auto_max_automatic:
            return PropertySupported(*filter_, SELVANE_AUTO_MAX_AUTOMATIC);
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
            return GetControlAutomatic(camera_.get(), wire::camera_control_exposure, on);
        case exposure_key::auto_max_automatic:
            return GetPropertySwitch(*filter_, SELVANE_AUTO_MAX_AUTOMATIC, on);
        default:
            return E_NOTIMPL;
    }
}

HRESULT CUVCExposure::SetSwitch(InterfaceKey key, bool on) {
    switch (key) {
        case exposure_key::automatic:
            return SetControlAutomatic(camera_.get(), wire::camera_control_exposure, on, ModeWrite::OnChange);
        case exposure_key::auto_max_automatic:
            return SetPropertySwitch(*filter_, SELVANE_AUTO_MAX_AUTOMATIC, on);
        default:
            return E_NOTIMPL;
    }
}

HRESULT CUVCExposure::GetRange(InterfaceKey key, RangeInfo& range) {
    if (IsCameraValue(key)) {
        return GetControlRange(camera_.get(), wire::camera_control_exposure, range);
    }
    const auto property = RangeProperty(key);
    return property ? GetPropertyRange(*filter_, *property, range) : E_NOTIMPL;
}

HRESULT CUVCExposure::GetValue(InterfaceKey key, std::int32_t& value) {
    if (IsCameraValue(key)) {
        return GetControlValue(camera_.get(), wire::camera_control_exposure, value);
    }
    const auto property = RangeProperty(key);
    return property ? GetPropertyValue(*filter_, *property, value) : E_NOTIMPL;
}

HRESULT CUVCExposure::SetValue(InterfaceKey key, std::int32_t value) {
    if (IsCameraValue(key)) {
        return SetControlValue(camera_.get(), wire::camera_control_exposure, value);
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
    if (!properties || !PropertySupported(*properties, SELVANE_EXPOSURE_TICKS)) {
        return;
    }
    const bool use_microseconds = PropertySupported(*properties, SELVANE_EXPOSURE_MICROSECONDS);
    *result =
        new CUVCExposure(std::move(properties), use_microseconds, platform::query<IAMCameraControl>(filter));
}

}  // namespace ZELAdapterHelper
