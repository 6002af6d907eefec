#include "apps/inspect/lint/rules.h"

#include "apps/inspect/lint/marks.h"
#include "apps/inspect/marked_items.h"
#include "apps/inspect/pages/page_hazards.h"
#include "apps/inspect/pages/page_preview.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

// The first item of each name.
using items_by_name = std::unordered_map<std::string_view, GenICam::INode*>;

items_by_name named_items(const std::vector<genicam_adapter::item_candidate>& items) {
    items_by_name named;
    for (GenICam::ICategory* item : categories_of(items)) named.emplace(item->get_display_name(), item);
    return named;
}

// A row that holds nothing but the name of its item tells no feature.
GenICam::INode* item_of_label(const items_by_name& items, const drawn_row& row) {
    const auto found = items.find(row.front()->text);
    return found != items.end() ? found->second : nullptr;
}

GenICam::INode* feature_of(const lint_context& context, const drawn_row& row) {
    const drawn_control* first = nullptr;
    for (const drawn_control* control : row) {
        if (control->feature.empty()) continue;
        if (first == nullptr) first = control;
        if (!is_beyond_edge(*control)) continue;
        first = control;
        break;
    }
    return first != nullptr ? context.subject().document()->find_node(first->feature) : nullptr;
}

bool lies_beyond_edge(const drawn_row& row) {
    return std::any_of(row.begin(), row.end(),
                       [](const drawn_control* control) { return is_beyond_edge(*control); });
}

void tell_row(const lint_context& context, const drawn_page& page, const drawn_row& row,
              const items_by_name& items, finding_list& findings) {
    GenICam::INode* const feature = feature_of(context, row);
    GenICam::INode* const told = feature != nullptr ? feature : item_of_label(items, row);
    if (told == nullptr) return;
    findings.add(position_of_mark(context, *told, feature != nullptr ? element_mark : item_mark),
                 fmt::format("{} lies beyond the edge of the page {}", told->get_name(), TitleOf(page.name)));
}

}  // namespace

void check_page_edges(lint_context& context, finding_list& findings) {
    description& subject = context.subject();
    if (!context.is_loaded()) return;
    const items_by_name items = named_items(find_items(subject));
    if (items.empty() || find_page_hazard(subject)) return;
    for (const drawn_page& page : preview_pages(subject, access_path::registers)) {
        for (const drawn_row& row : rows_of(page)) {
            if (lies_beyond_edge(row)) tell_row(context, page, row, items, findings);
        }
    }
}

}  // namespace selvane_inspect
