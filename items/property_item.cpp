#include "items/property_item.h"

#include <algorithm>

namespace ZELAdapterHelper {
namespace {

DWORD VendorId(const PropertyRow& row) noexcept { return row.place.property; }
LONG ControlId(const PropertyPlace& place) noexcept { return static_cast<LONG>(place.property); }

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

bool CPropertyItem::IsReadable(const PropertyPlace& place) const {
    wire::integer_record integer = {};
    wire::float_record real = {};
    return SUCCEEDED(place.source == PropertySource::Float
                         ? GetFloatProperty(Properties(), place.property, real)
                         : GetProperty(Properties(), place.property, integer));
}

bool CPropertyItem::SupportsInterface(InterfaceKey key) {
    const PropertyRow* row = Find(key);
    if (row == nullptr) return false;
    const PropertyPlace& place = row->needed;
    const auto has_mode = [this, &place](LONG mode) {
        return WithControl(place.source, [&](auto* control) {
            return (ControlCapabilities(control, ControlId(place)) & mode) != 0;
        });
    };
    switch (row->need) {
        case Need::Property:
            return PropertySupported(Properties(), place.property);
        case Need::ReadableProperty:
            return PropertySupported(Properties(), place.property) && IsReadable(place);
        case Need::ControlRange:
            return WithControl(place.source, [&](auto* control) {
                RangeInfo range;
                return SUCCEEDED(GetControlRange(control, ControlId(place), range));
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
    switch (row->place.source) {
        case PropertySource::Integer:
            return GetPropertySwitch(Properties(), VendorId(*row), on);
        case PropertySource::Float:
            return GetFloatAutomatic(Properties(), VendorId(*row), on);
        default:
            return WithControl(row->place.source, [&](auto* control) {
                return GetControlAutomatic(control, ControlId(row->place), on);
            });
    }
}

HRESULT CPropertyItem::SetSwitch(InterfaceKey key, bool on) {
    const PropertyRow* row = Find(key, InterfaceType::Switch);
    if (row == nullptr || row->read_only) return E_NOTIMPL;
    switch (row->place.source) {
        case PropertySource::Integer:
            return SetPropertySwitch(Properties(), VendorId(*row), on);
        case PropertySource::Float:
            return SetFloatAutomatic(Properties(), VendorId(*row), on);
        default:
            return WithControl(row->place.source, [&](auto* control) {
                return SetControlAutomatic(control, ControlId(row->place), on, row->write);
            });
    }
}

HRESULT CPropertyItem::GetRange(InterfaceKey key, RangeInfo& range) {
    const PropertyRow* row = Find(key, InterfaceType::Range);
    if (row == nullptr) return E_NOTIMPL;
    switch (row->place.source) {
        case PropertySource::Integer:
            return GetPropertyRange(Properties(), VendorId(*row), range);
        case PropertySource::Float:
            return GetTickRange(Properties(), VendorId(*row), row->ticks_per_unit, range);
        default:
            return WithControl(row->place.source, [&](auto* control) {
                return GetControlRange(control, ControlId(row->place), range);
            });
    }
}

HRESULT CPropertyItem::GetValue(InterfaceKey key, std::int32_t& value) {
    const PropertyRow* row = Find(key, InterfaceType::Range);
    if (row == nullptr) return E_NOTIMPL;
    switch (row->place.source) {
        case PropertySource::Integer:
            return GetPropertyValue(Properties(), VendorId(*row), value);
        case PropertySource::Float:
            return GetTicks(Properties(), VendorId(*row), row->ticks_per_unit, value);
        default:
            return WithControl(row->place.source, [&](auto* control) {
                return GetControlValue(control, ControlId(row->place), value);
            });
    }
}

HRESULT CPropertyItem::SetValue(InterfaceKey key, std::int32_t value) {
    const PropertyRow* row = Find(key, InterfaceType::Range);
    if (row == nullptr) return E_NOTIMPL;
    switch (row->place.source) {
        case PropertySource::Integer:
            return SetPropertyValue(Properties(), VendorId(*row), value);
        case PropertySource::Float:
            return SetTicks(Properties(), VendorId(*row), row->ticks_per_unit, value);
        default:
            return WithControl(row->place.source, [&](auto* control) {
                return SetControlValue(control, ControlId(row->place), value, row->write);
            });
    }
}

HRESULT CPropertyItem::GetAbsRange(InterfaceKey key, AbsRangeInfo& range) {
    const PropertyRow* row = Find(key, InterfaceType::AbsoluteValue);
    if (row == nullptr) return E_NOTIMPL;
    return row->place.source == PropertySource::Float
               ? GetFloatRange(Properties(), VendorId(*row), range)
               : GetScaledRange(Properties(), VendorId(*row), row->ticks_per_unit, range);
}

HRESULT CPropertyItem::GetAbsValue(InterfaceKey key, double& value) {
    const PropertyRow* row = Find(key, InterfaceType::AbsoluteValue);
    if (row == nullptr) return E_NOTIMPL;
    return row->place.source == PropertySource::Float
               ? GetFloatValue(Properties(), VendorId(*row), value)
               : GetScaledValue(Properties(), VendorId(*row), row->ticks_per_unit, value);
}

HRESULT CPropertyItem::SetAbsValue(InterfaceKey key, double value) {
    const PropertyRow* row = Find(key, InterfaceType::AbsoluteValue);
    if (row == nullptr) return E_NOTIMPL;
    return row->place.source == PropertySource::Float
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
