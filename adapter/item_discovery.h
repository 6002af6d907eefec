#pragma once

#include "genicam/genicam_doc.h"
#include "items/item_contract.h"
#include "platform/com.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace genicam_adapter {

/// A display name. Each is kept once for all that bear it: a description may list a node with a long name in
/// as many places as it likes.
using shared_name = std::shared_ptr<const std::wstring>;

/// A category that a description marks as an item.
struct item_candidate {
    GUID item_id;
    GenICam::INode* category;
    shared_name group_name;  ///< display name of the category that lists it
};

/// The node of a feature as key, and what a page can do with it.
using interface_binding = ZELAdapterHelper::InterfaceEntry;

/// A feature that a description marks as an element of an item.
struct element_definition {
    shared_name name;
    GUID element_id;
    std::int32_t level;
    std::vector<interface_binding> bindings;
};

/// One row of the item table and what it points into; so it stays where it was made.
struct item_definition {
    item_definition(const item_candidate& candidate, shared_name item_name,
                    std::vector<element_definition> item_elements);
    item_definition(const item_definition&) = delete;
    item_definition& operator=(const item_definition&) = delete;
    ~item_definition() = default;

    ZELAdapterHelper::ItemRecord record;  ///< its factory is null
    shared_name name;
    shared_name group_name;
    std::vector<element_definition> elements;
    std::vector<ZELAdapterHelper::ElementRecord> element_records;
};

// A description that is small but lists its categories again and again unfolds into more than a host can
// hold. After so many entries of categories a search looks no further, and after so many finds it takes no
// more; what was found stays.
constexpr std::size_t most_entries = 1'000'000;
constexpr std::size_t most_finds = 100'000;

/// The GUID in one child of a node's `Extension`; zero where there is none or its text is not a braced GUID.
[[nodiscard]] GUID read_extension_guid(GenICam::INode* node, std::string_view key);

/// The marked categories below a category, in document order, each category's before those of the next. Looks
/// into unmarked categories, but not into one inside itself.
[[nodiscard]] std::vector<item_candidate> collect_items(GenICam::INode* category);

/// The marked features of an item that are implemented and of a kind that pages can show. Whether one is
/// implemented the driver tells in named access, else the node. Whatever throws on the way ends the list.
[[nodiscard]] std::vector<element_definition> collect_elements(const item_candidate& candidate,
                                                               IKsPropertySet* filter, bool named_access);

/// The items below the node "Root" of one document, without those that have no elements. The bounds hold for
/// the items of a document, and once more for the elements of all of them.
void append_definitions(GenICam::IGenICamDoc& document, IKsPropertySet* filter, bool named_access,
                        std::list<item_definition>& definitions);

}  // namespace genicam_adapter
