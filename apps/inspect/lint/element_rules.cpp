#include "apps/inspect/lint/rules.h"

#include "apps/inspect/feature_reader.h"
#include "apps/inspect/lint/known_elements.h"
#include "apps/inspect/similar_name.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <unordered_map>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

constexpr std::string_view cachable = "Cachable";

using child_visitor = std::function<void(pugi::xml_node parent, pugi::xml_node child, element_use use)>;

void visit_children(pugi::xml_node parent, const std::function<element_use(std::string_view)>& use_of,
                    const child_visitor& visit) {
    for (const pugi::xml_node child : parent.children()) {
        if (child.type() == pugi::node_element) visit(parent, child, use_of(child.name()));
    }
}

// Every element inside a node, a structure of registers or an entry of an enumeration.
void for_each_child(const lint_context& context, const child_visitor& visit) {
    for (const node_element& element : context.tree().elements()) {
        const std::string_view made_as = element.made != nullptr ? element.made->name : std::string_view();
        visit_children(
            element.xml, [&](std::string_view child) { return use_in_node(made_as, child); }, visit);
    }
    for (const pugi::xml_node element : context.elements_for_nodes()) {
        if (std::string_view(element.name()) == "StructReg") visit_children(element, use_in_struct, visit);
    }
}

std::string meant(std::string_view wrong, const std::vector<std::string_view>& known) {
    const std::string_view similar = find_similar(wrong, known);
    return similar.empty() ? std::string() : fmt::format(" (did you mean {}?)", similar);
}

bool can_decide_among_classes(std::string_view element) {
    return element != "StructReg" && element != "Group" && use_among_nodes(element) == element_use::read;
}

void check_duplicates_of(const lint_context& context, const node_element& enumeration,
                         finding_list& findings) {
    std::unordered_map<std::string_view, pugi::xml_node> first;
    for (const pugi::xml_node entry : enumeration.xml.children("EnumEntry")) {
        const std::string_view name = entry.attribute("Name").value();
        const auto [known, is_new] = first.emplace(name, entry);
        if (is_new) continue;
        findings.add(context.tree().position_of(entry),
                     fmt::format("entry {} of {} stands in line {} already", name, enumeration.name,
                                 context.tree().position_of(known->second).line));
    }
}

// Extensions belong to everybody. Only what looks like a slip of the pen is told.
void check_extension_keys(const lint_context& context, finding_list& findings) {
    const std::vector<std::string_view>& known = extension_keys();
    for (const node_element& element : context.tree().elements()) {
        for (const pugi::xml_node key : element.xml.child("Extension").children()) {
            const std::string_view name = key.name();
            const bool is_known = std::find(known.begin(), known.end(), name) != known.end();
            if (key.type() != pugi::node_element || is_known || find_similar(name, known).empty()) continue;
            findings.add(context.tree().position_of(key),
                         fmt::format("nothing knows the key {} in the Extension of {}{}", name,
                                     title_of(element.xml), meant(name, known)));
        }
    }
}

bool states_minimum(const description_tree& tree, pugi::xml_node element) {
    return *element.child_value("Min") != 0 || !tree.find(element.child_value("pMin")).empty();
}

// The smallest positive numbers of both widths, which are what floats have for a minimum by default.
bool is_default_minimum(const feature_value& minimum) {
    const auto* number = std::get_if<double>(&minimum);
    return number != nullptr && (*number == std::numeric_limits<double>::min() ||
                                 *number == static_cast<double>(std::numeric_limits<float>::min()));
}

}  // namespace

void check_elements_without_node(lint_context& context, finding_list& findings) {
    for (const pugi::xml_node element : context.elements_for_nodes()) {
        if (!can_decide_among_classes(element.name()) || context.tree().find(element)) continue;
        findings.add(context.tree().position_of(element), title_of(element) + " becomes no node");
    }
}

void check_unknown_elements(lint_context& context, finding_list& findings) {
    for (const pugi::xml_node element : context.elements_for_nodes()) {
        const std::string_view container = element.parent().name();
        if (container == "StructReg" || use_among_nodes(element.name()) != element_use::unknown) continue;
        findings.add(context.tree().position_of(element),
                     fmt::format("nothing knows the element {}{}", element.name(),
                                 meant(element.name(), names_among_nodes())));
    }
    check_extension_keys(context, findings);
    for_each_child(context, [&](pugi::xml_node parent, pugi::xml_node child, element_use use) {
        if (use != element_use::unknown) return;
        findings.add(context.tree().position_of(child),
                     fmt::format("nothing knows the element {} in {}{}", child.name(), title_of(parent),
                                 meant(child.name(), names_in_nodes())));
    });
}

void check_unread_elements(lint_context& context, finding_list& findings) {
    for (const pugi::xml_node element : context.elements_for_nodes()) {
        if (use_among_nodes(element.name()) != element_use::unread) continue;
        findings.add_habit(context.tree().position_of(element),
                           fmt::format("nothing reads {} elements", element.name()));
    }
    for_each_child(context, [&](pugi::xml_node parent, pugi::xml_node child, element_use use) {
        if (use != element_use::unread || child.name() == cachable) return;
        findings.add_habit(
            context.tree().position_of(child),
            fmt::format("nothing reads {} in {} elements of this kind", child.name(), parent.name()));
    });
}

void check_unread_cachables(lint_context& context, finding_list& findings) {
    for_each_child(context, [&](pugi::xml_node parent, pugi::xml_node child, element_use use) {
        if (use != element_use::unread || child.name() != cachable) return;
        findings.add_habit(context.tree().position_of(child),
                           fmt::format("nothing reads Cachable in {} elements", parent.name()));
    });
}

void check_missing_names(lint_context& context, finding_list& findings) {
    for (element_index element = 0; element < context.tree().elements().size(); ++element) {
        if (!context.tree().at(element).name.empty()) continue;
        findings.add(context.position_of(element),
                     fmt::format("{} without a Name", context.tree().at(element).xml.name()));
    }
}

void check_duplicate_names(lint_context& context, finding_list& findings) {
    const description_tree& tree = context.tree();
    for (element_index element = 0; element < tree.elements().size(); ++element) {
        const node_element& node = tree.at(element);
        if (std::string_view(node.xml.name()) == "Enumeration") check_duplicates_of(context, node, findings);
        const std::vector<element_index>& namesakes = tree.find(node.name);
        if (node.made == nullptr || namesakes.size() < 2 || namesakes.front() == element) continue;
        findings.add(
            context.position_of(element),
            fmt::format("{} {} bears the name of the {} in line {}", node.xml.name(), node.name,
                        tree.at(namesakes.front()).xml.name(), context.position_of(namesakes.front()).line));
    }
}

void check_floats_without_min(lint_context& context, finding_list& findings) {
    feature_reader reader(context.guard());
    const description_tree& tree = context.tree();
    for (element_index element = 0; element < tree.elements().size(); ++element) {
        const node_element& node = tree.at(element);
        GenICam::INode* made = context.is_loaded() ? context.subject().node_of(element) : nullptr;
        if (std::string_view(node.xml.name()) != "Float" || made == nullptr || states_minimum(tree, node.xml))
            continue;
        const auto access = reader.read_access(*made);
        if (access.value == GenICam::AccessMode::RO) continue;
        const auto minimum = reader.read_limit(*made, operation::minimum);
        if (!minimum || !is_default_minimum(*minimum)) continue;
        findings.add(context.position_of(element), fmt::format("{} states no Min, so that its minimum is {}",
                                                               node.name, value_text(*minimum)));
    }
}

}  // namespace selvane_inspect
