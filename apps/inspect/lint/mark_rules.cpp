#include "apps/inspect/lint/rules.h"

#include "apps/inspect/feature_reader.h"
#include "apps/inspect/lint/marks.h"
#include "apps/inspect/marked_items.h"
#include "platform/text.h"
#include "propui/page_groups.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <map>
#include <unordered_set>
#include <utility>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

using GenICam::INode;
using GenICam::node_type;
using genicam_adapter::item_candidate;

constexpr node_type kinds_with_control[] = {node_type::boolean, node_type::integer, node_type::command,
                                            node_type::enumeration, node_type::floating};

bool has_control(INode& node) {
    return std::find(std::begin(kinds_with_control), std::end(kinds_with_control), node.get_node_type()) !=
           std::end(kinds_with_control);
}

// The pages that show a group, a bit for each.
unsigned pages_of(const std::wstring& group) {
    unsigned pages = 0;
    for (const ZELPropUI::PageName page : ZELPropUI::all_pages) {
        const std::vector<std::wstring> groups = ZELPropUI::GroupsOf(page);
        if (std::find(groups.begin(), groups.end(), group) != groups.end())
            pages |= 1U << static_cast<unsigned>(page);
    }
    return pages;
}

// An item as one category lists it. A description may repeat that as often as it likes; twice is enough to
// tell.
struct listed_item {
    GUID id;
    INode* category;
    genicam_adapter::shared_name group;
    unsigned pages;
};

std::vector<listed_item> find_listed_items(const lint_context& context) {
    std::vector<listed_item> listed;
    std::map<std::pair<INode*, const std::wstring*>, int> times;
    for (const item_candidate& item : find_items(context.subject())) {
        if (++times[{item.category, item.group_name.get()}] > 2) continue;
        listed.push_back({item.item_id, item.category, item.group_name, pages_of(*item.group_name)});
    }
    return listed;
}

// GUIDs in some order.
struct guid_order {
    bool operator()(const GUID& left, const GUID& right) const noexcept {
        return std::memcmp(&left, &right, sizeof(GUID)) < 0;
    }
};

template <class Visit>
void for_each_node(lint_context& context, Visit visit) {
    if (context.is_loaded()) context.subject().document()->for_each_node([&](INode* node) { visit(*node); });
}

void check_double_elements(const lint_context& context, GenICam::ICategory& item, finding_list& findings) {
    std::map<GUID, INode*, guid_order> known;
    for (INode* feature : item.get_features()) {
        const GUID mark = mark_of(*feature, element_mark);
        if (mark == platform::null_guid || !has_control(*feature)) continue;
        const auto [first, is_new] = known.emplace(mark, feature);
        if (is_new) continue;
        findings.add(position_of_mark(context, *feature),
                     fmt::format("{} bears the mark {} of {} in the item {}", feature->get_name(),
                                 platform::narrow(platform::format_guid(mark)), first->second->get_name(),
                                 item.get_name()));
    }
}

void check_double_items(const lint_context& context, finding_list& findings) {
    const std::vector<listed_item> items = find_listed_items(context);
    std::map<GUID, std::array<const listed_item*, std::size(ZELPropUI::all_pages)>, guid_order> first_on_page;
    for (const listed_item& item : items) {
        auto& first = first_on_page[item.id];
        const listed_item* before = nullptr;
        for (std::size_t page = 0; page < first.size(); ++page) {
            if ((item.pages >> page & 1U) == 0) continue;
            if (first[page] == nullptr) first[page] = &item;
            if (first[page] != &item && (before == nullptr || first[page] < before)) before = first[page];
        }
        if (before == nullptr) continue;
        findings.add(
            position_of_mark(context, *item.category, item_mark),
            fmt::format("{} bears the mark {} of {}", item.category->get_name(),
                        platform::narrow(platform::format_guid(item.id)), before->category->get_name()));
    }
}

// An item that is lost itself, or whose mark is no GUID, is told of once, and not again for all that it
// lists.
std::unordered_set<INode*> features_of_meant_items(lint_context& context) {
    std::unordered_set<INode*> listed;
    for_each_node(context, [&](INode& node) {
        if (node.get_node_type() != node_type::category || node.get_extension(item_mark).empty()) return;
        for (INode* feature : static_cast<GenICam::ICategory&>(node).get_features()) listed.insert(feature);
    });
    return listed;
}

}  // namespace

void check_for_marks(lint_context& context, finding_list& findings) {
    if (context.is_loaded() && !has_marks(context.subject())) findings.add({}, no_marks);
}

void check_mark_texts(lint_context& context, finding_list& findings) {
    for_each_node(context, [&](INode& node) {
        for (const char* mark : {item_mark, element_mark}) {
            const std::string_view text = node.get_extension(mark);
            if (text.empty() || is_marked(node, mark)) continue;
            findings.add(position_of_mark(context, node, mark),
                         fmt::format("{} of {} is no GUID in braces: {}", mark, node.get_name(), text));
        }
    });
}

void check_mark_groups(lint_context& context, finding_list& findings) {
    for (const listed_item& item : find_listed_items(context)) {
        if (item.pages != 0) continue;
        findings.add(position_of_mark(context, *item.category, item_mark),
                     fmt::format("the item {} is listed by {}, and no page shows that group",
                                 item.category->get_name(), platform::narrow(*item.group)));
    }
}

void check_mark_kinds(lint_context& context, finding_list& findings) {
    for_each_node(context, [&](INode& node) {
        if (!is_marked(node, element_mark) || has_control(node)) return;
        findings.add(position_of_mark(context, node),
                     fmt::format("{} is marked as an element, but no page has a control for its kind",
                                 node.get_name()));
    });
}

void check_double_marks(lint_context& context, finding_list& findings) {
    for (GenICam::ICategory* item : categories_of(find_items(context.subject())))
        check_double_elements(context, *item, findings);
    check_double_items(context, findings);
}

void check_lost_marks(lint_context& context, finding_list& findings) {
    std::unordered_set<INode*> items;
    for (GenICam::ICategory* item : categories_of(find_items(context.subject()))) items.insert(item);
    const std::unordered_set<INode*> listed = features_of_meant_items(context);
    for_each_node(context, [&](INode& node) {
        const bool is_category = node.get_node_type() == node_type::category;
        const bool lost_item = is_marked(node, item_mark) && (!is_category || items.count(&node) == 0);
        const bool lost_element =
            is_marked(node, element_mark) && has_control(node) && listed.count(&node) == 0;
        if (lost_item) {
            const char* const what = is_category ? "no way leads from Root to the item {}"
                                                 : "{} is marked as an item, but is no category";
            findings.add(position_of_mark(context, node, item_mark),
                         fmt::format(fmt::runtime(what), node.get_name()));
        }
        if (lost_element) {
            findings.add(position_of_mark(context, node),
                         fmt::format("{} is marked as an element, but no item lists it", node.get_name()));
        }
    });
}

void check_empty_items(lint_context& context, finding_list& findings) {
    for (GenICam::ICategory* item : categories_of(find_items(context.subject()))) {
        const std::vector<INode*> features = item->get_features();
        const bool shows_any = std::any_of(features.begin(), features.end(), [](INode* feature) {
            return is_marked(*feature, element_mark) && has_control(*feature);
        });
        if (shows_any) continue;
        findings.add(position_of_mark(context, *item, item_mark),
                     fmt::format("the item {} lists no marked feature with a control", item->get_name()));
    }
}

void check_marks_without_lock(lint_context& context, finding_list& findings) {
    for_each_node(context, [&](INode& node) {
        const auto element = context.tree().find(node);
        if (!element || !is_marked(node, element_mark) || !has_control(node)) return;
        if (*context.tree().at(*element).xml.child_value("pIsLocked") != 0) return;
        findings.add(context.position_of(*element),
                     fmt::format("{} is marked and has no pIsLocked", node.get_name()));
    });
}

// One link may lock all that there is.
void check_grey_marks(lint_context& context, finding_list& findings) {
    feature_reader reader(context.guard());
    for_each_marked_element(context, [&](INode& node) {
        const auto element = context.tree().find(node);
        if (!element || !has_control(node)) return;
        const pugi::xml_node link = context.tree().at(*element).xml.child("pIsLocked");
        if (*link.child_value() == 0) return;
        const answer<bool> enabled = reader.read_flag(node, operation::locked);
        if (enabled.value.value_or(false)) return;
        findings.add_habit(context.tree().position_of(link),
                           fmt::format("a control is grey over these registers: its pIsLocked {} {}",
                                       link.child_value(), enabled.value ? "reads 0" : "cannot be read"));
    });
}

void check_entry_numbers(lint_context& context, finding_list& findings) {
    for_each_node(context, [&](INode& node) {
        if (!is_marked(node, element_mark) || node.get_node_type() != node_type::enumeration) return;
        const auto entries = static_cast<GenICam::IEnumeration&>(node).get_entries();
        const bool in_order =
            std::all_of(entries.begin(), entries.end(), [](const GenICam::IEnumEntry* entry) {
                return entry->get_value() == static_cast<std::int64_t>(entry->get_index());
            });
        const auto element = context.tree().find(node);
        if (in_order || !element) return;
        findings.add(context.position_of(*element),
                     fmt::format("{} is marked, and its entries are not numbered from 0 without gaps",
                                 node.get_name()));
    });
}

}  // namespace selvane_inspect
