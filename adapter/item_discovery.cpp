#include "adapter/item_discovery.h"

#include "adapter/interface_key.h"
#include "adapter/named_access.h"
#include "platform/text.h"

#include <exception>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace genicam_adapter {
namespace {

using GenICam::INode;
using GenICam::node_type;
using ZELAdapterHelper::ElementRecord;
using ZELAdapterHelper::InterfaceType;

constexpr std::uint32_t described_item_priority = 10;
constexpr std::string_view item_mark = "ZELItemGUID";
constexpr std::string_view element_mark = "ZELElementGUID";

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

bool is_implemented(INode* feature, IKsPropertySet* filter, bool named_access) {
    if (named_access) return get_named_bool(filter, {feature->get_name(), wire::path_suffix::is_implemented});
    return feature->is_implemented();
}

// What a node says of itself, asked for once however often it is listed.
class known_node {
public:
    explicit known_node(INode* node) noexcept : node_(node) {}

    [[nodiscard]] const GUID& id(std::string_view mark) {
        if (!id_) id_ = read_extension_guid(node_, mark);
        return *id_;
    }
    [[nodiscard]] const shared_name& name() {
        if (name_ == nullptr)
            name_ = std::make_shared<const std::wstring>(platform::widen(node_->get_display_name()));
        return name_;
    }
    [[nodiscard]] const std::vector<INode*>& features() {
        if (!features_) {
            auto* const listing = node_as<GenICam::ICategory>(node_);
            features_ = listing != nullptr ? listing->get_features() : std::vector<INode*>();
        }
        return *features_;
    }

private:
    INode* node_;
    std::optional<GUID> id_;
    shared_name name_;
    std::optional<std::vector<INode*>> features_;
};

// A search through the listings of categories, for one of the two marks.
class listing_search {
public:
    explicit listing_search(std::string_view mark) noexcept : mark_(mark) {}

    [[nodiscard]] bool is_exhausted() const noexcept { return entries_ == 0 || finds_ == 0; }
    // Null at the end of the listing.
    [[nodiscard]] INode* take_entry(const std::vector<INode*>& listing, std::size_t& next) noexcept {
        if (next == listing.size()) return nullptr;
        --entries_;
        return listing[next++];
    }
    // Zero for a node without the mark; others count as found.
    [[nodiscard]] GUID take_id(INode* node) {
        const GUID id = know(node).id(mark_);
        if (id != platform::null_guid) --finds_;
        return id;
    }
    [[nodiscard]] known_node& know(INode* node) { return known_.try_emplace(node, node).first->second; }

private:
    std::string_view mark_;
    std::size_t entries_ = most_entries;
    std::size_t finds_ = most_finds;
    std::unordered_map<INode*, known_node> known_;
};

// A category on the way from the root to where the walk stands.
struct open_category {
    INode* category;
    known_node* known;
    std::size_t next = 0;
};

// The way from the root down to where the walk stands is kept here and not on the stack: a description may
// nest as deep as it likes. A category that lists one of those above it would never end; it is not entered
// again.
std::vector<item_candidate> search_items(INode* root, listing_search& search) {
    std::vector<item_candidate> found;
    std::unordered_set<INode*> entered = {root};
    std::vector<open_category> path = {{root, &search.know(root)}};
    while (!path.empty() && !search.is_exhausted()) {
        open_category& current = path.back();
        INode* const feature = search.take_entry(current.known->features(), current.next);
        if (feature == nullptr) {
            entered.erase(current.category);
            path.pop_back();
            continue;
        }
        if (node_as<GenICam::ICategory>(feature) == nullptr) continue;
        const GUID id = search.take_id(feature);
        if (id != platform::null_guid) {
            found.push_back({id, feature, current.known->name()});
        } else if (entered.insert(feature).second) {
            path.push_back({feature, &search.know(feature)});
        }
    }
    return found;
}

std::vector<element_definition> search_elements(INode* category, IKsPropertySet* filter, bool named_access,
                                                listing_search& search) {
    std::vector<element_definition> found;
    try {
        std::size_t next = 0;
        while (!search.is_exhausted()) {
            INode* const feature = search.take_entry(search.know(category).features(), next);
            if (feature == nullptr) break;
            const GUID id = search.take_id(feature);
            if (id == platform::null_guid || !is_implemented(feature, filter, named_access)) continue;
            if (const auto type = interface_type_of(feature->get_node_type()))
                found.push_back({search.know(feature).name(), id, 0, {{key_of(feature), *type}}});
        }
    } catch (const std::exception&) {
        // What was found so far still makes an item.
    }
    return found;
}

ElementRecord record_of(const element_definition& element) {
    ElementRecord record = {};
    record.id = element.element_id;
    record.name = element.name->c_str();
    record.interfaces = element.bindings.data();
    record.interface_count = static_cast<std::uint32_t>(element.bindings.size());
    record.inline_interface = element.bindings.front();
    record.level = element.level;
    return record;
}

}  // namespace

item_definition::item_definition(const item_candidate& candidate, shared_name item_name,
                                 std::vector<element_definition> item_elements)
    : record(),
      name(std::move(item_name)),
      group_name(candidate.group_name),
      elements(std::move(item_elements)) {
    for (const element_definition& element : elements) element_records.push_back(record_of(element));
    record.group = group_name->c_str();
    record.priority = described_item_priority;
    record.id = candidate.item_id;
    record.name = name->c_str();
    record.elements = element_records.data();
    record.element_count = static_cast<std::uint32_t>(element_records.size());
    record.inline_element = element_records.front();
}

GUID read_extension_guid(INode* node, std::string_view key) {
    GUID guid = {};
    const std::string_view text = node->get_extension(key);
    // The braced form is plain ASCII, so that a text of another length needs no widening to be refused.
    if (text.size() != platform::guid_length) return platform::null_guid;
    if (!platform::parse_guid(platform::widen(text), guid)) return platform::null_guid;
    return guid;
}

std::vector<item_candidate> collect_items(INode* category) {
    listing_search search(item_mark);
    return search_items(category, search);
}

std::vector<element_definition> collect_elements(const item_candidate& candidate, IKsPropertySet* filter,
                                                 bool named_access) {
    listing_search search(element_mark);
    return search_elements(candidate.category, filter, named_access, search);
}

void append_definitions(GenICam::IGenICamDoc& document, IKsPropertySet* filter, bool named_access,
                        std::list<item_definition>& definitions) {
    INode* const root = document.find_node("Root");
    if (node_as<GenICam::ICategory>(root) == nullptr) return;
    listing_search search(element_mark);
    for (const item_candidate& candidate : collect_items(root)) {
        std::vector<element_definition> elements =
            search_elements(candidate.category, filter, named_access, search);
        if (elements.empty()) continue;
        definitions.emplace_back(candidate, search.know(candidate.category).name(), std::move(elements));
    }
}

}  // namespace genicam_adapter
