#pragma once

#include "adapter/item_discovery.h"
#include "inspection/description.h"

#include <vector>

namespace selvane_inspect {

constexpr const char* item_mark = "ZELItemGUID";
constexpr const char* element_mark = "ZELElementGUID";

/// The items that the pages find, in their order; none without a Root that is a category.
[[nodiscard]] std::vector<genicam_adapter::item_candidate> find_items(const description& in);

/// The categories of items, each once however often it is listed.
[[nodiscard]] std::vector<GenICam::ICategory*> categories_of(
    const std::vector<genicam_adapter::item_candidate>& items);

/// The id that a mark gives a node; zero for none.
[[nodiscard]] GUID mark_of(GenICam::INode& node, const char* mark);
[[nodiscard]] bool is_marked(GenICam::INode& node, const char* mark);
/// Where the mark stands; the element of the node where there is none.
[[nodiscard]] pugi::xml_node mark_element_of(GenICam::INode& node, const char* mark);

/// Whether pages have a control for features of that kind.
[[nodiscard]] bool has_control(GenICam::INode& node);
/// Whether the feature is marked as an element and has a control.
[[nodiscard]] bool is_shown_element(GenICam::INode& node);

/// Whether anything of a loaded description bears the mark of an item or element, be it misspelt.
[[nodiscard]] bool has_marks(const description& in);

/// What is said of a description without marks, and what to do.
constexpr const char* no_marks = "nothing is marked for the pages";
constexpr const char* no_marks_remedy =
    "Begin with an item: a category below Root with a ZELItemGUID, which lists features with a "
    "ZELElementGUID.";

}  // namespace selvane_inspect
