#include "apps/inspect/lint/mark_rules.h"

#include "adapter/item_discovery.h"
#include "apps/inspect/feature_reader.h"
#include "platform/text.h"
#include "propui/page_groups.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <unordered_set>
#include <utility>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

using GenICam::ICategory;
using GenICam::INode;
using GenICam::node_type;
using genicam_adapter::item_candidate;

constexpr const char* item_mark = "ZELItemGUID";
constexpr const char* element_mark = "ZELElementGUID";

constexpr node_type kinds_with_control[] = {node_type::boolean, node_type::integer, node_type::command,
                                            node_type::enumeration, node_type::floating};

bool has_control(INode& node) {
    return std::find(std::begin(kinds_with_control), std::end(kinds_with_control), node.get_node_type()) !=
           std::end(kinds_with_control);
}

GUID mark_of(INode& node, const char* mark) { return genicam_adapter::read_extension_guid(&node, mark); }

bool is_marked(INode& node, const char* mark) { return mark_of(node, mark) != platform::null_guid; }

std::vector<item_candidate> find_items(lint_context& context) {
    if (!context.is_loaded()) return {};
    INode* root = context.subject().document()->find_node("Root");
    if (root == nullptr || root->get_node_type() != node_type::category) return {};
    return genicam_adapter::collect_items(root);
}

std::vector<INode*> features_of(const item_candidate& item) {
    return static_cast<ICategory*>(item.category)->get_features();
}

bool shows(ZELPropUI::PageName page, const std::wstring& group) {
    const std::vector<std::wstring> groups = ZELPropUI::GroupsOf(page);
    return std::find(groups.begin(), groups.end(), group) != groups.end();
}

bool is_shown(const std::wstring& group) {
    return std::any_of(std::begin(ZELPropUI::all_pages), std::end(ZELPropUI::all_pages),
                       [&](ZELPropUI::PageName page) { return shows(page, group); });
}

bool share_page(const item_candidate& left, const item_candidate& right) {
    return std::any_of(std::begin(ZELPropUI::all_pages), std::end(ZELPropUI::all_pages),
                       [&](ZELPropUI::PageName page) {
                           return shows(page, left.group_name) && shows(page, right.group_name);
                       });
}

// The mark itself, or the element where it cannot be found.
text_position place_of(const lint_context& context, INode& node, const char* mark) {
    const auto element = context.tree().find(node);
    if (!element) return {};
    const pugi::xml_node xml = context.tree().at(*element).xml;
    const pugi::xml_node extension = xml.child("Extension").child(mark);
    return context.tree().position_of(extension ? extension : xml);
}

template <class Visit>
void for_each_node(lint_context& context, Visit visit) {
    if (context.is_loaded()) context.subject().document()->for_each_node([&](INode* node) { visit(*node); });
}

void check_double_elements(const lint_context& context, const item_candidate& item, finding_list& findings) {
    std::vector<std::pair<GUID, INode*>> known;
    for (INode* feature : features_of(item)) {
        const GUID mark = mark_of(*feature, element_mark);
        if (mark == platform::null_guid || !has_control(*feature)) continue;
        const auto first =
            std::find_if(known.begin(), known.end(), [&](const auto& one) { return one.first == mark; });
        if (first != known.end()) {
            findings.add(place_of(context, *feature, element_mark),
                         fmt::format("{} bears the mark {} of {} in the item {}", feature->get_name(),
                                     platform::narrow(platform::format_guid(mark)), first->second->get_name(),
                                     item.category->get_name()));
        }
        known.emplace_back(mark, feature);
    }
}

}  // namespace

void check_mark_texts(lint_context& context, finding_list& findings) {
    for_each_node(context, [&](INode& node) {
        for (const char* mark : {item_mark, element_mark}) {
            const std::string_view text = node.get_extension(mark);
            if (text.empty() || is_marked(node, mark)) continue;
            findings.add(place_of(context, node, mark),
                         fmt::format("{} of {} is no GUID in braces: {}", mark, node.get_name(), text));
        }
    });
}

void check_mark_groups(lint_context& context, finding_list& findings) {
    for (const item_candidate& item : find_items(context)) {
        if (is_shown(item.group_name)) continue;
        findings.add(place_of(context, *item.category, item_mark),
                     fmt::format("the item {} is listed by {}, and no page shows that group",
                                 item.category->get_name(), platform::narrow(item.group_name)));
    }
}

void check_mark_kinds(lint_context& context, finding_list& findings) {
    for_each_node(context, [&](INode& node) {
        if (!is_marked(node, element_mark) || has_control(node)) return;
        findings.add(place_of(context, node, element_mark),
                     fmt::format("{} is marked as an element, but no page has a control for its kind",
                                 node.get_name()));
    });
}

void check_double_marks(lint_context& context, finding_list& findings) {
    const std::vector<item_candidate> items = find_items(context);
    for (std::size_t at = 0; at < items.size(); ++at) {
        check_double_elements(context, items[at], findings);
        for (std::size_t before = 0; before < at; ++before) {
            if (items[before].item_id != items[at].item_id || !share_page(items[before], items[at])) continue;
            findings.add(place_of(context, *items[at].category, item_mark),
                         fmt::format("{} bears the mark {} of {}", items[at].category->get_name(),
                                     platform::narrow(platform::format_guid(items[at].item_id)),
                                     items[before].category->get_name()));
            break;
        }
    }
}

void check_lost_marks(lint_context& context, finding_list& findings) {
    std::unordered_set<INode*> items;
    std::unordered_set<INode*> listed;
    for (const item_candidate& item : find_items(context)) {
        items.insert(item.category);
        for (INode* feature : features_of(item)) listed.insert(feature);
    }
    for_each_node(context, [&](INode& node) {
        const bool is_category = node.get_node_type() == node_type::category;
        const bool lost_item = is_marked(node, item_mark) && (!is_category || items.count(&node) == 0);
        const bool lost_element =
            is_marked(node, element_mark) && has_control(node) && listed.count(&node) == 0;
        if (lost_item) {
            const char* const what = is_category ? "no way leads from Root to the item {}"
                                                 : "{} is marked as an item, but is no category";
            findings.add(place_of(context, node, item_mark),
                         fmt::format(fmt::runtime(what), node.get_name()));
        }
        if (lost_element) {
            findings.add(place_of(context, node, element_mark),
                         fmt::format("{} is marked as an element, but no item lists it", node.get_name()));
        }
    });
}

void check_empty_items(lint_context& context, finding_list& findings) {
    for (const item_candidate& item : find_items(context)) {
        const std::vector<INode*> features = features_of(item);
        const bool shows_any = std::any_of(features.begin(), features.end(), [](INode* feature) {
            return is_marked(*feature, element_mark) && has_control(*feature);
        });
        if (shows_any) continue;
        findings.add(
            place_of(context, *item.category, item_mark),
            fmt::format("the item {} lists no marked feature with a control", item.category->get_name()));
    }
}

void check_wide_ranges(lint_context& context, finding_list& findings) {
    feature_reader reader(context.guard());
    for_each_node(context, [&](INode& node) {
        if (!is_marked(node, element_mark) || node.get_node_type() != node_type::integer) return;
        const auto fits = [](const std::optional<feature_value>& limit) {
            const auto* number = limit ? std::get_if<std::int64_t>(&*limit) : nullptr;
            return number == nullptr || static_cast<std::int32_t>(*number) == *number;
        };
        const auto minimum = reader.read_limit(node, operation::minimum);
        const auto maximum = reader.read_limit(node, operation::maximum);
        if (fits(minimum) && fits(maximum)) return;
        findings.add(place_of(context, node, element_mark),
                     fmt::format("{} is marked and goes from {} to {}, beyond 32 bits", node.get_name(),
                                 minimum ? value_text(*minimum) : "?", maximum ? value_text(*maximum) : "?"));
    });
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
