#include "adapter/propdata.h"

#include "platform/text.h"

#include <utility>

namespace genicam_adapter {

using GenICam::IEnumeration;
using ZELAdapterHelper::SharedString;

genicam_propdata::genicam_propdata(platform::com_ptr<IKsPropertySet> filter) : filter_(std::move(filter)) {}

bool genicam_propdata::SupportsInterface(InterfaceKey) { return true; }

HRESULT genicam_propdata::Refresh(InterfaceKey key) {
    if (auto* const enumeration = node_as<IEnumeration>(key)) {
        entry_cache_[enumeration].clear();
        refresh_entries(*enumeration);
    }
    return S_OK;
}

HRESULT genicam_propdata::GetAbsUnit(InterfaceKey key, SharedString& unit, std::int32_t& scale) {
    std::string_view text;
    if (auto* const floating = node_as<GenICam::IFloat>(key)) {
        text = floating->get_unit();
    } else if (auto* const integer = node_as<GenICam::IInteger>(key)) {
        text = integer->get_unit();
    } else {
        return E_NOTIMPL;
    }
    unit = SharedString(platform::widen(text));
    scale = ZELAdapterHelper::scale_linear;
    return S_OK;
}

HRESULT genicam_propdata::GetMapStrings(InterfaceKey key, std::vector<SharedString>& strings) {
    auto* const enumeration = node_as<IEnumeration>(key);
    if (enumeration == nullptr) return E_NOTIMPL;
    for (const enum_entry_text& entry : refresh_entries(*enumeration)) {
        strings.emplace_back(platform::widen(entry.display_name));
    }
    return S_OK;
}

bool genicam_propdata::IsDoNotSerialize(InterfaceKey key) {
    return !node_of(key)->get_extension("DoNotSerialize").empty();
}

// Kept only when complete: the driver is asked for each entry, may run messages meanwhile, and so may bring
// the page back in here.
const std::vector<enum_entry_text>& genicam_propdata::refresh_entries(IEnumeration& enumeration) {
    std::vector<enum_entry_text>& offered = entry_cache_[&enumeration];
    if (!offered.empty()) return offered;
    std::vector<enum_entry_text> found;
    for (GenICam::IEnumEntry* entry : enumeration.get_entries()) {
        if (!offers_entry(enumeration, *entry)) continue;
        found.push_back({std::string(entry->get_name()), std::string(entry->get_display_name())});
    }
    offered = std::move(found);
    return offered;
}

HRESULT genicam_propdata::get_entry_range(IEnumeration& enumeration, ZELAdapterHelper::RangeInfo& range) {
    const std::size_t count = refresh_entries(enumeration).size();
    if (count == 0) return E_NOTIMPL;
    range = {0, static_cast<std::int32_t>(count - 1), 0, 1};
    return S_OK;
}

const enum_entry_text* genicam_propdata::find_offered_entry(IEnumeration& enumeration, std::int32_t index) {
    const std::vector<enum_entry_text>& offered = refresh_entries(enumeration);
    if (index < 0 || static_cast<std::size_t>(index) >= offered.size()) return nullptr;
    return &offered[static_cast<std::size_t>(index)];
}

}  // namespace genicam_adapter
