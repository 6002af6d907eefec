#include "apps/inspect/lint/lint_context.h"

#include "genicam/core/number_parser.h"
#include "inspection/feature_reader.h"
#include "platform/text.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace selvane_inspect {
namespace {

bool states_minimum(const lint_context& context, pugi::xml_node element) {
    return *element.child_value("Min") != 0 || context.element_named(element.child_value("pMin"));
}

// The smallest positive numbers of both widths, which are what floats have for a minimum by default.
bool is_default_minimum(const feature_value& minimum) {
    const auto* number = std::get_if<double>(&minimum);
    return number != nullptr && (*number == std::numeric_limits<double>::min() ||
                                 *number == static_cast<double>(std::numeric_limits<float>::min()));
}

void check_stated_minimum(lint_context& context, const node_element& element) {
    GenICam::INode* const made = context.node_of(element.xml);
    if (!is_element(element.xml, "Float") || made == nullptr || states_minimum(context, element.xml)) return;
    feature_reader reader(context.guard());
    if (reader.read_access(*made).value == GenICam::AccessMode::RO) return;
    const auto minimum = reader.read_limit(*made, operation::minimum);
    if (!minimum || !is_default_minimum(*minimum)) return;
    context.add(element.xml, "{} states no Min, so that its minimum is {}", element.name,
                value_text(*minimum));
}

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

void check_float_limit(lint_context& context, pugi::xml_node limit) {
    const std::string text = on_one_line(limit.child_value());
    const std::optional<double> meant = number_meant(text);
    const std::optional<double> read = number_read(limit.child_value());
    if (!meant || read == meant) return;
    context.add(limit, "{} of {} is {}, which is read as {}", limit.name(), title_of(limit.parent()), text,
                read ? number_text(*read) : "no number");
}

void check_float_limits(lint_context& context, const node_element& element) {
    if (element.made == nullptr || !is_element(element.xml, "Float")) return;
    for (const std::string limit : {"Min", "Max", "Inc"}) {
        const pugi::xml_node number = element.xml.child(limit.c_str());
        if (number && *element.xml.child_value(("p" + limit).c_str()) == 0)
            check_float_limit(context, number);
    }
}

constexpr lint_rule number_table[] = {
    {"float-without-min", severity::warning,
     "The default minimum is the smallest positive number: negative values are refused, and sliders begin "
     "there.",
     "State a Min or pMin.", check_elements<check_stated_minimum>},
    {"float-limit", severity::warning,
     "The engine wants digits before a point, takes no comma for one, and keeps integers to 64 bits: the "
     "limit is lost or is another number.",
     "Write 0.5 for .5 and 0,5, and a great number with a point or an exponent, as in 1e20.",
     check_elements<check_float_limits>},
};

}  // namespace

gsl::span<const lint_rule> number_rules() noexcept { return number_table; }

}  // namespace selvane_inspect
