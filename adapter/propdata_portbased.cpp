#include "adapter/propdata_portbased.h"

#include <utility>

namespace genicam_adapter {
namespace {

using GenICam::IBoolean;
using GenICam::ICommand;
using GenICam::IEnumeration;
using GenICam::IFloat;
using GenICam::IInteger;
using GenICam::to_hresult;
using GenICam::access_flags::none;

template <class Value>
HRESULT store(const GenICam::result<Value>& from, Value& to) {
    if (from.has_error()) return to_hresult(from.error());
    to = from.value();
    return S_OK;
}

HRESULT store_low_half(const GenICam::result<std::int64_t>& from, std::int32_t& to) {
    std::int64_t value = 0;
    const HRESULT hr = store(from, value);
    if (SUCCEEDED(hr)) to = low_half(value);
    return hr;
}

}  // namespace

genicam_propdata_portbased::genicam_propdata_portbased(platform::com_ptr<IKsPropertySet> filter)
    : genicam_propdata(std::move(filter)) {}

HRESULT genicam_propdata_portbased::IsAvailable(InterfaceKey key, bool& available) {
    available = node_of(key)->is_locked();
    return S_OK;
}

HRESULT genicam_propdata_portbased::GetSwitch(InterfaceKey key, bool& on) {
    auto* const node = node_as<IBoolean>(key);
    return node != nullptr ? store(node->get_val(none), on) : E_NOTIMPL;
}

HRESULT genicam_propdata_portbased::SetSwitch(InterfaceKey key, bool on) {
    auto* const node = node_as<IBoolean>(key);
    return node != nullptr ? to_hresult(node->set_val(on, none)) : E_NOTIMPL;
}

HRESULT genicam_propdata_portbased::GetSwitchDefault(InterfaceKey key, bool& on) {
    auto* const node = node_as<IBoolean>(key);
    return node != nullptr ? store(node->get_default(none), on) : E_NOTIMPL;
}

HRESULT genicam_propdata_portbased::GetRange(InterfaceKey key, ZELAdapterHelper::RangeInfo& range) {
    if (auto* const enumeration = node_as<IEnumeration>(key)) return get_entry_range(*enumeration, range);
    auto* const node = node_as<IInteger>(key);
    if (node == nullptr) return E_NOTIMPL;
    HRESULT hr = store_low_half(node->get_min(none), range.min);
    if (FAILED(hr)) return hr;
    hr = store_low_half(node->get_max(none), range.max);
    if (FAILED(hr)) return hr;
    if (FAILED(store_low_half(node->get_default(none), range.default_value))) {
        range.default_value = half_span(range.min, range.max);
    }
    if (FAILED(store_low_half(node->get_inc(none), range.step))) range.step = 1;
    return S_OK;
}

HRESULT genicam_propdata_portbased::GetValue(InterfaceKey key, std::int32_t& value) {
    if (auto* const enumeration = node_as<IEnumeration>(key)) {
        refresh_entries(*enumeration);
        const auto selected = enumeration->get_selected_entry(none);
        if (selected.has_error()) return to_hresult(selected.error());
        value = low_half(selected.value()->get_value());
        return S_OK;
    }
    auto* const node = node_as<IInteger>(key);
    return node != nullptr ? store_low_half(node->get_val(none), value) : E_NOTIMPL;
}

HRESULT genicam_propdata_portbased::SetValue(InterfaceKey key, std::int32_t value) {
    if (auto* const enumeration = node_as<IEnumeration>(key)) {
        const enum_entry_text* const offered = find_offered_entry(*enumeration, value);
        if (offered == nullptr) return E_INVALIDARG;
        GenICam::IEnumEntry* const entry = enumeration->find_entry(offered->name);
        return to_hresult(enumeration->set_selected_entry(entry, none));
    }
    auto* const node = node_as<IInteger>(key);
    return node != nullptr ? to_hresult(node->set_val(value, none)) : E_NOTIMPL;
}

HRESULT genicam_propdata_portbased::GetAbsRange(InterfaceKey key, ZELAdapterHelper::AbsRangeInfo& range) {
    auto* const node = node_as<IFloat>(key);
    if (node == nullptr) return E_NOTIMPL;
    HRESULT hr = store(node->get_min(none), range.min);
    if (FAILED(hr)) return hr;
    hr = store(node->get_max(none), range.max);
    if (FAILED(hr)) return hr;
    if (FAILED(store(node->get_default(none), range.default_value))) {
        range.default_value = half_span_of(range);
    }
    return S_OK;
}

HRESULT genicam_propdata_portbased::GetAbsValue(InterfaceKey key, double& value) {
    auto* const node = node_as<IFloat>(key);
    return node != nullptr ? store(node->get_val(none), value) : E_NOTIMPL;
}

HRESULT genicam_propdata_portbased::SetAbsValue(InterfaceKey key, double value) {
    auto* const node = node_as<IFloat>(key);
    return node != nullptr ? to_hresult(node->set_val(value, none)) : E_NOTIMPL;
}

HRESULT genicam_propdata_portbased::Push(InterfaceKey key) {
    auto* const node = node_as<ICommand>(key);
    if (node == nullptr) return E_NOTIMPL;
    return node->execute(none) ? E_FAIL : S_OK;
}

bool genicam_propdata_portbased::offers_entry(IEnumeration& enumeration, GenICam::IEnumEntry&) {
    return enumeration.is_implemented();
}

void make_genicam_propdata_portbased(ZELAdapterHelper::CZELItemDataBase** result, IUnknown* filter,
                                     const ZELAdapterHelper::ItemRecord&) {
    make_propdata<genicam_propdata_portbased>(result, filter);
}

}  // namespace genicam_adapter
