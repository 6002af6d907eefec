#include "items/builtin_factories.h"
#include "items/exposure_helpers.h"
#include "items/standard_controls.h"

#include <algorithm>
#include <optional>

namespace ZELAdapterHelper {
namespace {

// The unit in which the float limit shows as a range.
constexpr float ticks_per_second = 10000.0F;

// The sum is rounded to 32 bits before it is cut.
std::int32_t TicksOf(float seconds) noexcept {
    const float rounded = seconds * ticks_per_second + 0.5F;
    return TruncateToInt32(static_cast<double>(rounded));
}

HRESULT GetTickRange(IKsPropertySet& filter, RangeInfo& range) {
    wire::float_record record = {};
    const HRESULT hr = GetFloatProperty(filter, SELVANE_AUTO_MAX_FLOAT, record);
    if (SUCCEEDED(hr)) {
        range = {std::max(TicksOf(record.min), 1), TicksOf(record.max), TicksOf(record.default_value), 1};
    }
    return hr;
}

HRESULT GetTicks(IKsPropertySet& filter, std::int32_t& value) {
    wire::float_record record = {};
    const HRESULT hr = GetFloatProperty(filter, SELVANE_AUTO_MAX_FLOAT, record);
    if (SUCCEEDED(hr)) {
        value = std::max(TicksOf(record.value), 1);
    }
    return hr;
}

std::optional<selvane_vendor_property> AbsProperty(InterfaceKey key) noexcept {
    switch (key) {
        case exposure_key::abs_value:
            return SELVANE_EXPOSURE_FLOAT;
        case exposure_key::auto_max_abs:
            return SELVANE_AUTO_MAX_FLOAT;
        default:
            return std::nullopt;
    }
}

// Exposure over the float properties.
class exposure_item final : public CZELItemDataBase {
public:
    exposure_item(platform::com_ptr<IKsPropertySet> filter, platform::com_ptr<IAMCameraControl> camera);

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
    HRESULT GetAutomatic(bool& on);
    HRESULT SetAutomatic(bool on);

    platform::com_ptr<IKsPropertySet> filter_;
    platform::com_ptr<IAMCameraControl> camera_;
    bool float_auto_ = false;
    bool has_auto_ = false;
    bool has_manual_ = false;
    bool integer_exposure_ = false;
    bool has_auto_limit_ = false;
};

exposure_item::exposure_item(platform::com_ptr<IKsPropertySet> filter,
                             platform::com_ptr<IAMCameraControl> camera)
    : filter_(std::move(filter)), camera_(std::move(camera)) {
    wire::float_record exposure = {};
    if (SUCCEEDED(GetFloatProperty(*filter_, SELVANE_EXPOSURE_FLOAT, exposure))) {
        float_auto_ = (exposure.capabilities & wire::automatic) != 0;
        has_auto_ = true;
    }
    const LONG modes = ControlCapabilities(camera_.get(), wire::camera_control_exposure);
    has_manual_ = (modes & control_manual) != 0;
    has_auto_ = has_auto_ || (modes & control_automatic) != 0;
    has_auto_limit_ = PropertySupported(*filter_, SELVANE_AUTO_MAX_AUTOMATIC);
    integer_exposure_ = PropertySupported(*filter_, SELVANE_EXPOSURE_TICKS);
}

bool exposure_item::SupportsInterface(InterfaceKey key) {
    switch (key) {
        case exposure_key::value:
            return has_manual_;
        case exposure_key::abs_value:
            return true;
        case exposure_key::automatic:
            return has_auto_;
        case exposure_key::auto_reference:
            return PropertySupported(*filter_, SELVANE_AUTO_EXPOSURE_REFERENCE);
        case exposure_key::auto_max:
        case exposure_key::auto_max_abs:
            return PropertySupported(*filter_, SELVANE_AUTO_MAX_FLOAT);
        case exposure_key::auto_max_automatic:
            return has_auto_limit_;
        default:
            return false;
    }
}

HRESULT exposure_item::IsAvailable(InterfaceKey key, bool& available) {
    return ExposureAvailable(*this, key, available);
}

HRESULT exposure_item::GetAutomatic(bool& on) {
    if (!float_auto_) {
        return GetControlAutomatic(camera_.get(), wire::camera_control_exposure, on);
    }
    wire::float_record record = {};
    const HRESULT hr = GetFloatProperty(*filter_, SELVANE_EXPOSURE_FLOAT, record);
    if (SUCCEEDED(hr)) {
        on = (record.flags & wire::automatic) != 0;
    }
    return hr;
}

HRESULT exposure_item::SetAutomatic(bool on) {
    if (!float_auto_) {
        return SetControlAutomatic(camera_.get(), wire::camera_control_exposure, on, ModeWrite::OnChange);
    }
    wire::float_record record = {};
    const HRESULT hr = GetFloatProperty(*filter_, SELVANE_EXPOSURE_FLOAT, record);
    if (FAILED(hr) || on == ((record.flags & wire::automatic) != 0)) {
        return hr;
    }
    record.flags = on ? wire::automatic : wire::manual;
    return SetFloatProperty(*filter_, SELVANE_EXPOSURE_FLOAT, record);
}

HRESULT exposure_item::GetSwitch(InterfaceKey key, bool& on) {
    switch (key) {
        case exposure_key::automatic:
            return GetAutomatic(on);
        case exposure_key::auto_max_automatic:
            return GetPropertySwitch(*filter_, SELVANE_AUTO_MAX_AUTOMATIC, on);
        default:
            return E_NOTIMPL;
    }
}

HRESULT exposure_item::SetSwitch(InterfaceKey key, bool on) {
    switch (key) {
        case exposure_key::automatic:
            return SetAutomatic(on);
        case exposure_key::auto_max_automatic:
            return SetPropertySwitch(*filter_, SELVANE_AUTO_MAX_AUTOMATIC, on);
        default:
            return E_NOTIMPL;
    }
}

HRESULT exposure_item::GetRange(InterfaceKey key, RangeInfo& range) {
    switch (key) {
        case exposure_key::value:
            return integer_exposure_ ? GetPropertyRange(*filter_, SELVANE_EXPOSURE_TICKS, range)
                                     : GetControlRange(camera_.get(), wire::camera_control_exposure, range);
        case exposure_key::auto_reference:
            return GetPropertyRange(*filter_, SELVANE_AUTO_EXPOSURE_REFERENCE, range);
        case exposure_key::auto_max:
            return GetTickRange(*filter_, range);
        default:
            return E_NOTIMPL;
    }
}

HRESULT exposure_item::GetValue(InterfaceKey key, std::int32_t& value) {
    switch (key) {
        case exposure_key::value:
            return integer_exposure_ ? GetPropertyValue(*filter_, SELVANE_EXPOSURE_TICKS, value)
                                     : GetControlValue(camera_.get(), wire::camera_control_exposure, value);
        case exposure_key::auto_reference:
            return GetPropertyValue(*filter_, SELVANE_AUTO_EXPOSURE_REFERENCE, value);
        case exposure_key::auto_max:
            return GetTicks(*filter_, value);
        default:
            return E_NOTIMPL;
    }
}

HRESULT exposure_item::SetValue(InterfaceKey key, std::int32_t value) {
    switch (key) {
        case exposure_key::value:
            return integer_exposure_ ? SetPropertyValue(*filter_, SELVANE_EXPOSURE_TICKS, value)
                                     : SetControlValue(camera_.get(), wire::camera_control_exposure, value);
        case exposure_key::auto_reference:
            return SetPropertyValue(*filter_, SELVANE_AUTO_EXPOSURE_REFERENCE, value);
        case exposure_key::auto_max:
            return SetFloatValue(*filter_, SELVANE_AUTO_MAX_FLOAT,
                                 static_cast<float>(value) / ticks_per_second);
        default:
            return E_NOTIMPL;
    }
}

HRESULT exposure_item::GetAbsRange(InterfaceKey key, AbsRangeInfo& range) {
    const auto property = AbsProperty(key);
    return property ? GetFloatRange(*filter_, *property, range) : E_NOTIMPL;
}

HRESULT exposure_item::GetAbsValue(InterfaceKey key, double& value) {
    const auto property = AbsProperty(key);
    return property ? GetFloatValue(*filter_, *property, value) : E_NOTIMPL;
}

HRESULT exposure_item::SetAbsValue(InterfaceKey key, double value) {
    const auto property = AbsProperty(key);
    return property ? SetFloatValue(*filter_, *property, static_cast<float>(value)) : E_NOTIMPL;
}

HRESULT exposure_item::GetAbsUnit(InterfaceKey key, SharedString& unit, std::int32_t& scale) {
    return ExposureUnit(key, unit, scale);
}

}  // namespace

void MakeExposureItem(CZELItemDataBase** result, IUnknown* filter, const ItemRecord&) {
    *result = nullptr;
    auto properties = platform::query<IKsPropertySet>(filter);
    if (!properties || !PropertySupported(*properties, SELVANE_EXPOSURE_FLOAT)) {
        return;
    }
    *result = new exposure_item(std::move(properties), platform::query<IAMCameraControl>(filter));
}

}  // namespace ZELAdapterHelper
