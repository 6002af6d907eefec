#include "inspection/pages/page_hazards.h"

#include "inspection/evaluation_guard.h"
#include "inspection/marked_items.h"

namespace selvane_inspect {
namespace {

// What a page asks of a feature when it is laid out and opened.
constexpr operation asked_by_pages[] = {operation::implemented, operation::available,     operation::locked,
                                        operation::value,       operation::minimum,       operation::maximum,
                                        operation::increment,   operation::default_value, operation::unit};

std::optional<std::string> judge(evaluation_guard& guard, GenICam::INode& node) {
    for (const operation asked : asked_by_pages) {
        const hazard* found = guard.find(node, asked);
        if (found == nullptr) continue;
        return "the pages would not survive " + std::string(node.get_name()) + ": " + guard.describe(*found);
    }
    return std::nullopt;
}

std::optional<std::string> judge_feature(evaluation_guard& guard, GenICam::INode& feature) {
    auto found = judge(guard, feature);
    if (found || feature.get_node_type() != GenICam::node_type::enumeration) return found;
    for (GenICam::IEnumEntry* entry : static_cast<GenICam::IEnumeration&>(feature).get_entries()) {
        if (auto in_entry = judge(guard, *entry)) return in_entry;
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> find_page_hazard(description& in) {
    evaluation_guard guard(in);
    for (GenICam::ICategory* item : categories_of(find_items(in))) {
        for (GenICam::INode* feature : item->get_features()) {
            if (!is_marked(*feature, element_mark)) continue;
            if (auto found = judge_feature(guard, *feature)) return found;
        }
    }
    return std::nullopt;
}

}  // namespace selvane_inspect
