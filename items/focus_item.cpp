#include "items/builtin_factories.h"
#include "items/interface_keys.h"
#include "items/standard_controls.h"

#include <optional>

namespace ZELAdapterHelper {
namespace {

// The property behind a range; none for the focus itself, which the camera control serves.
std::optional<selvane_vendor_property> RangeProperty(InterfaceKey key) noexcept {
    switch (key) {
        case focus_key::auto_min:
            return SELVANE_FOCUS_AUTO_MIN;
        case focus_key::auto_max:
            return SELVANE_FOCUS_AUTO_MAX;
        case focus_key::region_left:
            return SELVANE_FOCUS_REGION_LEFT;
        case focus_key::region_top:
            return SELVANE_FOCUS_REGION_TOP;
        case focus_key::region_bottom:
            return SELVANE_FOCUS_REGION_BOTTOM;
        case focus_key::region_right:
            return SELVANE_FOCUS_REGION_RIGHT;
        default:
            return std::nullopt;
    }
}

std::optional<selvane_vendor_property> SwitchProperty(InterfaceKey key) noexcept {
    switch (key) {
        case focus_key::one_push_running:
            return SELVANE_FOCUS_ONE_PUSH;
        case focus_key::region_enable:
            return SELVANE_FOCUS_REGION_ENABLE;
        default:
            return std::nullopt;
    }
}

bool IsInRegion(InterfaceKey key) noexcept {
    return key >= focus_key::region_left && key <= focus_key::region_right;
}

// Focus: the position over the camera control, the rest over the driver's properties.
class CItem final : public CZELItemDataBase {
public:
    CItem(platform::com_ptr<IKsPropertySet> filter, platform::com_ptr<IAMCameraControl> camera)
        : filter_(std::move(filter)), camera_(std::move(camera)) {}

    bool SupportsInterface(InterfaceKey key) override;
    HRESULT IsAvailable(InterfaceKey key, bool& available) override;
    HRESULT IsReadOnly(InterfaceKey key, bool& read_only) override;
    HRESULT GetSwitch(InterfaceKey key, bool& on) override;
    HRESULT SetSwitch(InterfaceKey key, bool on) override;
    HRESULT GetSwitchDefault(InterfaceKey key, bool& on) override;
    HRESULT GetRange(InterfaceKey key, RangeInfo& range) override;
    HRESULT GetValue(InterfaceKey key, std::int32_t& value) override;
    HRESULT SetValue(InterfaceKey key, std::int32_t value) override;
    HRESULT Push(InterfaceKey key) override;

private:
    platform::com_ptr<IKsPropertySet> filter_;
    platform::com_ptr<IAMCameraControl> camera_;
};

bool CItem::SupportsInterface(InterfaceKey key) {
    if (key == focus_key::value) {
        RangeInfo range;
        return SUCCEEDED(GetControlRange(camera_.get(), wire::camera_control_focus, range));
    }
    if (key == focus_key::one_push) {
        return PropertySupported(*filter_, SELVANE_FOCUS_ONE_PUSH);
    }
    const auto property = SwitchProperty(key) ? SwitchProperty(key) : RangeProperty(key);
    return property && PropertySupported(*filter_, *property);
}

HRESULT CItem::IsAvailable(InterfaceKey key, bool& available) {
    available = true;
    if (IsInRegion(key) && FAILED(GetSwitch(focus_key::region_enable, available))) {
        available = false;
    }
    return S_OK;
}

HRESULT CItem::IsReadOnly(InterfaceKey key, bool& read_only) {
    read_only = key == focus_key::one_push_running;
    return S_OK;
}

HRESULT CItem::GetSwitch(InterfaceKey key, bool& on) {
    const auto property = SwitchProperty(key);
    return property ? GetPropertySwitch(*filter_, *property, on) : E_NOTIMPL;
}

HRESULT CItem::SetSwitch(InterfaceKey key, bool on) {
    return key == focus_key::region_enable ? SetPropertySwitch(*filter_, SELVANE_FOCUS_REGION_ENABLE, on)
                                           : E_NOTIMPL;
}

HRESULT CItem::GetSwitchDefault(InterfaceKey key, bool& on) {
    if (key != focus_key::region_enable) {
        return E_NOTIMPL;
    }
    on = false;
    return S_OK;
}

HRESULT CItem::GetRange(InterfaceKey key, RangeInfo& range) {
    if (key == focus_key::value) {
        return GetControlRange(camera_.get(), wire::camera_control_focus, range);
    }
    const auto property = RangeProperty(key);
    return property ? GetPropertyRange(*filter_, *property, range) : E_NOTIMPL;
}

HRESULT CItem::GetValue(InterfaceKey key, std::int32_t& value) {
    if (key == focus_key::value) {
        return GetControlValue(camera_.get(), wire::camera_control_focus, value);
    }
    const auto property = RangeProperty(key);
    return property ? GetPropertyValue(*filter_, *property, value) : E_NOTIMPL;
}

HRESULT CItem::SetValue(InterfaceKey key, std::int32_t value) {
    if (key == focus_key::value) {
        return camera_->Set(wire::camera_control_focus, value, control_manual);
    }
    const auto property = RangeProperty(key);
    return property ? SetPropertyValue(*filter_, *property, value) : E_NOTIMPL;
}

HRESULT CItem::Push(InterfaceKey) { return SetPropertyValue(*filter_, SELVANE_FOCUS_ONE_PUSH, 1); }

}  // namespace

void MakeFocusItem(CZELItemDataBase** result, IUnknown* filter, const ItemRecord&) {
    *result = nullptr;
    auto properties = platform::query<IKsPropertySet>(filter);
    auto camera = platform::query<IAMCameraControl>(filter);
    if (properties && camera && PropertySupported(*properties, SELVANE_FOCUS_ONE_PUSH)) {
        *result = new CItem(std::move(properties), std::move(camera));
    }
}

}  // namespace ZELAdapterHelper
