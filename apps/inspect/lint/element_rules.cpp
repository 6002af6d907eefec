#include "apps/inspect/lint/lint_context.h"

#include "apps/inspect/lint/known_elements.h"
#include "apps/inspect/similar_name.h"

#include <algorithm>
#include <functional>
#include <unordered_map>

namespace selvane_inspect {
namespace {

using GenICam::INode;
using GenICam::node_type;

constexpr std::string_view cachable = "Cachable";

using child_visitor = std::function<void(pugi::xml_node parent, pugi::xml_node child, element_use use)>;

void visit_children(pugi::xml_node parent, const std::function<element_use(std::string_view)>& use_of,
                    const child_visitor& visit) {
    for (const pugi::xml_node child : parent.children()) {
        if (child.type() == pugi::node_element) visit(parent, child, use_of(child.name()));
    }
}

std::string_view class_of(const node_element& element) {
    return element.made != nullptr ? element.made->name : std::string_view();
}

// Every element inside a node, a structure of registers or an entry of an enumeration.
void for_each_child(const lint_context& context, const child_visitor& visit) {
    for (const node_element& element : context.tree().elements()) {
        const auto use_of = [&](std::string_view child) { return use_in_node(class_of(element), child); };
        visit_children(element.xml, use_of, visit);
    }
    for (const pugi::xml_node element : context.elements_for_nodes()) {
        if (std::string_view(element.name()) == "StructReg") visit_children(element, use_in_struct, visit);
    }
}

bool can_decide_among_classes(std::string_view element) {
    return element != "StructReg" && element != "Group" && use_among_nodes(element) == element_use::read;
}

void check_elements_without_node(lint_context& context) {
    for (const pugi::xml_node element : context.elements_for_nodes()) {
        if (!can_decide_among_classes(element.name()) || context.tree().find(element)) continue;
        context.add(element, "{} becomes no node", title_of(element));
    }
}

// Extensions belong to everybody. Only what looks like a slip of the pen is told.
void check_extension_keys(lint_context& context) {
    const std::vector<std::string_view>& known = extension_keys();
    for (const node_element& element : context.tree().elements()) {
        for (const pugi::xml_node key : element.xml.child("Extension").children()) {
            const std::string_view name = key.name();
            const bool is_known = std::find(known.begin(), known.end(), name) != known.end();
            if (key.type() != pugi::node_element || is_known || find_similar(name, known).empty()) continue;
            context.add(key, "nothing knows the key {} in the Extension of {}{}", name, title_of(element.xml),
                        did_you_mean(name, known));
        }
    }
}

void check_unknown_elements(lint_context& context) {
    for (const pugi::xml_node element : context.elements_for_nodes()) {
        const std::string_view container = element.parent().name();
        if (container == "StructReg" || use_among_nodes(element.name()) != element_use::unknown) continue;
        context.add(element, "nothing knows the element {}{}", element.name(),
                    did_you_mean(element.name(), names_among_nodes()));
    }
    check_extension_keys(context);
    for_each_child(context, [&](pugi::xml_node parent, pugi::xml_node child, element_use use) {
        if (use != element_use::unknown) return;
        context.add(child, "nothing knows the element {} in {}{}", child.name(), title_of(parent),
                    did_you_mean(child.name(), names_in_nodes()));
    });
}

void check_unread_elements(lint_context& context) {
    for (const pugi::xml_node element : context.elements_for_nodes()) {
        if (use_among_nodes(element.name()) != element_use::unread) continue;
        context.add_habit(element, "nothing reads {} elements", element.name());
    }
    for_each_child(context, [&](pugi::xml_node parent, pugi::xml_node child, element_use use) {
        if (use != element_use::unread || child.name() == cachable) return;
        context.add_habit(child, "nothing reads {} in {} elements of this kind", child.name(), parent.name());
    });
}

void check_unread_cachables(lint_context& context) {
    for_each_child(context, [&](pugi::xml_node parent, pugi::xml_node child, element_use use) {
        if (use != element_use::unread || child.name() != cachable) return;
        context.add_habit(child, "nothing reads Cachable in {} elements", parent.name());
    });
}

void check_missing_names(lint_context& context) {
    for (const node_element& element : context.tree().elements()) {
        if (element.name.empty()) context.add(element.xml, "{} without a Name", element.xml.name());
    }
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

void check_duplicate_names(lint_context& context) {
    const description_tree& tree = context.tree();
    for (element_index at = 0; at < tree.elements().size(); ++at) {
        const node_element& element = tree.at(at);
        if (std::string_view(element.xml.name()) == "Enumeration") check_entry_names(context, element);
        const std::vector<element_index>& namesakes = tree.find(element.name);
        if (element.made == nullptr || namesakes.size() < 2 || namesakes.front() == at) continue;
        const pugi::xml_node first = tree.at(namesakes.front()).xml;
        context.add(element.xml, "{} {} bears the name of the {} in line {}", element.xml.name(),
                    element.name, first.name(), tree.position_of(first).line);
    }
}

/// A child that links to a node without a word where there is none.
struct silent_link {
    std::string_view name;
    bool is_condition;  // asks for a node that has a number
};

constexpr silent_link silent_links[] = {
    {"pIsImplemented", true}, {"pIsAvailable", true},   {"pIsLocked", true},
    {"pVariable", false},     {"pValueDefault", false},
};

bool has_number(node_type kind) {
    return kind == node_type::integer || kind == node_type::floating || kind == node_type::enumeration ||
           kind == node_type::boolean;
}

// Null for a name that no node bears.
INode* node_named(const lint_context& context, std::string_view name) {
    const std::vector<element_index>& found = context.tree().find(name);
    return !found.empty() ? context.subject().node_of(found.front()) : nullptr;
}

std::string owner_text(pugi::xml_node element) {
    return fmt::format("{} of {}", element.name(), title_of(element.parent()));
}

void check_links_of(lint_context& context, pugi::xml_node element, std::string_view class_name) {
    for (const silent_link& link : silent_links) {
        if (use_in_node(class_name, link.name) != element_use::read) continue;
        for (const pugi::xml_node child : element.children(link.name.data())) {
            const std::string_view name = child.child_value();
            INode* const node = node_named(context, name);
            if (name.empty() || (node != nullptr && !link.is_condition)) continue;
            if (node != nullptr && has_number(node->get_node_type())) continue;
            context.add(child, "{} names {} {}", owner_text(child),
                        node == nullptr ? "no node:" : "a node that has no number:", name);
        }
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
    } else if (std::string_view(element.name()) != "Register") {
        context.add(child, "{} names no port: {}", owner_text(child), name);
    }
}

void check_silent_links(lint_context& context) {
    if (!context.is_loaded()) return;
    for (const node_element& element : context.tree().elements()) {
        check_links_of(context, element.xml, class_of(element));
        if (element.made != nullptr && use_in_node(class_of(element), "pPort") == element_use::read)
            check_port_of(context, element.xml);
    }
    for (const pugi::xml_node element : context.elements_for_nodes()) {
        if (std::string_view(element.name()) == "StructReg") check_port_of(context, element);
    }
}

}  // namespace

gsl::span<const lint_rule> element_rules() noexcept {
    static constexpr lint_rule rules[] = {
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
         check_missing_names},
        {"duplicate-name", severity::error,
         "A link finds one of the nodes of a name, and nobody knows which.", "Give each its own name.",
         check_duplicate_names},
        {"silent-link", severity::warning,
         "A link that leads nowhere, and nothing says so: the engine goes on as if it were not there.",
         "Write the name of a node of a kind that the link takes.", check_silent_links},
    };
    return rules;
}

}  // namespace selvane_inspect
