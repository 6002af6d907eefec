#include "inspection/marked_items.h"

#include "adapter/interface_key.h"
#include "genicam/document/node_facts.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace selvane_inspect {

using genicam_adapter::item_candidate;

std::vector<item_candidate> find_items(const description& in) {
    if (in.document() == nullptr) return {};
    GenICam::INode* const root = in.document()->find_node("Root");
    if (genicam_adapter::node_as<GenICam::ICategory>(root) == nullptr) return {};
    return genicam_adapter::collect_items(root);
}

std::vector<GenICam::ICategory*> categories_of(const std::vector<item_candidate>& items) {
    std::vector<GenICam::ICategory*> categories;
    std::unordered_set<GenICam::INode*> known;
    for (const item_candidate& item : items) {
        if (known.insert(item.category).second)
            categories.push_back(static_cast<GenICam::ICategory*>(item.category));
    }
    return categories;
}

GUID mark_of(GenICam::INode& node, const char* mark) {
    return genicam_adapter::read_extension_guid(&node, mark);
}

bool is_marked(GenICam::INode& node, const char* mark) { return mark_of(node, mark) != platform::null_guid; }

pugi::xml_node mark_element_of(GenICam::INode& node, const char* mark) {
    const pugi::xml_node element = GenICam::element_of(node);
    const pugi::xml_node stated = element.child("Extension").child(mark);
    return stated ? stated : element;
}

bool has_control(GenICam::INode& node) {
    using GenICam::node_type;
    constexpr node_type kinds[] = {node_type::boolean, node_type::integer, node_type::command,
                                   node_type::enumeration, node_type::floating};
    return std::find(std::begin(kinds), std::end(kinds), node.get_node_type()) != std::end(kinds);
}

bool is_shown_element(GenICam::INode& node) { return is_marked(node, element_mark) && has_control(node); }

bool has_marks(const description& in) {
    bool found = false;
    in.document()->for_each_node([&](GenICam::INode* node) {
        found =
            found || !node->get_extension(item_mark).empty() || !node->get_extension(element_mark).empty();
    });
    return found;
}

}  // namespace selvane_inspect
