#include "adapter/propdata_named.h"

#include "adapter/named_access.h"
#include "wire/device_set.h"

#include <cstring>
#include <utility>

namespace genicam_adapter {
namespace {

using GenICam::IEnumeration;

// The sum wraps.
std::int64_t middle(std::int64_t min, std::int64_t max) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(half_span(min, max)) +
                                     static_cast<std::uint64_t>(min));
}

}  // namespace

genicam_propdata_named::genicam_propdata_named(platform::com_ptr<IKsPropertySet> filter)
    : genicam_propdata(std::move(filter)) {}

HRESULT genicam_propdata_named::IsAvailable(InterfaceKey key, bool& available) {
    return get_flag(key, wire::path_suffix::is_locked, available);
}

HRESULT genicam_propdata_named::GetSwitch(InterfaceKey key, bool& on) {
    std::uint64_t value = 0;
    const HRESULT hr = get(key, wire::path_suffix::value, value);
    on = value != 0;
    return hr;
}

HRESULT genicam_propdata_named::SetSwitch(InterfaceKey key, bool on) {
    return set(key, wire::path_suffix::value, on ? 1 : 0);
}

HRESULT genicam_propdata_named::GetSwitchDefault(InterfaceKey key, bool& on) {
    return get_flag(key, wire::path_suffix::default_value, on);
}

HRESULT genicam_propdata_named::GetRange(InterfaceKey key, ZELAdapterHelper::RangeInfo& range) {
    if (auto* const enumeration = node_as<IEnumeration>(key)) return get_entry_range(*enumeration, range);
    std::int64_t min = 0;
    std::int64_t max = 1;
    std::int64_t inc = 1;
    std::int64_t default_value = 0;
    HRESULT hr = get(key, wire::path_suffix::min, min);
    if (FAILED(hr)) return hr;
    hr = get(key, wire::path_suffix::max, max);
    if (FAILED(hr)) return hr;
    if (FAILED(get(key, wire::path_suffix::inc, inc))) inc = 1;
    if (FAILED(get(key, wire::path_suffix::default_value, default_value))) default_value = middle(min, max);
    range = {low_half(min), low_half(max), low_half(default_value), low_half(inc)};
    return S_OK;
}

HRESULT genicam_propdata_named::GetValue(InterfaceKey key, std::int32_t& value) {
    if (auto* const enumeration = node_as<IEnumeration>(key)) return get_selected_index(*enumeration, value);
    std::int64_t number = 0;
    const HRESULT hr = get(key, wire::path_suffix::value, number);
    value = low_half(number);
    return hr;
}

HRESULT genicam_propdata_named::SetValue(InterfaceKey key, std::int32_t value) {
    if (auto* const enumeration = node_as<IEnumeration>(key)) return select_index(*enumeration, value);
    return set(key, wire::path_suffix::value, static_cast<std::uint64_t>(std::int64_t{value}));
}

HRESULT genicam_propdata_named::GetAbsRange(InterfaceKey key, ZELAdapterHelper::AbsRangeInfo& range) {
    HRESULT hr = get(key, wire::path_suffix::min, range.min);
    if (FAILED(hr)) return hr;
    hr = get(key, wire::path_suffix::max, range.max);
    if (FAILED(hr)) return hr;
    if (FAILED(get(key, wire::path_suffix::default_value, range.default_value))) {
        range.default_value = half_span_of(range);
    }
    return S_OK;
}

HRESULT genicam_propdata_named::GetAbsValue(InterfaceKey key, double& value) {
    value = 0;
    return get(key, wire::path_suffix::value, value);
}

HRESULT genicam_propdata_named::SetAbsValue(InterfaceKey key, double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    return set(key, wire::path_suffix::value, bits);
}

HRESULT genicam_propdata_named::Push(InterfaceKey key) { return set(key, wire::path_suffix::execute, 1); }

bool genicam_propdata_named::offers_entry(IEnumeration& enumeration, GenICam::IEnumEntry& entry) {
    return get_named_bool(filter(),
                          {enumeration.get_name(), "/", entry.get_name(), wire::path_suffix::is_implemented});
}

template <class Number>
HRESULT genicam_propdata_named::get(InterfaceKey key, std::string_view suffix, Number& number) const {
    return get_named_value(filter(), {node_of(key)->get_name(), suffix}, number);
}

HRESULT genicam_propdata_named::set(InterfaceKey key, std::string_view suffix, std::uint64_t value) const {
    return set_named_value(filter(), {node_of(key)->get_name(), suffix}, value);
}

HRESULT genicam_propdata_named::get_flag(InterfaceKey key, std::string_view suffix, bool& flag) const {
    std::uint64_t value = 0;
    const HRESULT hr = get(key, suffix, value);
    if (FAILED(hr)) return hr;
    flag = value != 0;
    return S_OK;
}

// A text that fills the whole buffer has no end and matches nothing.
HRESULT genicam_propdata_named::get_selected_index(IEnumeration& enumeration, std::int32_t& index) {
    const std::vector<enum_entry_text>& offered = refresh_entries(enumeration);
    index = 0;
    char buffer[SELVANE_SELECTED_ENTRY_SIZE] = {};
    const HRESULT hr = get_named_property(
        filter(), {enumeration.get_name(), wire::path_suffix::selected_entry}, buffer, sizeof(buffer));
    if (FAILED(hr)) return hr;
    const std::string_view whole(buffer, sizeof(buffer));
    const std::size_t length = whole.find('\0');
    if (length == std::string_view::npos) return E_FAIL;
    for (std::size_t at = 0; at < offered.size(); ++at) {
        if (offered[at].name != whole.substr(0, length)) continue;
        index = static_cast<std::int32_t>(at);
        return S_OK;
    }
    return E_FAIL;
}

HRESULT genicam_propdata_named::select_index(IEnumeration& enumeration, std::int32_t index) {
    const enum_entry_text* const entry = find_offered_entry(enumeration, index);
    if (entry == nullptr) return E_INVALIDARG;
    const std::string name = entry->name;  // while the driver reads it the list may be loaded anew
    return set_named_property(filter(), {enumeration.get_name(), wire::path_suffix::selected_entry},
                              name.data(), static_cast<DWORD>(name.size()));
}

void make_genicam_propdata_named(ZELAdapterHelper::CZELItemDataBase** result, IUnknown* filter,
                                 const ZELAdapterHelper::ItemRecord&) {
    make_propdata<genicam_propdata_named>(result, filter);
}

}  // namespace genicam_adapter
