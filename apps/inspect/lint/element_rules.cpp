#include "apps/inspect/lint/lint_context.h"

#include "apps/inspect/lint/known_elements.h"
#include "apps/inspect/similar_name.h"
#include "genicam/core/number_parser.h"
#include "genicam/document/node_facts.h"
#include "inspection/feature_reader.h"
#include "platform/text.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace selvane_inspect {
namespace {

using GenICam::INode;
using GenICam::node_type;

constexpr std::string_view cachable = "Cachable";

/// An element with children that are read for it: a node, an entry of an enumeration or a structure of
/// registers.
struct parent_element {
    pugi::xml_node xml;
    std::optional<std::string_view> made_as;  ///< not set for a structure

    [[nodiscard]] element_use use_of(std::string_view child) const {
        return made_as ? use_in_node(*made_as, child) : use_in_struct(child);
    }
};

std::vector<parent_element> find_parents(const lint_context& context) {
    std::vector<parent_element> found;
    for (const node_element& element : context.tree().elements())
        found.push_back({element.xml, element.made != nullptr ? element.made->name : std::string_view()});
    for (const pugi::xml_node element : context.elements_for_nodes()) {
        if (is_element(element, "StructReg")) found.push_back({element, std::nullopt});
    }
    return found;
}

// Visits the children of parents that are used in that way.
template <class Visit>
void for_each_child(const lint_context& context, element_use use, Visit visit) {
    for (const parent_element& parent : find_parents(context)) {
        for (const pugi::xml_node child : parent.xml.children()) {
            if (child.type() == pugi::node_element && parent.use_of(child.name()) == use) visit(child);
        }
    }
}

// The same among the nodes.
template <class Visit>
void for_each_among_nodes(const lint_context& context, element_use use, Visit visit) {
    for (const pugi::xml_node element : context.elements_for_nodes()) {
        if (use_among_nodes(element.name()) == use) visit(element);
    }
}

void check_elements_without_node(lint_context& context) {
    for_each_among_nodes(context, element_use::read, [&](pugi::xml_node element) {
        if (is_container(element) || context.tree().find(element)) return;
        context.add(element, "{} becomes no node", title_of(element));
    });
}

// Extensions belong to everybody. Only what looks like a slip of the pen is told.
void check_extension_keys(lint_context& context, const node_element& element) {
    for (const pugi::xml_node key : element.xml.child("Extension").children()) {
        const std::string_view meant = find_similar(key.name(), extension_keys());
        if (meant.empty() || is_element(key, meant)) continue;
        context.add(key, "nothing knows the key {} in the Extension of {}{}", key.name(),
                    title_of(element.xml), did_you_mean(key.name(), extension_keys()));
    }
}

void check_unknown_elements(lint_context& context) {
    for_each_among_nodes(context, element_use::unknown, [&](pugi::xml_node element) {
        if (is_element(element.parent(), "StructReg")) return;  // told as a child of it
        context.add(element, "nothing knows the element {}{}", element.name(),
                    did_you_mean(element.name(), names_among_nodes()));
    });
    check_elements<check_extension_keys>(context);
    for_each_child(context, element_use::unknown, [&](pugi::xml_node child) {
        context.add(child, "nothing knows the element {} in {}{}", child.name(), title_of(child.parent()),
                    did_you_mean(child.name(), names_in_nodes()));
    });
}

void check_unread_elements(lint_context& context) {
    for_each_among_nodes(context, element_use::unread, [&](pugi::xml_node element) {
        context.add_habit(element, "nothing reads {} elements", element.name());
    });
    for_each_child(context, element_use::unread, [&](pugi::xml_node child) {
        if (is_element(child, cachable)) return;
        context.add_habit(child, "nothing reads {} in {} elements of this kind", child.name(),
                          child.parent().name());
    });
}

void check_unread_cachables(lint_context& context) {
    for_each_child(context, element_use::unread, [&](pugi::xml_node child) {
        if (!is_element(child, cachable)) return;
        context.add_habit(child, "nothing reads Cachable in {} elements", child.parent().name());
    });
}

void check_name(lint_context& context, const node_element& element) {
    if (element.name.empty()) context.add(element.xml, "{} without a Name", element.xml.name());
}

void check_entry_names(lint_context& context, const node_element& enumeration) {
    std::unordered_map<std::string_view, pugi::xml_node> first;
    for (const pugi::xml_node entry : enumeration.xml.children("EnumEntry")) {
        const std::string_view name = entry.attribute("Name").value();
        const auto [known, is_new] = first.emplace(name, entry);
        if (is_new) continue;
        context.add(entry, "entry {} of {} stands in line {} already", name, enumeration.name,
                    context.tree().position_of(known->second).line);
    }
}

void check_duplicate_names(lint_context& context, const node_element& element) {
    if (is_element(element.xml, "Enumeration")) check_entry_names(context, element);
    const pugi::xml_node first = context.element_named(element.name);
    if (element.made == nullptr || !first || first == element.xml) return;
    context.add(element.xml, "{} {} bears the name of the {} in line {}", element.xml.name(), element.name,
                first.name(), context.tree().position_of(first).line);
}

// Children that link to a node without a word where there is none. Conditions want one that has a number.
constexpr GenICam::name_list conditions = "pIsImplemented pIsAvailable pIsLocked";
constexpr GenICam::name_list other_links = "pVariable pValueDefault";

bool has_number(node_type kind) {
    return kind == node_type::integer || kind == node_type::floating || kind == node_type::enumeration ||
           kind == node_type::boolean;
}

std::string owner_text(pugi::xml_node element) {
    return fmt::format("{} of {}", element.name(), title_of(element.parent()));
}

void check_link(lint_context& context, pugi::xml_node child) {
    const bool is_condition = conditions.contains(child.name());
    const std::string_view name = child.child_value();
    if (name.empty() || (!is_condition && !other_links.contains(child.name()))) return;
    INode* const node = context.node_of(context.element_named(name));
    if (node == nullptr) {
        context.add(child, "{} names no node: {}", owner_text(child), name);
    } else if (is_condition && !has_number(node->get_node_type())) {
        context.add(child, "{} names a node that has no number: {}", owner_text(child), name);
    }
}

// The engine tells of a port that is missing in `Register` elements alone.
void check_port_of(lint_context& context, pugi::xml_node element) {
    const pugi::xml_node child = element.child("pPort");
    const std::string_view name = child.child_value();
    if (context.subject().document()->find_port(name) != nullptr) return;
    if (name.empty()) {
        context.add_habit(element, "{} elements without a pPort are on the port Device, and there is none",
                          element.name());
    } else if (!is_element(element, "Register")) {
        context.add(child, "{} names no port: {}", owner_text(child), name);
    }
}

void check_silent_links(lint_context& context) {
    if (!context.is_loaded()) return;
    for_each_child(context, element_use::read, [&](pugi::xml_node child) { check_link(context, child); });
    for (const parent_element& parent : find_parents(context)) {
        if (parent.use_of("pPort") == element_use::read) check_port_of(context, parent.xml);
    }
}

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

constexpr lint_rule element_table[] = {
    {"no-node", severity::error,
     "An element without the children that decide its class becomes no node, in silence.",
     "Give it a Value, a pValue or a pIndex, as its kind takes them.", check_elements_without_node},
    {"unknown-element", severity::warning, "A name that nothing knows is passed over in silence.",
     "Mind the spelling; capitals count.", check_unknown_elements},
    {"unread-element", severity::note, "Other programs may read it, but the pages do not.",
     "Do not count on it on the pages.", check_unread_elements},
    {"cachable-not-read", severity::warning,
     "The element changes nothing: a node of that kind is read from the device every time.",
     "Leave it out, or use a kind of register that has a cache.", check_unread_cachables},
    {"no-name", severity::warning, "A node without a name cannot be referred to.", "Give it a Name.",
     check_elements<check_name>},
    {"duplicate-name", severity::error, "A link finds one of the nodes of a name, and nobody knows which.",
     "Give each its own name.", check_elements<check_duplicate_names>},
    {"silent-link", severity::warning,
     "A link that leads nowhere, and nothing says so: the engine goes on as if it were not there.",
     "Write the name of a node of a kind that the link takes.", check_silent_links},
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

gsl::span<const lint_rule> element_rules() noexcept { return element_table; }

}  // namespace selvane_inspect
