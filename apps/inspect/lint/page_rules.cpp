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
#include <functional>
#include <limits>
#include <optional>
#include <unordered_map>

namespace selvane_inspect {
namespace {

using GenICam::INode;
using GenICam::node_type;

void for_each_marked(const lint_context& context, const std::function<void(INode&)>& visit) {
    context.for_each_node([&](INode& node) {
        if (is_marked(node, element_mark)) visit(node);
    });
}

/// The integer range of a marked feature, where it has one.
struct marked_range {
    INode& node;
    std::optional<feature_value> minimum;
    std::optional<feature_value> maximum;
    std::optional<feature_value> increment;
};

void for_each_marked_range(lint_context& context, const std::function<void(const marked_range&)>& visit) {
    feature_reader reader(context.guard());
    for_each_marked(context, [&](INode& node) {
        if (node.get_node_type() != node_type::integer) return;
        visit({node, reader.read_limit(node, operation::minimum), reader.read_limit(node, operation::maximum),
               reader.read_limit(node, operation::increment)});
    });
}

const std::int64_t* integer_of(const std::optional<feature_value>& limit) {
    return limit ? std::get_if<std::int64_t>(&*limit) : nullptr;
}

bool fits(const std::optional<feature_value>& limit) {
    const std::int64_t* number = integer_of(limit);
    return number == nullptr || static_cast<std::int32_t>(*number) == *number;
}

void check_wide_ranges(lint_context& context) {
    for_each_marked_range(context, [&](const marked_range& range) {
        if (fits(range.minimum) && fits(range.maximum)) return;
        context.add(mark_element_of(range.node, element_mark),
                    "{} is marked and goes from {} to {}, beyond 32 bits", range.node.get_name(),
                    range.minimum ? value_text(*range.minimum) : "?",
                    range.maximum ? value_text(*range.maximum) : "?");
    });
}

void check_slider_steps(lint_context& context) {
    constexpr std::int64_t longest_distance = std::numeric_limits<std::int32_t>::max();
    constexpr std::int64_t most_positions = std::numeric_limits<std::int16_t>::max();
    for_each_marked_range(context, [&](const marked_range& range) {
        const std::int64_t* const low = integer_of(range.minimum);
        const std::int64_t* const high = integer_of(range.maximum);
        if (low == nullptr || high == nullptr || !fits(range.minimum) || !fits(range.maximum)) return;
        const std::int64_t* const step = integer_of(range.increment);
        const std::int64_t distance = *high - *low;
        const std::int64_t steps = distance / (step != nullptr && *step > 0 ? *step : 1);
        const pugi::xml_node mark = mark_element_of(range.node, element_mark);
        if (distance > longest_distance) {
            context.add(mark, "{} is marked and goes from {} to {}, a distance beyond 32 bits",
                        range.node.get_name(), *low, *high);
        } else if (steps > most_positions) {
            context.add(mark, "{} is marked and has {} steps, more than {}", range.node.get_name(), steps,
                        most_positions);
        }
    });
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

void check_units_without_room(lint_context& context) {
    feature_reader reader(context.guard());
    for_each_marked(context, [&](INode& node) {
        if (node.get_node_type() != node_type::floating) return;
        const std::string unit = reader.read_unit(node);
        if (unit.empty()) return;
        for (const double limit : telling_limits(reader, node)) {
            if (ZELPropUI::HasRoomForUnit(limit, platform::widen(unit))) continue;
            context.add(mark_element_of(node, element_mark),
                        "{} is marked, and its edit has no room for {} behind {:.{}f}", node.get_name(), unit,
                        limit, ZELPropUI::shown_decimals);
            break;
        }
    });
}

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

void tell_row(lint_context& context, const drawn_page& page, const drawn_row& row,
              const items_by_name& items) {
    INode* const feature = feature_of(context, row);
    INode* const told = feature != nullptr ? feature : item_of_label(items, row);
    if (told == nullptr) return;
    context.add(mark_element_of(*told, feature != nullptr ? element_mark : item_mark),
                "{} lies beyond the edge of the page {}", told->get_name(), TitleOf(page.name));
}

void check_page_edges(lint_context& context) {
    description& subject = context.subject();
    if (!context.is_loaded()) return;
    const items_by_name items = named_items(find_items(subject));
    if (items.empty() || find_page_hazard(subject)) return;
    const auto is_beyond = [](const drawn_control* control) { return is_beyond_edge(*control); };
    for (const drawn_page& page : preview_pages(subject, access_path::registers)) {
        for (const drawn_row& row : rows_of(page)) {
            if (std::any_of(row.begin(), row.end(), is_beyond)) tell_row(context, page, row, items);
        }
    }
}

void check_marks_without_lock(lint_context& context) {
    for_each_marked(context, [&](INode& node) {
        const pugi::xml_node element = GenICam::element_of(node);
        if (!has_control(node) || *element.child_value("pIsLocked") != 0) return;
        context.add(element, "{} is marked and has no pIsLocked", node.get_name());
    });
}

// One link may lock all that there is.
void check_grey_marks(lint_context& context) {
    feature_reader reader(context.guard());
    for_each_marked(context, [&](INode& node) {
        const pugi::xml_node link = GenICam::element_of(node).child("pIsLocked");
        if (!has_control(node) || *link.child_value() == 0) return;
        const answer<bool> enabled = reader.read_flag(node, operation::locked);
        if (enabled.value.value_or(false)) return;
        context.add_habit(link, "a control is grey over these registers: its pIsLocked {} {}",
                          link.child_value(), enabled.value ? "reads 0" : "cannot be read");
    });
}

void check_entry_numbers(lint_context& context) {
    for_each_marked(context, [&](INode& node) {
        if (node.get_node_type() != node_type::enumeration) return;
        const auto entries = static_cast<GenICam::IEnumeration&>(node).get_entries();
        const bool in_order =
            std::all_of(entries.begin(), entries.end(), [](const GenICam::IEnumEntry* entry) {
                return entry->get_value() == static_cast<std::int64_t>(entry->get_index());
            });
        if (in_order) return;
        context.add(GenICam::element_of(node),
                    "{} is marked, and its entries are not numbered from 0 without gaps", node.get_name());
    });
}

}  // namespace

gsl::span<const lint_rule> page_rules() noexcept {
    static constexpr lint_rule rules[] = {
        {"mark-range", severity::warning,
         "Pages keep the low 32 bits of integers and of their limits: the slider has another range or none.",
         "State a Min and a Max that fit into 32 bits with a sign.", check_wide_ranges},
        {"mark-steps", severity::warning,
         "A slider and a spin button are told their ends in 16 bits: beyond, an arrow writes a value far "
         "from the one before.",
         "State a greater Inc, or a narrower Min and Max.", check_slider_steps},
        {"mark-unit", severity::warning,
         "An edit shows 19 characters of a number with three decimals and its unit; where both do not fit, "
         "the "
         "unit "
         "is left out.",
         "State a shorter Unit, or one in which the limits are smaller numbers.", check_units_without_room},
        {"mark-edge", severity::warning,
         "A page does not scroll: nobody sees or reaches what lies beyond its edge.",
         "List the feature on another page, or give it a shorter DisplayName or Unit; 13 rows fit on a page.",
         check_page_edges},
        {"mark-lock", severity::note,
         "Pages take pIsLocked for \"may be changed now\": without the link, a control over registers is "
         "always "
         "grey.",
         "Give it a pIsLocked that reads non-zero while the feature may be changed.",
         check_marks_without_lock},
        {"mark-grey", severity::note,
         "Pages take a pIsLocked that reads 0 for \"may not be changed\", the reverse of what other programs "
         "do.",
         "Where the link means \"locked\", let pIsLocked lead to an IntSwissKnife with the formula X=0 over "
         "it; "
         "where it does not, look over registers that a camera has (give them with --memory or --register).",
         check_grey_marks},
        {"mark-entries", severity::warning,
         "Over registers a page reads an enumeration by the values of its entries and writes it by their "
         "places: "
         "it shows another entry than the camera has.",
         "Number the entries from 0 without gaps; where the camera has other numbers, put an IntConverter "
         "between "
         "the enumeration and its register that turns places into them.",
         check_entry_numbers},
    };
    return rules;
}

}  // namespace selvane_inspect
