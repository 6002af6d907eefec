#include "apps/inspect/lint/rules.h"

#include "apps/inspect/feature_reader.h"
#include "apps/inspect/lint/marks.h"
#include "genicam/core/number_parser.h"
#include "platform/text.h"
#include "propui/number_text.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

using GenICam::INode;
using GenICam::node_type;

struct limit_name {
    const char* number;
    const char* link;
};

constexpr limit_name float_limits[] = {{"Min", "pMin"}, {"Max", "pMax"}, {"Inc", "pInc"}};

// The number that somebody has in mind who writes the text: all of it counts, and a comma is a point. Not set
// where that makes no number.
std::optional<double> number_meant(std::string text) {
    if (std::count(text.begin(), text.end(), ',') == 1) std::replace(text.begin(), text.end(), ',', '.');
    double number = 0;
    if (text.empty() || platform::read_double(text, number) != text.size()) return std::nullopt;
    return number;
}

// Not set where the engine finds no number.
std::optional<double> number_read(std::string_view text) {
    GenICam::eval_value number;
    if (GenICam::parse_number(text, number) == 0) return std::nullopt;
    return GenICam::to_double(number);
}

void check_float_limit(const lint_context& context, pugi::xml_node limit, finding_list& findings) {
    const std::string text = on_one_line(limit.child_value());
    const std::optional<double> meant = number_meant(text);
    const std::optional<double> read = number_read(limit.child_value());
    if (!meant || read == meant) return;
    findings.add(context.tree().position_of(limit),
                 fmt::format("{} of {} is {}, which is read as {}", limit.name(), title_of(limit.parent()),
                             text, read ? number_text(*read) : "no number"));
}

/// The integer range of a marked feature, where it has one.
struct marked_range {
    INode* node;
    text_position at;
    std::optional<feature_value> minimum;
    std::optional<feature_value> maximum;
    std::optional<feature_value> increment;
};

template <class Visit>
void for_each_marked_range(lint_context& context, Visit visit) {
    feature_reader reader(context.guard());
    for_each_marked_element(context, [&](INode& node) {
        if (node.get_node_type() != node_type::integer) return;
        visit(marked_range{
            &node, position_of_mark(context, node), reader.read_limit(node, operation::minimum),
            reader.read_limit(node, operation::maximum), reader.read_limit(node, operation::increment)});
    });
}

const std::int64_t* integer_of(const std::optional<feature_value>& limit) {
    return limit ? std::get_if<std::int64_t>(&*limit) : nullptr;
}

bool fits(const std::optional<feature_value>& limit) {
    const std::int64_t* number = integer_of(limit);
    return number == nullptr || static_cast<std::int32_t>(*number) == *number;
}

void check_steps(const marked_range& range, finding_list& findings) {
    constexpr std::int64_t longest_distance = std::numeric_limits<std::int32_t>::max();
    constexpr std::int64_t most_positions = std::numeric_limits<std::int16_t>::max();
    const std::int64_t* const low = integer_of(range.minimum);
    const std::int64_t* const high = integer_of(range.maximum);
    if (low == nullptr || high == nullptr || !fits(range.minimum) || !fits(range.maximum)) return;
    const std::int64_t* const step = integer_of(range.increment);
    const std::int64_t distance = *high - *low;
    const std::int64_t steps = distance / (step != nullptr && *step > 0 ? *step : 1);
    if (distance > longest_distance) {
        findings.add(range.at, fmt::format("{} is marked and goes from {} to {}, a distance beyond 32 bits",
                                           range.node->get_name(), *low, *high));
    } else if (steps > most_positions) {
        findings.add(range.at, fmt::format("{} is marked and has {} steps, more than {}",
                                           range.node->get_name(), steps, most_positions));
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

}  // namespace

void check_float_limits(lint_context& context, finding_list& findings) {
    for (const node_element& element : context.tree().elements()) {
        if (element.made == nullptr || std::string_view(element.xml.name()) != "Float") continue;
        for (const limit_name& limit : float_limits) {
            const pugi::xml_node number = element.xml.child(limit.number);
            if (number && *element.xml.child_value(limit.link) == 0)
                check_float_limit(context, number, findings);
        }
    }
}

void check_wide_ranges(lint_context& context, finding_list& findings) {
    for_each_marked_range(context, [&](const marked_range& range) {
        if (fits(range.minimum) && fits(range.maximum)) return;
        findings.add(range.at,
                     fmt::format("{} is marked and goes from {} to {}, beyond 32 bits",
                                 range.node->get_name(), range.minimum ? value_text(*range.minimum) : "?",
                                 range.maximum ? value_text(*range.maximum) : "?"));
    });
}

void check_slider_steps(lint_context& context, finding_list& findings) {
    for_each_marked_range(context, [&](const marked_range& range) { check_steps(range, findings); });
}

void check_units_without_room(lint_context& context, finding_list& findings) {
    feature_reader reader(context.guard());
    for_each_marked_element(context, [&](INode& node) {
        if (node.get_node_type() != node_type::floating) return;
        const std::string unit = reader.read_unit(node);
        if (unit.empty()) return;
        for (const double limit : telling_limits(reader, node)) {
            if (ZELPropUI::HasRoomForUnit(limit, platform::widen(unit))) continue;
            findings.add(position_of_mark(context, node),
                         fmt::format("{} is marked, and its edit has no room for {} behind {:.{}f}",
                                     node.get_name(), unit, limit, ZELPropUI::shown_decimals));
            break;
        }
    });
}

}  // namespace selvane_inspect
