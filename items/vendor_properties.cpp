#include "items/vendor_properties.h"

#include <algorithm>
#include <limits>

namespace ZELAdapterHelper {
namespace {

// The sum is rounded to 32 bits before it is cut.
std::int32_t TicksOf(float units, double per_unit) noexcept {
    const float rounded = units * static_cast<float>(per_unit) + 0.5F;
    return TruncateToInt32(static_cast<double>(rounded));
}

bool IsKnownOn(CZELItemDataBase& item, InterfaceKey switch_key) {
    bool on = false;
    return SUCCEEDED(item.GetSwitch(switch_key, on)) && on;
}

}  // namespace

bool IsSupported(IKsPropertySet& filter, REFGUID set, DWORD id) {
    constexpr DWORD get_or_set = SELVANE_SUPPORT_GET | SELVANE_SUPPORT_SET;
    DWORD support = 0;
    return SUCCEEDED(filter.QuerySupported(set, id, &support)) && (support & get_or_set) != 0;
}

bool PropertySupported(IKsPropertySet& filter, DWORD id) { return IsSupported(filter, wire::vendor_set, id); }

HRESULT GetProperty(IKsPropertySet& filter, DWORD id, wire::integer_record& record) {
    return ReadRecord(filter, wire::vendor_set, id, record);
}

HRESULT SetProperty(IKsPropertySet& filter, DWORD id, const wire::integer_record& record) {
    return WriteRecord(filter, wire::vendor_set, id, record);
}

HRESULT GetFloatProperty(IKsPropertySet& filter, DWORD id, wire::float_record& record) {
    return ReadRecord(filter, wire::vendor_set, id, record);
}

HRESULT SetFloatProperty(IKsPropertySet& filter, DWORD id, const wire::float_record& record) {
    return WriteRecord(filter, wire::vendor_set, id, record);
}

HRESULT GetPropertyValue(IKsPropertySet& filter, DWORD id, std::int32_t& value) {
    wire::integer_record record = {};
    const HRESULT hr = GetProperty(filter, id, record);
    if (SUCCEEDED(hr)) {
        value = record.value;
    }
    return hr;
}

HRESULT GetPropertyRange(IKsPropertySet& filter, DWORD id, RangeInfo& range) {
    wire::integer_record record = {};
    const HRESULT hr = GetProperty(filter, id, record);
    if (SUCCEEDED(hr)) {
        range = {record.min, record.max, record.default_value, 1};
    }
    return hr;
}

HRESULT SetPropertyValue(IKsPropertySet& filter, DWORD id, std::int32_t value) {
    wire::integer_record record = {};
    record.value = value;
    record.flags = wire::manual;
    return SetProperty(filter, id, record);
}

HRESULT GetPropertySwitch(IKsPropertySet& filter, DWORD id, bool& on) {
    std::int32_t value = 0;
    const HRESULT hr = GetPropertyValue(filter, id, value);
    if (SUCCEEDED(hr)) {
        on = value != 0;
    }
    return hr;
}

HRESULT SetPropertySwitch(IKsPropertySet& filter, DWORD id, bool on) {
    return SetPropertyValue(filter, id, on ? 1 : 0);
}

HRESULT GetScaledRange(IKsPropertySet& filter, DWORD id, double per_unit, AbsRangeInfo& range) {
    RangeInfo ticks;
    const HRESULT hr = GetPropertyRange(filter, id, ticks);
    if (SUCCEEDED(hr)) {
        range = {ticks.min / per_unit, ticks.max / per_unit, ticks.default_value / per_unit};
    }
    return hr;
}

HRESULT GetScaledValue(IKsPropertySet& filter, DWORD id, double per_unit, double& value) {
    std::int32_t ticks = 0;
    const HRESULT hr = GetPropertyValue(filter, id, ticks);
    if (SUCCEEDED(hr)) {
        value = ticks / per_unit;
    }
    return hr;
}

HRESULT SetScaledValue(IKsPropertySet& filter, DWORD id, double per_unit, double value) {
    return SetPropertyValue(filter, id, TruncateToInt32(value * per_unit));
}

HRESULT GetFloatRange(IKsPropertySet& filter, DWORD id, AbsRangeInfo& range) {
    wire::float_record record = {};
    const HRESULT hr = GetFloatProperty(filter, id, record);
    if (SUCCEEDED(hr)) {
        range = {static_cast<double>(record.min), static_cast<double>(record.max),
                 static_cast<double>(record.default_value)};
    }
    return hr;
}

HRESULT GetFloatValue(IKsPropertySet& filter, DWORD id, double& value) {
    wire::float_record record = {};
    const HRESULT hr = GetFloatProperty(filter, id, record);
    if (SUCCEEDED(hr)) {
        value = static_cast<double>(record.value);
    }
    return hr;
}

HRESULT SetFloatValue(IKsPropertySet& filter, DWORD id, float value) {
    wire::float_record record = {};
    record.value = value;
    record.flags = wire::manual;
    return SetFloatProperty(filter, id, record);
}

HRESULT GetFloatAutomatic(IKsPropertySet& filter, DWORD id, bool& on) {
    wire::float_record record = {};
    const HRESULT hr = GetFloatProperty(filter, id, record);
    if (SUCCEEDED(hr)) {
        on = (record.flags & wire::automatic) != 0;
    }
    return hr;
}

HRESULT SetFloatAutomatic(IKsPropertySet& filter, DWORD id, bool on) {
    wire::float_record record = {};
    const HRESULT hr = GetFloatProperty(filter, id, record);
    if (FAILED(hr) || on == ((record.flags & wire::automatic) != 0)) {
        return hr;
    }
    record.flags = on ? wire::automatic : wire::manual;
    return SetFloatProperty(filter, id, record);
}

HRESULT GetTickRange(IKsPropertySet& filter, DWORD id, double per_unit, RangeInfo& range) {
    wire::float_record record = {};
    const HRESULT hr = GetFloatProperty(filter, id, record);
    if (SUCCEEDED(hr)) {
        range = {std::max(TicksOf(record.min, per_unit), 1), TicksOf(record.max, per_unit),
                 TicksOf(record.default_value, per_unit), 1};
    }
    return hr;
}

HRESULT GetTicks(IKsPropertySet& filter, DWORD id, double per_unit, std::int32_t& value) {
    wire::float_record record = {};
    const HRESULT hr = GetFloatProperty(filter, id, record);
    if (SUCCEEDED(hr)) {
        value = std::max(TicksOf(record.value, per_unit), 1);
    }
    return hr;
}

HRESULT SetTicks(IKsPropertySet& filter, DWORD id, double per_unit, std::int32_t value) {
    return SetFloatValue(filter, id, static_cast<float>(value) / static_cast<float>(per_unit));
}

std::int32_t TruncateToInt32(double value) noexcept {
    using limits = std::numeric_limits<std::int32_t>;
    const bool fits = value > limits::min() - 1.0 && value < limits::max() + 1.0;
    return fits ? static_cast<std::int32_t>(value) : limits::min();
}

HRESULT AvailableUnlessOn(CZELItemDataBase& item, InterfaceKey switch_key, bool& available) {
    bool on = false;
    const HRESULT hr = item.SupportsInterface(switch_key) ? item.GetSwitch(switch_key, on) : S_OK;
    available = !on;
    return hr;
}

HRESULT AvailableWhileOn(CZELItemDataBase& item, InterfaceKey switch_key, bool& available) {
    return item.GetSwitch(switch_key, available);
}

HRESULT AvailableUnlessKnownOn(CZELItemDataBase& item, InterfaceKey switch_key, bool& available) {
    available = !IsKnownOn(item, switch_key);
    return S_OK;
}

HRESULT AvailableWhileKnownOn(CZELItemDataBase& item, InterfaceKey switch_key, bool& available) {
    available = IsKnownOn(item, switch_key);
    return S_OK;
}

}  // namespace ZELAdapterHelper
