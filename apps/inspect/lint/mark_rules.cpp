#include "apps/inspect/lint/lint_context.h"

#include "inspection/marked_items.h"
#include "platform/text.h"
#include "propui/page_groups.h"

#include <algorithm>
#include <map>
#include <unordered_set>
#include <utility>

namespace selvane_inspect {
namespace {

using GenICam::ICategory;
using GenICam::INode;
using GenICam::node_type;
using genicam_adapter::item_candidate;

std::vector<ZELPropUI::PageName> pages_of(const std::wstring& group) {
    std::vector<ZELPropUI::PageName> pages;
    for (const ZELPropUI::PageName page : ZELPropUI::all_pages) {
        const std::vector<std::wstring> groups = ZELPropUI::GroupsOf(page);
        if (std::find(groups.begin(), groups.end(), group) != groups.end()) pages.push_back(page);
    }
    return pages;
}

std::string id_text(const GUID& id) { return platform::narrow(platform::format_guid(id)); }

// An item as one category lists it. A description may repeat that as often as it likes; twice is enough to
// tell.
struct listed_item {
    std::string id;
    INode* category;
    genicam_adapter::shared_name group;
    std::vector<ZELPropUI::PageName> pages;  // that show the group
};

std::vector<listed_item> find_listed_items(const lint_context& context) {
    std::vector<listed_item> listed;
    std::map<std::pair<INode*, const std::wstring*>, int> times;
    for (const item_candidate& item : find_items(context.subject())) {
        if (++times[{item.category, item.group_name.get()}] > 2) continue;
        listed.push_back({id_text(item.item_id), item.category, item.group_name, pages_of(*item.group_name)});
    }
    return listed;
}

void check_for_marks(lint_context& context) {
    if (context.is_loaded() && !has_marks(context.subject())) context.add(text_position{}, no_marks);
}

void check_mark_texts(lint_context& context, INode& node) {
    for (const char* mark : {item_mark, element_mark}) {
        const std::string_view text = node.get_extension(mark);
        if (text.empty() || is_marked(node, mark)) continue;
        context.add(mark_element_of(node, mark), "{} of {} is no GUID in braces: {}", mark, node.get_name(),
                    text);
    }
}

void check_mark_groups(lint_context& context) {
    for (const listed_item& item : find_listed_items(context)) {
        if (!item.pages.empty()) continue;
        context.add(mark_element_of(*item.category, item_mark),
                    "the item {} is listed by {}, and no page shows that group", item.category->get_name(),
                    platform::narrow(*item.group));
    }
}

void check_mark_kind(lint_context& context, INode& node) {
    if (!is_marked(node, element_mark) || has_control(node)) return;
    context.add(mark_element_of(node, element_mark),
                "{} is marked as an element, but no page has a control for its kind", node.get_name());
}

void check_empty_items(lint_context& context) {
    for (ICategory* item : categories_of(find_items(context.subject()))) {
        const std::vector<INode*> features = item->get_features();
        const bool shows_any = std::any_of(features.begin(), features.end(),
                                           [](INode* feature) { return is_shown_element(*feature); });
        if (shows_any) continue;
        context.add(mark_element_of(*item, item_mark), "the item {} lists no marked feature with a control",
                    item->get_name());
    }
}

void check_double_elements(lint_context& context, ICategory& item) {
    std::map<std::string, INode*> known;
    for (INode* feature : item.get_features()) {
        if (!is_shown_element(*feature)) continue;
        const std::string id = id_text(mark_of(*feature, element_mark));
        const auto [first, is_new] = known.emplace(id, feature);
        if (is_new) continue;
        context.add(mark_element_of(*feature, element_mark), "{} bears the mark {} of {} in the item {}",
                    feature->get_name(), id, first->second->get_name(), item.get_name());
    }
}

void check_double_items(lint_context& context) {
    const std::vector<listed_item> items = find_listed_items(context);
    std::map<std::pair<ZELPropUI::PageName, std::string>, const listed_item*> first_on_page;
    for (const listed_item& item : items) {
        const listed_item* first = &item;
        for (const ZELPropUI::PageName page : item.pages)
            first = std::min(first, first_on_page.try_emplace({page, item.id}, &item).first->second);
        if (first == &item) continue;
        context.add(mark_element_of(*item.category, item_mark), "{} bears the mark {} of {}",
                    item.category->get_name(), item.id, first->category->get_name());
    }
}

void check_double_marks(lint_context& context) {
    for (ICategory* item : categories_of(find_items(context.subject())))
        check_double_elements(context, *item);
    check_double_items(context);
}

// An item that is lost itself, or whose mark is no GUID, is told of once, and not again for all that it
// lists.
std::unordered_set<INode*> features_of_meant_items(const lint_context& context) {
    std::unordered_set<INode*> listed;
    context.for_each_node([&](INode& node) {
        if (node.get_node_type() != node_type::category || node.get_extension(item_mark).empty()) return;
        for (INode* feature : static_cast<ICategory&>(node).get_features()) listed.insert(feature);
    });
    return listed;
}

void check_lost_marks(lint_context& context) {
    const std::vector<ICategory*> categories = categories_of(find_items(context.subject()));
    const std::unordered_set<INode*> items(categories.begin(), categories.end());
    const std::unordered_set<INode*> listed = features_of_meant_items(context);
    context.for_each_node([&](INode& node) {
        const pugi::xml_node mark = mark_element_of(node, item_mark);
        if (is_marked(node, item_mark) && node.get_node_type() != node_type::category) {
            context.add(mark, "{} is marked as an item, but is no category", node.get_name());
        } else if (is_marked(node, item_mark) && items.count(&node) == 0) {
            context.add(mark, "no way leads from Root to the item {}", node.get_name());
        }
        if (is_shown_element(node) && listed.count(&node) == 0) {
            context.add(mark_element_of(node, element_mark),
                        "{} is marked as an element, but no item lists it", node.get_name());
        }
    });
}

constexpr lint_rule mark_table[] = {
    {"no-marks", severity::note, "Only what a description marks reaches a page.", no_marks_remedy,
     check_for_marks},
    {"mark-guid", severity::warning, "A mark that is no GUID in braces counts as none.",
     "Write it as {xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}.", check_nodes<check_mark_texts>},
    {"mark-group", severity::warning, "Pages show items of their own groups alone, by exact name.",
     "List the item in a category whose display name is a group of a page: Exposure, Image, WDR, Special, "
     "Partial Scan, Partial scan, Lens or Color.",
     check_mark_groups},
    {"mark-kind", severity::warning,
     "There are controls for integers, floats, booleans, enumerations and commands.",
     "Mark a feature of such a kind.", check_nodes<check_mark_kind>},
    {"mark-empty", severity::warning, "An item without an element leaves no trace on any page.",
     "Mark a feature that the item lists, of a kind that has a control.", check_empty_items},
    {"mark-twice", severity::warning,
     "A page shows one item of an id, and puts one element of an id on the head row.",
     "Give each its own id.", check_double_marks},
    {"mark-lost", severity::warning,
     "Only items on the way from Root and the features that they list reach a page.",
     "List the item in a category below Root, and the feature in the item.", check_lost_marks},
};

}  // namespace

gsl::span<const lint_rule> mark_rules() noexcept { return mark_table; }

}  // namespace selvane_inspect
