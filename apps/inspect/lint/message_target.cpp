#include "apps/inspect/lint/message_target.h"

#include "apps/inspect/lint/known_elements.h"
#include "genicam/core/number_parser.h"
#include "genicam/nodes/struct_entry_node.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>

namespace selvane_inspect {
namespace {

using target_list = std::vector<message_target>;
using element_list = std::vector<pugi::xml_node>;

/// A message taken apart, and the elements that it may speak of.
struct speech {
    const lint_context& context;
    std::string_view message;
    std::string_view rest;  ///< behind the name of the node
    element_list subjects;

    [[nodiscard]] const description_tree& tree() const { return context.tree(); }
    [[nodiscard]] element_list children(const std::function<bool(pugi::xml_node)>& fits) const;
    [[nodiscard]] element_list children(std::string_view name) const;
};

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

std::string_view behind(std::string_view text, std::string_view mark) {
    const std::size_t found = text.find(mark);
    return found == std::string_view::npos ? std::string_view() : text.substr(found + mark.size());
}

// What stands between two marks; without the second one all of the rest, because long messages are cut.
std::string_view between(std::string_view text, std::string_view before, std::string_view after) {
    const std::string_view rest = behind(text, before);
    return rest.substr(0, rest.find(after));
}

std::string_view quoted(std::string_view text) { return between(text, "\"", "\""); }

bool begins_with(std::string_view text, std::string_view part) { return text.substr(0, part.size()) == part; }

bool is_number(std::string_view text) {
    GenICam::eval_value number;
    return GenICam::parse_number(text, number) != 0;
}

bool has_name(pugi::xml_node element, std::string_view name) { return element.name() == name; }

element_list speech::children(const std::function<bool(pugi::xml_node)>& fits) const {
    element_list found;
    for (const pugi::xml_node subject : subjects) {
        for (const pugi::xml_node child : subject.children()) {
            if (child.type() == pugi::node_element && fits(child)) found.push_back(child);
        }
    }
    return found;
}

element_list speech::children(std::string_view name) const {
    return children([&](pugi::xml_node child) { return has_name(child, name); });
}

target_list all(const element_list& elements) {
    target_list found;
    for (const pugi::xml_node element : elements) found.push_back({element, {}});
    return found;
}

// The extension's keys state defaults; a pair without a link is at fault in the number.
target_list defaults(const speech& of) {
    const char* const key = contains(of.rest, "Failed to resolve") ? "pDefault" : "Default";
    target_list found;
    for (const pugi::xml_node subject : of.subjects) {
        if (const pugi::xml_node stated = subject.child("Extension").child(key))
            found.push_back({stated, {}});
    }
    return found;
}

target_list indexes(const speech& of) {
    target_list found;
    for (const pugi::xml_node child : of.children(quoted(behind(of.rest, "attribute of ")))) {
        const pugi::xml_attribute index = child.attribute("Index");
        if (!is_number(index.value())) found.push_back({child, index});
    }
    return found;
}

target_list offsets(const speech& of) {
    target_list found;
    for (const pugi::xml_node child : of.children("pIndex")) {
        const pugi::xml_attribute offset = child.attribute("Offset");
        if (offset && !is_number(offset.value())) found.push_back({child, offset});
    }
    return found;
}

target_list offset_nodes(const speech& of) {
    target_list found;
    for (const pugi::xml_node child : of.children("pIndex")) {
        const pugi::xml_attribute node = child.attribute("pOffset");
        if (node && of.tree().find(node.value()).empty()) found.push_back({child, node});
    }
    return found;
}

target_list formula_elements(const speech& of) {
    const std::string_view formula = quoted(of.rest);
    return all(of.children([&](pugi::xml_node child) {
        return begins_with(child.name(), "Formula") && begins_with(child.child_value(), formula);
    }));
}

target_list features(const speech& of) {
    std::string_view feature = behind(of.rest, "feature=");
    feature.remove_suffix(std::min<std::size_t>(feature.size(), 1));  // the full stop
    return all(of.children(
        [&](pugi::xml_node child) { return has_name(child, "pFeature") && child.child_value() == feature; }));
}

target_list imposed_modes(const speech& of) { return all(of.children("ImposedAccessMode")); }

// The message names the number and means the link.
target_list links_of_pairs(const speech& of) {
    return all(of.children("p" + std::string(quoted(behind(of.rest, "node in ")))));
}

target_list lengths(const speech& of) {
    const element_list links = of.children("pLength");
    return all(!links.empty() ? links : of.children("Length"));
}

target_list ports(const speech& of) { return all(of.children("pPort")); }

// The children that the message names, of several those that are at fault.
target_list named_children(const speech& of) {
    const std::string_view name = quoted(of.rest);
    const std::string_view contents = quoted(behind(of.rest, "contents ("));
    const element_list named = of.children(name);
    if (named.size() < 2) return all(named);
    element_list faulty;
    std::copy_if(named.begin(), named.end(), std::back_inserter(faulty), [&](pugi::xml_node child) {
        if (!contents.empty()) return child.child_value() == contents;
        const bool is_link = begins_with(name, "p");
        return is_link ? of.tree().find(child.child_value()).empty() : !is_number(child.child_value());
    });
    return all(!faulty.empty() ? faulty : named);
}

// Whether the engine reads a child there. The entries of a structure fall back on its words in silence.
bool is_read(const description_tree& tree, pugi::xml_node child) {
    const pugi::xml_node parent = child.parent();
    if (has_name(parent, "StructReg")) return use_in_struct(child.name()) == element_use::read;
    const bool falls_back = has_name(child, "AccessMode") || has_name(child, "Cachable");
    if (has_name(parent, "StructEntry") && falls_back) return false;
    const auto element = tree.find(parent);
    const GenICam::node_class* made = element ? tree.at(*element).made : nullptr;
    return use_in_node(made != nullptr ? made->name : "", child.name()) == element_use::read;
}

target_list words(const speech& of, std::string_view name, std::string_view text) {
    return all(of.children([&](pugi::xml_node child) {
        return has_name(child, name) && child.child_value() == text && is_read(of.tree(), child);
    }));
}

// Invalid contents of "Sign" node ("up"
target_list node_words(const speech& of) {
    return words(of, quoted(of.message), between(of.message, "node (\"", "\""));
}

// Invalid contents ("Loud") of Float "Representation" xml node.
target_list display_words(const speech& of) {
    return words(of, quoted(behind(of.message, "\") of")), quoted(of.message));
}

target_list bindings(const speech& of) {
    const std::string_view name = between(of.message, "named=\"", "\" content=");
    const std::string_view text = between(of.message, "content=\"", "\".");
    return all(of.children([&](pugi::xml_node child) {
        return (has_name(child, "Constant") || has_name(child, "Expression")) &&
               child.attribute("Name").value() == name && begins_with(child.child_value(), text);
    }));
}

// The variables that fit by their names, and by the kind of node that theirs is; null for none.
target_list variables(const speech& of,
                      const std::function<bool(std::string_view name, GenICam::INode* node)>& fits) {
    return all(of.children([&](pugi::xml_node child) {
        if (!has_name(child, "pVariable")) return false;
        const std::vector<element_index>& found = of.tree().find(child.child_value());
        GenICam::INode* const node = !found.empty() ? of.context.subject().node_of(found.front()) : nullptr;
        return fits(child.attribute("Name").value(), node);
    }));
}

bool is_enumeration(GenICam::INode* node) {
    return node != nullptr && node->get_node_type() == GenICam::node_type::enumeration;
}

target_list variables_of_no_enumeration(const speech& of) {
    return variables(of, [](std::string_view name, GenICam::INode* node) {
        return contains(name, ".Entry") && !is_enumeration(node);
    });
}

target_list variables_of_no_entry(const speech& of) {
    return variables(of, [](std::string_view name, GenICam::INode* node) {
        constexpr std::string_view specifier = ".Entry.";
        return contains(name, ".Entry") && is_enumeration(node) &&
               static_cast<GenICam::IEnumeration*>(node)->find_entry(behind(name, specifier)) == nullptr;
    });
}

// One text serves for minimum and maximum.
target_list variables_of_no_limit(const speech& of) {
    const bool is_increment = contains(of.message, "\".Inc\"");
    return variables(of, [&](std::string_view name, GenICam::INode* node) {
        constexpr std::size_t specifier_length = 4;
        const std::string_view end = name.substr(name.size() - std::min(name.size(), specifier_length));
        const bool ends = is_increment ? end == ".Inc" : end == ".Min" || end == ".Max";
        return ends && node != nullptr && node->get_node_type() != GenICam::node_type::integer &&
               node->get_node_type() != GenICam::node_type::floating;
    });
}

/// How messages with a mark in them tell what they are about.
struct message_shape {
    std::string_view mark;
    target_list (*find)(const speech& of);
};

// In these the first name in quotes is that of a node. The first shape that fits counts.
constexpr message_shape shapes_with_node[] = {
    {"resolve_link_or_value_from_contents", defaults},
    {"\"Index\" attribute of", indexes},
    {"\"pIndex/@Offset\"", offsets},
    {"\"pIndex/@pOffset\"", offset_nodes},
    {"failed to evaluate", formula_elements},
    {"for feature=", features},
    {"set_actual_access_mode", imposed_modes},
    {"Failed to resolve node in", links_of_pairs},
    {"Invalid Length value", lengths},
    {"Failed resolve port", ports},
    {"", named_children},
};

constexpr message_shape shapes_without_node[] = {
    {"Invalid contents of", node_words},
    {"Invalid contents (", display_words},
    {"failed to parse Constant named=", bindings},
    {"did not find enumeration for", variables_of_no_enumeration},
    {"did not find entry in", variables_of_no_entry},
    {"create_resulting_entry", variables_of_no_limit},
};

// Every node and entry. What the entries of a structure share is read for each of them.
element_list all_subjects(const description_tree& tree) {
    element_list found;
    for (const node_element& element : tree.elements()) {
        found.push_back(element.xml);
        if (has_name(element.xml, "StructEntry")) found.push_back(GenICam::find_struct_frame(element.xml));
    }
    return found;
}

}  // namespace

message_targets::message_targets(const lint_context& context)
    : context_(context), subjects_(all_subjects(context.tree())) {
    for (const pugi::xml_node one : subjects_) by_name_[one.attribute("Name").value()].push_back(one);
}

// Formula nodes and ports go by other words than those of their elements.
std::vector<pugi::xml_node> message_targets::subjects_of(std::string_view message) const {
    const auto of_name = by_name_.find(quoted(message));
    if (of_name == by_name_.end()) return {};
    std::string_view kind = message.substr(0, message.find('"'));
    kind = kind.substr(0, kind.find_last_not_of(" (") + 1);
    kind = kind.substr(kind.find_last_of(' ') + 1);
    element_list of_kind;
    std::copy_if(of_name->second.begin(), of_name->second.end(), std::back_inserter(of_kind),
                 [&](pugi::xml_node one) { return has_name(one, kind); });
    return !of_kind.empty() ? of_kind : of_name->second;
}

std::vector<message_target> message_targets::find_with_node(std::string_view message) const {
    const element_list subjects = subjects_of(message);
    const speech of = {context_, message, behind(behind(message, "\""), "\""), subjects};
    for (const message_shape& shape : shapes_with_node) {
        if (!contains(message, shape.mark)) continue;
        target_list found = shape.find(of);
        return !found.empty() ? found : all(subjects);
    }
    return {};
}

// A node may pass a question on to another one, whose words then are at fault.
std::vector<message_target> message_targets::find(std::string_view message, pugi::xml_node asked) const {
    target_list found = find_without_node(message, asked);
    const bool names_node =
        contains(message, "(\"") || contains(message, " \"") || contains(message, "node=\"");
    const bool stays_vague = contains(message, "RegisterNodeTemplate") || contains(message, "math_parser");
    if (found.empty() && names_node && !stays_vague) found = find_with_node(message);
    if (found.empty() && asked) found.push_back({asked, {}});
    return found;
}

std::vector<message_target> message_targets::find_without_node(std::string_view message,
                                                               pugi::xml_node asked) const {
    for (const message_shape& shape : shapes_without_node) {
        if (!contains(message, shape.mark)) continue;
        target_list found = asked ? shape.find({context_, message, {}, {asked}}) : target_list();
        return !found.empty() ? found : shape.find({context_, message, {}, subjects_});
    }
    return {};
}

}  // namespace selvane_inspect
