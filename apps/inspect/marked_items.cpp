#include "apps/inspect/marked_items.h"

#include "adapter/interface_key.h"

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

bool has_marks(const description& in) {
    bool found = false;
    in.document()->for_each_node([&](GenICam::INode* node) {
        found =
            found || !node->get_extension(item_mark).empty() || !node->get_extension(element_mark).empty();
    });
    return found;
}

}  // namespace selvane_inspect
