#include "apps/inspect/lint/lint_context.h"

#include "genicam/document/node_facts.h"
#include "inspection/feature_reader.h"
#include "inspection/marked_items.h"
#include "inspection/pages/page_hazards.h"
#include "inspection/pages/page_preview.h"
#include "platform/text.h"
#include "propui/number_text.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <unordered_map>

namespace selvane_inspect {
namespace {

using GenICam::INode;
using GenICam::node_type;

/// A look at every feature that is marked as an element.
template <void (*look_at)(lint_context&, INode&)>
void check_marked(lint_context& context) {
    context.for_each_node([&](INode& node) {
        if (is_marked(node, element_mark)) look_at(context, node);
    });
}

using integer_limit = std::optional<std::int64_t>;

// Of an integer; not set where it has no such limit.
integer_limit read_limit(lint_context& context, INode& node, operation limit) {
    const std::optional<feature_value> stated = feature_reader(context.guard()).read_limit(node, limit);
    return stated ? integer_limit(std::get<std::int64_t>(*stated)) : std::nullopt;
}

bool fits(std::int64_t number) { return static_cast<std::int32_t>(number) == number; }

void check_wide_range(lint_context& context, INode& node) {
    if (node.get_node_type() != node_type::integer) return;
    const integer_limit low = read_limit(context, node, operation::minimum);
    const integer_limit high = read_limit(context, node, operation::maximum);
    if (fits(low.value_or(0)) && fits(high.value_or(0))) return;
    const auto text = [](const integer_limit& limit) { return limit ? std::to_string(*limit) : "?"; };
    context.add(mark_element_of(node, element_mark), "{} is marked and goes from {} to {}, beyond 32 bits",
                node.get_name(), text(low), text(high));
}

void check_slider_steps(lint_context& context, INode& node) {
    constexpr std::int64_t longest_distance = std::numeric_limits<std::int32_t>::max();
    constexpr std::int64_t most_positions = std::numeric_limits<std::int16_t>::max();
    if (node.get_node_type() != node_type::integer) return;
    const integer_limit low = read_limit(context, node, operation::minimum);
    const integer_limit high = read_limit(context, node, operation::maximum);
    if (!low || !high || !fits(*low) || !fits(*high)) return;
    const integer_limit step = read_limit(context, node, operation::increment);
    const std::int64_t distance = *high - *low;
    const std::int64_t steps = distance / std::max(step.value_or(1), std::int64_t{1});
    const pugi::xml_node mark = mark_element_of(node, element_mark);
    if (distance > longest_distance) {
        context.add(mark, "{} is marked and goes from {} to {}, a distance beyond 32 bits", node.get_name(),
                    *low, *high);
    } else if (steps > most_positions) {
        context.add(mark, "{} is marked and has {} steps, more than {}", node.get_name(), steps,
                    most_positions);
    }
}

// The limits that say something, or 0 where none does.
std::vector<double> telling_limits(feature_reader& reader, INode& node) {
    std::vector<double> limits;
    for (const operation end : {operation::minimum, operation::maximum}) {
        const std::optional<feature_value> limit = reader.read_limit(node, end);
        if (!limit || is_end_of_all(*limit)) continue;
        if (const auto* number = std::get_if<double>(&*limit)) limits.push_back(*number);
    }
    if (limits.empty()) limits.push_back(0);
    return limits;
}

void check_room_for_unit(lint_context& context, INode& node) {
    if (node.get_node_type() != node_type::floating) return;
    feature_reader reader(context.guard());
    const std::string unit = reader.read_unit(node);
    if (unit.empty()) return;
    for (const double limit : telling_limits(reader, node)) {
        if (ZELPropUI::HasRoomForUnit(limit, platform::widen(unit))) continue;
        context.add(mark_element_of(node, element_mark),
                    "{} is marked, and its edit has no room for {} behind {:.{}f}", node.get_name(), unit,
                    limit, ZELPropUI::shown_decimals);
        return;
    }
}

// One that lies beyond the edge, or else the first.
INode* feature_of(const lint_context& context, const drawn_row& row) {
    const drawn_control* found = nullptr;
    for (const drawn_control* control : row) {
        if (control->feature.empty()) continue;
        if (found == nullptr || (is_beyond_edge(*control) && !is_beyond_edge(*found))) found = control;
    }
    return found != nullptr ? context.subject().document()->find_node(found->feature) : nullptr;
}

// The first item of each name.
using items_by_name = std::unordered_map<std::string_view, INode*>;

// A row that holds nothing but the name of its item tells no feature.
void tell_row(lint_context& context, const drawn_page& page, const drawn_row& row,
              const items_by_name& items) {
    INode* const feature = feature_of(context, row);
    const auto item = items.find(row.front()->text);
    if (feature == nullptr && item == items.end()) return;
    INode& told = feature != nullptr ? *feature : *item->second;
    context.add(mark_element_of(told, feature != nullptr ? element_mark : item_mark),
                "{} lies beyond the edge of the page {}", told.get_name(), TitleOf(page.name));
}

void check_page_edges(lint_context& context) {
    description& subject = context.subject();
    items_by_name items;
    for (INode* item : categories_of(find_items(subject))) items.emplace(item->get_display_name(), item);
    if (items.empty() || find_page_hazard(subject)) return;
    const auto is_beyond = [](const drawn_control* control) { return is_beyond_edge(*control); };
    for (const drawn_page& page : preview_pages(subject, access_path::registers)) {
        for (const drawn_row& row : rows_of(page)) {
            if (std::any_of(row.begin(), row.end(), is_beyond)) tell_row(context, page, row, items);
        }
    }
}

void check_lock(lint_context& context, INode& node) {
    const pugi::xml_node element = GenICam::element_of(node);
    if (!has_control(node) || *element.child_value("pIsLocked") != 0) return;
    context.add(element, "{} is marked and has no pIsLocked", node.get_name());
}

// One link may lock all that there is.
void check_grey_mark(lint_context& context, INode& node) {
    const pugi::xml_node link = GenICam::element_of(node).child("pIsLocked");
    if (!has_control(node) || *link.child_value() == 0) return;
    const answer<bool> enabled = feature_reader(context.guard()).read_flag(node, operation::locked);
    if (enabled.value.value_or(false)) return;
    context.add_habit(link, "a control is grey over these registers: its pIsLocked {} {}", link.child_value(),
                      enabled.value ? "reads 0" : "cannot be read");
}

void check_entry_numbers(lint_context& context, INode& node) {
    if (node.get_node_type() != node_type::enumeration) return;
    const auto entries = static_cast<GenICam::IEnumeration&>(node).get_entries();
    const bool in_order = std::all_of(entries.begin(), entries.end(), [](const GenICam::IEnumEntry* entry) {
        return entry->get_value() == static_cast<std::int64_t>(entry->get_index());
    });
    if (in_order) return;
    context.add(GenICam::element_of(node),
                "{} is marked, and its entries are not numbered from 0 without gaps", node.get_name());
}

constexpr lint_rule page_table[] = {
    {"mark-range", severity::warning,
     "Pages keep the low 32 bits of integers and of their limits: the slider has another range or none.",
     "State a Min and a Max that fit into 32 bits with a sign.", check_marked<check_wide_range>},
    {"mark-steps", severity::warning,
     "A slider and a spin button are told their ends in 16 bits: beyond, an arrow writes a value far from "
     "the one before.",
     "State a greater Inc, or a narrower Min and Max.", check_marked<check_slider_steps>},
    {"mark-unit", severity::warning,
     "An edit shows 19 characters of a number with three decimals and its unit; where both do not fit, the "
     "unit is left out.",
     "State a shorter Unit, or one in which the limits are smaller numbers.",
     check_marked<check_room_for_unit>},
    {"mark-edge", severity::warning,
     "A page does not scroll: nobody sees or reaches what lies beyond its edge.",
     "List the feature on another page, or give it a shorter DisplayName or Unit; 13 rows fit on a page.",
     check_page_edges},
    {"mark-lock", severity::note,
     "Pages take pIsLocked for \"may be changed now\": without the link, a control over registers is always "
     "grey.",
     "Give it a pIsLocked that reads non-zero while the feature may be changed.", check_marked<check_lock>},
    {"mark-grey", severity::note,
     "Pages take a pIsLocked that reads 0 for \"may not be changed\", the reverse of what other programs do.",
     "Where the link means \"locked\", let pIsLocked lead to an IntSwissKnife with the formula X=0 over it; "
     "where it does not, look over registers that a camera has (give them with --memory or --register).",
     check_marked<check_grey_mark>},
    {"mark-entries", severity::warning,
     "Over registers a page reads an enumeration by the values of its entries and writes it by their places: "
     "it shows another entry than the camera has.",
     "Number the entries from 0 without gaps; where the camera has other numbers, put an IntConverter "
     "between the enumeration and its register that turns places into them.",
     check_marked<check_entry_numbers>},
};

}  // namespace

gsl::span<const lint_rule> page_rules() noexcept { return page_table; }

}  // namespace selvane_inspect
