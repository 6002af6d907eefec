#include "adapter/item_discovery.h"

#include "adapter/interface_key.h"
#include "adapter/named_access.h"
#include "platform/text.h"

#include <exception>
#include <optional>
#include <unordered_set>
#include <utility>

namespace genicam_adapter {
namespace {

using GenICam::INode;
using GenICam::node_type;
using ZELAdapterHelper::ElementRecord;
using ZELAdapterHelper::InterfaceType;

constexpr std::uint32_t described_item_priority = 10;

// Categories that list one another in all orders have more ways through them than anybody can walk.
constexpr std::size_t most_entered_categories = 100'000;

struct type_mapping {
    node_type node;
    InterfaceType shown_as;
};

constexpr type_mapping shown_types[] = {
    {node_type::boolean, InterfaceType::Switch},         {node_type::integer, InterfaceType::Range},
    {node_type::command, InterfaceType::Button},         {node_type::enumeration, InterfaceType::MapStrings},
    {node_type::floating, InterfaceType::AbsoluteValue},
};

std::optional<InterfaceType> interface_type_of(node_type node) {
    for (const type_mapping& mapping : shown_types) {
        if (mapping.node == node) return mapping.shown_as;
    }
    return std::nullopt;
}

std::vector<INode*> features_of(INode* category) {
    auto* const listing = node_as<GenICam::ICategory>(category);
    return listing != nullptr ? listing->get_features() : std::vector<INode*>();
}

std::wstring display_name_of(INode* node) { return platform::widen(node->get_display_name()); }

// A category on the way from the root to where the walk stands.
struct open_category {
    explicit open_category(INode* opened)
        : category(opened), name(display_name_of(opened)), features(features_of(opened)) {}

    INode* category;
    std::wstring name;
    std::vector<INode*> features;
    std::size_t next = 0;
};

bool is_implemented(INode* feature, IKsPropertySet* filter, bool named_access) {
    if (named_access) return get_named_bool(filter, {feature->get_name(), path_suffix::is_implemented});
    return feature->is_implemented();
}

std::optional<element_definition> element_of(INode* feature, IKsPropertySet* filter, bool named_access) {
    const GUID id = read_extension_guid(feature, "ZELElementGUID");
    if (id == platform::null_guid || !is_implemented(feature, filter, named_access)) return std::nullopt;
    const std::optional<InterfaceType> type = interface_type_of(feature->get_node_type());
    if (!type) return std::nullopt;
    return element_definition{display_name_of(feature), id, 0, {{key_of(feature), *type}}};
}

ElementRecord record_of(const element_definition& element) {
    ElementRecord record = {};
    record.id = element.element_id;
    record.name = element.name.c_str();
    record.interfaces = element.bindings.data();
    record.interface_count = static_cast<std::uint32_t>(element.bindings.size());
    record.inline_interface = element.bindings.front();
    record.level = element.level;
    return record;
}

}  // namespace

item_definition::item_definition(const item_candidate& candidate, std::wstring item_name,
                                 std::vector<element_definition> item_elements)
    : record(),
      name(std::move(item_name)),
      group_name(candidate.group_name),
      elements(std::move(item_elements)) {
    for (const element_definition& element : elements) element_records.push_back(record_of(element));
    record.group = group_name.c_str();
    record.priority = described_item_priority;
    record.id = candidate.item_id;
    record.name = name.c_str();
    record.elements = element_records.data();
    record.element_count = static_cast<std::uint32_t>(element_records.size());
    record.inline_element = element_records.front();
}

GUID read_extension_guid(INode* node, std::string_view key) {
    GUID guid = {};
    if (!platform::parse_guid(platform::widen(node->get_extension(key)), guid)) return platform::null_guid;
    return guid;
}

// The way from the root down to where the walk stands is kept here and not on the stack: a description may
// nest as deep as it likes. A category that lists one of those above it would never end; it is not entered
// again.
std::vector<item_candidate> collect_items(INode* category) {
    std::vector<item_candidate> found;
    std::vector<open_category> path;
    std::unordered_set<INode*> entered = {category};
    std::size_t entered_count = 0;
    path.emplace_back(category);
    while (!path.empty()) {
        open_category& current = path.back();
        if (current.next == current.features.size()) {
            entered.erase(current.category);
            path.pop_back();
            continue;
        }
        INode* const feature = current.features[current.next++];
        if (node_as<GenICam::ICategory>(feature) == nullptr) continue;
        const GUID id = read_extension_guid(feature, "ZELItemGUID");
        if (id != platform::null_guid) {
            found.push_back({id, feature, current.name});
        } else if (entered_count < most_entered_categories && entered.insert(feature).second) {
            path.emplace_back(feature);
            ++entered_count;
        }
    }
    return found;
}

std::vector<element_definition> collect_elements(const item_candidate& candidate, IKsPropertySet* filter,
                                                 bool named_access) {
    std::vector<element_definition> found;
    try {
        for (INode* feature : features_of(candidate.category)) {
            if (auto element = element_of(feature, filter, named_access))
                found.push_back(*std::move(element));
        }
    } catch (const std::exception&) {
        // What was found so far still makes an item.
    }
    return found;
}

void append_definitions(GenICam::IGenICamDoc& document, IKsPropertySet* filter, bool named_access,
                        std::list<item_definition>& definitions) {
    INode* const root = document.find_node("Root");
    if (node_as<GenICam::ICategory>(root) == nullptr) return;
    for (const item_candidate& candidate : collect_items(root)) {
        std::vector<element_definition> elements = collect_elements(candidate, filter, named_access);
        if (elements.empty()) continue;
        definitions.emplace_back(candidate, display_name_of(candidate.category), std::move(elements));
    }
}

}  // namespace genicam_adapter
