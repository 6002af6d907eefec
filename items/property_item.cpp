#include "items/property_item.h"

#include <algorithm>

namespace ZELAdapterHelper {
namespace {

DWORD VendorId(const PropertyRow& row) noexcept { return row.address.property; }
LONG ControlId(const PropertyAddress& address) noexcept { return static_cast<LONG>(address.property); }

}  // namespace

const PropertyRow* CPropertyItem::Find(InterfaceKey key) const noexcept {
    const auto* found =
        std::find_if(rows_.begin(), rows_.end(), [key](const PropertyRow& row) { return row.key == key; });
    return found != rows_.end() ? found : nullptr;
}

const PropertyRow* CPropertyItem::Find(InterfaceKey key, InterfaceType type) const noexcept {
    const PropertyRow* row = Find(key);
    return row != nullptr && row->type == static_cast<std::uint8_t>(type) ? row : nullptr;
}

template <class Use>
auto CPropertyItem::WithControl(PropertySource source, Use use) const {
    return source == PropertySource::CameraControl ? use(device_.camera.get()) : use(device_.amp.get());
}

bool CPropertyItem::IsReadable(const PropertyAddress& address) const {
    wire::integer_record integer = {};
    wire::float_record real = {};
    return SUCCEEDED(address.source == PropertySource::Float
                         ? GetFloatProperty(Properties(), address.property, real)
                         : GetProperty(Properties(), address.property, integer));
}

bool CPropertyItem::SupportsInterface(InterfaceKey key) {
    const PropertyRow* row = Find(key);
    if (row == nullptr) return false;
    const PropertyAddress& address = row->needed;
    const auto has_mode = [this, &address](LONG mode) {
        return WithControl(address.source, [&](auto* control) {
            return (ControlCapabilities(control, ControlId(address)) & mode) != 0;
        });
    };
    switch (row->need) {
        case Need::Property:
            return PropertySupported(Properties(), address.property);
        case Need::ReadableProperty:
            return PropertySupported(Properties(), address.property) && IsReadable(address);
        case Need::ControlRange:
            return WithControl(address.source, [&](auto* control) {
                RangeInfo range;
                return SUCCEEDED(GetControlRange(control, ControlId(address), range));
            });
        case Need::ManualMode:
            return has_mode(control_manual);
        case Need::AutomaticMode:
            return has_mode(control_automatic);
        case Need::Nothing:
            break;
    }
    return true;
}

HRESULT CPropertyItem::IsAvailable(InterfaceKey key, bool& available) {
    const PropertyRow* row = Find(key);
    switch (row != nullptr ? row->available : Available::Always) {
        case Available::UnlessOn:
            return AvailableUnlessOn(*this, row->governor, available);
        case Available::WhileOn:
            return AvailableWhileOn(*this, row->governor, available);
        case Available::UnlessKnownOn:
            return AvailableUnlessKnownOn(*this, row->governor, available);
        case Available::WhileKnownOn:
            return AvailableWhileKnownOn(*this, row->governor, available);
        case Available::Always:
            break;
    }
    return CZELItemDataBase::IsAvailable(key, available);
}

HRESULT CPropertyItem::IsReadOnly(InterfaceKey key, bool& read_only) {
    const PropertyRow* row = Find(key);
    read_only = row != nullptr && row->read_only;
    return S_OK;
}

HRESULT CPropertyItem::GetSwitch(InterfaceKey key, bool& on) {
    const PropertyRow* row = Find(key, InterfaceType::Switch);
    if (row == nullptr) return E_NOTIMPL;
    switch (row->address.source) {
        case PropertySource::Integer:
            return GetPropertySwitch(Properties(), VendorId(*row), on);
        case PropertySource::Float:
            return GetFloatAutomatic(Properties(), VendorId(*row), on);
        default:
            return WithControl(row->address.source, [&](auto* control) {
                return GetControlAutomatic(control, ControlId(row->address), on);
            });
    }
}

HRESULT CPropertyItem::SetSwitch(InterfaceKey key, bool on) {
    const PropertyRow* row = Find(key, InterfaceType::Switch);
    if (row == nullptr || row->read_only) return E_NOTIMPL;
    switch (row->address.source) {
        case PropertySource::Integer:
            return SetPropertySwitch(Properties(), VendorId(*row), on);
        case PropertySource::Float:
            return SetFloatAutomatic(Properties(), VendorId(*row), on);
        default:
            return WithControl(row->address.source, [&](auto* control) {
                return SetControlAutomatic(control, ControlId(row->address), on, row->write);
            });
    }
}

HRESULT CPropertyItem::GetRange(InterfaceKey key, RangeInfo& range) {
    const PropertyRow* row = Find(key, InterfaceType::Range);
    if (row == nullptr) return E_NOTIMPL;
    switch (row->address.source) {
        case PropertySource::Integer:
            return GetPropertyRange(Properties(), VendorId(*row), range);
        case PropertySource::Float:
            return GetTickRange(Properties(), VendorId(*row), row->ticks_per_unit, range);
        default:
            return WithControl(row->address.source, [&](auto* control) {
                return GetControlRange(control, ControlId(row->address), range);
            });
    }
}

HRESULT CPropertyItem::GetValue(InterfaceKey key, std::int32_t& value) {
    const PropertyRow* row = Find(key, InterfaceType::Range);
    if (row == nullptr) return E_NOTIMPL;
    switch (row->address.source) {
        case PropertySource::Integer:
            return GetPropertyValue(Properties(), VendorId(*row), value);
        case PropertySource::Float:
            return GetTicks(Properties(), VendorId(*row), row->ticks_per_unit, value);
        default:
            return WithControl(row->address.source, [&](auto* control) {
                return GetControlValue(control, ControlId(row->address), value);
            });
    }
}

HRESULT CPropertyItem::SetValue(InterfaceKey key, std::int32_t value) {
    const PropertyRow* row = Find(key, InterfaceType::Range);
    if (row == nullptr) return E_NOTIMPL;
    switch (row->address.source) {
        case PropertySource::Integer:
            return SetPropertyValue(Properties(), VendorId(*row), value);
        case PropertySource::Float:
            return SetTicks(Properties(), VendorId(*row), row->ticks_per_unit, value);
        default:
            return WithControl(row->address.source, [&](auto* control) {
                return SetControlValue(control, ControlId(row->address), value, row->write);
            });
    }
}

HRESULT CPropertyItem::GetAbsRange(InterfaceKey key, AbsRangeInfo& range) {
    const PropertyRow* row = Find(key, InterfaceType::AbsoluteValue);
    if (row == nullptr) return E_NOTIMPL;
    return row->address.source == PropertySource::Float
               ? GetFloatRange(Properties(), VendorId(*row), range)
               : GetScaledRange(Properties(), VendorId(*row), row->ticks_per_unit, range);
}

HRESULT CPropertyItem::GetAbsValue(InterfaceKey key, double& value) {
    const PropertyRow* row = Find(key, InterfaceType::AbsoluteValue);
    if (row == nullptr) return E_NOTIMPL;
    return row->address.source == PropertySource::Float
               ? GetFloatValue(Properties(), VendorId(*row), value)
               : GetScaledValue(Properties(), VendorId(*row), row->ticks_per_unit, value);
}

HRESULT CPropertyItem::SetAbsValue(InterfaceKey key, double value) {
    const PropertyRow* row = Find(key, InterfaceType::AbsoluteValue);
    if (row == nullptr) return E_NOTIMPL;
    return row->address.source == PropertySource::Float
               ? SetFloatValue(Properties(), VendorId(*row), static_cast<float>(value))
               : SetScaledValue(Properties(), VendorId(*row), row->ticks_per_unit, value);
}

HRESULT CPropertyItem::GetAbsUnit(InterfaceKey key, SharedString& unit, std::int32_t& scale) {
    if (unit_ == nullptr) return E_NOTIMPL;
    unit = SharedString(unit_);
    const PropertyRow* row = Find(key, InterfaceType::AbsoluteValue);
    if (row != nullptr) scale = row->logarithmic ? scale_logarithmic : scale_linear;
    return S_OK;
}

HRESULT CPropertyItem::Push(InterfaceKey key) {
    const PropertyRow* row = Find(key, InterfaceType::Button);
    return row != nullptr ? SetPropertyValue(Properties(), VendorId(*row), 1) : E_NOTIMPL;
}

}  // namespace ZELAdapterHelper
