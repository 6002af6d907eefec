#include "propui/item_choice.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <string_view>
#include <tuple>

namespace ZELPropUI {
namespace {

using ZELAdapterHelper::ItemRecord;
using ZELAdapterHelper::RecordSpan;

constexpr std::wstring_view default_group = L"Exposure";

struct GuidOrder {
    bool operator()(const GUID& left, const GUID& right) const noexcept {
        const auto fields = [](const GUID& id) { return std::tie(id.Data1, id.Data2, id.Data3); };
        if (fields(left) != fields(right)) return fields(left) < fields(right);
        return std::memcmp(left.Data4, right.Data4, sizeof left.Data4) < 0;
    }
};

using Rivals = std::vector<const ItemRecord*>;
using RivalsById = std::map<GUID, Rivals, GuidOrder>;

// Larger priorities first, among equal ones the record that came first.
void Collect(RivalsById& items, const RecordSpan<ItemRecord>& records) {
    const auto before = [](const ItemRecord* left, const ItemRecord* right) {
        return left->priority > right->priority;
    };
    for (const ItemRecord& record : records) {
        if (record.name == nullptr) continue;
        Rivals& rivals = items[record.id];
        rivals.insert(std::upper_bound(rivals.begin(), rivals.end(), &record, before), &record);
    }
}

bool IsShown(const ItemRecord& record, const std::vector<std::wstring>* groups) {
    if (groups == nullptr || groups->empty()) return true;
    const std::wstring_view group = record.group != nullptr ? std::wstring_view(record.group) : default_group;
    return std::find(groups->begin(), groups->end(), group) != groups->end();
}

}  // namespace

std::vector<const ItemRecord*> ChooseItems(const PageSources& sources) {
    RivalsById items;
    Collect(items, sources.built_in);
    Collect(items, sources.described);

    std::vector<const ItemRecord*> chosen;
    for (const auto& [id, rivals] : items) {
        const auto shown = [&](const ItemRecord* record) { return IsShown(*record, sources.groups); };
        const auto first = std::find_if(rivals.begin(), rivals.end(), shown);
        if (first != rivals.end()) chosen.push_back(*first);
    }
    return chosen;
}

}  // namespace ZELPropUI
