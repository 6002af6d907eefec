#include "apps/inspect/lint/lint_context.h"

#include "genicam/core/number_parser.h"
#include "inspection/feature_reader.h"
#include "platform/text.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace selvane_inspect {
namespace {

bool states_minimum(const description_tree& tree, pugi::xml_node element) {
    return *element.child_value("Min") != 0 || !tree.find(element.child_value("pMin")).empty();
}

// The smallest positive numbers of both widths, which are what floats have for a minimum by default.
bool is_default_minimum(const feature_value& minimum) {
    const auto* number = std::get_if<double>(&minimum);
    return number != nullptr && (*number == std::numeric_limits<double>::min() ||
                                 *number == static_cast<double>(std::numeric_limits<float>::min()));
}

void check_floats_without_min(lint_context& context) {
    feature_reader reader(context.guard());
    const description_tree& tree = context.tree();
    for (element_index at = 0; at < tree.elements().size(); ++at) {
        const node_element& element = tree.at(at);
        GenICam::INode* const made = context.subject().node_of(at);
        if (std::string_view(element.xml.name()) != "Float" || made == nullptr ||
            states_minimum(tree, element.xml))
            continue;
        if (reader.read_access(*made).value == GenICam::AccessMode::RO) continue;
        const auto minimum = reader.read_limit(*made, operation::minimum);
        if (!minimum || !is_default_minimum(*minimum)) continue;
        context.add(element.xml, "{} states no Min, so that its minimum is {}", element.name,
                    value_text(*minimum));
    }
}

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

void check_float_limit(lint_context& context, pugi::xml_node limit) {
    const std::string text = on_one_line(limit.child_value());
    const std::optional<double> meant = number_meant(text);
    const std::optional<double> read = number_read(limit.child_value());
    if (!meant || read == meant) return;
    context.add(limit, "{} of {} is {}, which is read as {}", limit.name(), title_of(limit.parent()), text,
                read ? number_text(*read) : "no number");
}

void check_float_limits(lint_context& context) {
    for (const node_element& element : context.tree().elements()) {
        if (element.made == nullptr || std::string_view(element.xml.name()) != "Float") continue;
        for (const limit_name& limit : float_limits) {
            const pugi::xml_node number = element.xml.child(limit.number);
            if (number && *element.xml.child_value(limit.link) == 0) check_float_limit(context, number);
        }
    }
}

}  // namespace

gsl::span<const lint_rule> number_rules() noexcept {
    static constexpr lint_rule rules[] = {
        {"float-without-min", severity::warning,
         "The default minimum is the smallest positive number: negative values are refused, and sliders "
         "begin "
         "there.",
         "State a Min or pMin.", check_floats_without_min},
        {"float-limit", severity::warning,
         "The engine wants digits before a point, takes no comma for one, and keeps integers to 64 bits: the "
         "limit "
         "is lost or is another number.",
         "Write 0.5 for .5 and 0,5, and a great number with a point or an exponent, as in 1e20.",
         check_float_limits},
    };
    return rules;
}

}  // namespace selvane_inspect
