#include "apps/inspect/feature_facts.h"

#include "genicam/document/node_facts.h"
#include "genicam/ieval.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

using GenICam::INode;

bool is_named(pugi::xml_node element, std::string_view name) { return element.name() == name; }

shown_element show(const description_tree& tree, pugi::xml_node element, std::size_t depth) {
    shown_element shown = {depth, element.name(), {}, element.child_value(), tree.position_of(element)};
    for (const pugi::xml_attribute one : element.attributes())
        shown.attributes.emplace_back(one.name(), one.value());
    return shown;
}

void collect_elements(const description_tree& tree, pugi::xml_node parent, std::size_t depth,
                      std::vector<shown_element>& elements) {
    constexpr std::size_t max_depth = 8;
    for (const pugi::xml_node child : parent.children()) {
        if (child.type() != pugi::node_element || depth > max_depth) continue;
        elements.push_back(show(tree, child, depth));
        collect_elements(tree, child, depth + 1, elements);
    }
}

// What a structure holds for all of its entries, without the entries.
void collect_struct_reg(const description_tree& tree, pugi::xml_node struct_reg,
                        std::vector<shown_element>& elements) {
    elements.push_back(show(tree, struct_reg, 0));
    for (const pugi::xml_node child : struct_reg.children()) {
        if (child.type() != pugi::node_element || is_named(child, "StructEntry") || is_named(child, "Group"))
            continue;
        elements.push_back(show(tree, child, 1));
        collect_elements(tree, child, 2, elements);
    }
}

std::vector<shown_element> find_elements(const description_tree& tree, pugi::xml_node feature) {
    std::vector<shown_element> elements;
    collect_elements(tree, feature, 0, elements);
    const pugi::xml_node struct_reg = GenICam::register_element_of(feature);
    if (struct_reg != feature) collect_struct_reg(tree, struct_reg, elements);
    return elements;
}

std::vector<shown_entry> find_entries(feature_reader& reader, INode& feature) {
    std::vector<shown_entry> shown;
    if (feature.get_node_type() != GenICam::node_type::enumeration) return shown;
    for (GenICam::IEnumEntry* entry : static_cast<GenICam::IEnumeration&>(feature).get_entries()) {
        shown.push_back({std::string(entry->get_name()), std::string(entry->get_display_name()),
                         entry->get_value(), entry->get_numeric_value(), reader.access_state(*entry)});
    }
    return shown;
}

std::vector<dependent> find_direct(const description& in, const operation_graph& graph, INode& feature) {
    std::vector<dependent> found;
    for (element_index at = 0; at < in.tree().elements().size(); ++at) {
        const node_element& element = in.tree().at(at);
        const bool is_entry = element.made == nullptr;
        for (const element_link& link : graph.links(at)) {
            if (link.target != feature.get_name()) continue;
            found.push_back({std::string(element.name),
                             is_entry ? element.xml.parent().attribute("Name").value() : "",
                             std::string(link.role)});
        }
    }
    return found;
}

std::vector<std::string> find_invalidated(INode& feature) {
    std::vector<std::string> names;
    for (GenICam::IEval* eval : feature.get_eval()->get_dependents())
        names.emplace_back(eval->get_node()->get_name());
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

feature_facts find_facts(description& in, evaluation_guard& guard, INode& feature) {
    feature_reader reader(guard);
    feature_facts facts;
    facts.element = *in.tree().find(feature);
    facts.elements = find_elements(in.tree(), in.tree().at(facts.element).xml);
    facts.entries = find_entries(reader, feature);
    facts.sources = find_sources(in, guard, feature);
    facts.direct = find_direct(in, guard.graph(), feature);
    facts.invalidated = find_invalidated(feature);
    return facts;
}

nlohmann::ordered_json to_json(const shown_element& element) {
    nlohmann::ordered_json json = {{"name", element.name}, {"depth", element.depth}, {"text", element.text}};
    for (const auto& [name, text] : element.attributes) json["attributes"][name] = text;
    json["line"] = element.at.line;
    json["column"] = element.at.column;
    return json;
}

nlohmann::ordered_json to_json(const shown_entry& entry) {
    nlohmann::ordered_json json = {
        {"name", entry.name}, {"display_name", entry.display_name}, {"value", entry.value}};
    if (entry.number) json["numeric_value"] = *entry.number;
    json["access"] = entry.access;
    return json;
}

nlohmann::ordered_json to_json(const dependent& one) {
    nlohmann::ordered_json json = {{"name", one.name}};
    if (!one.enumeration.empty()) json["enumeration"] = one.enumeration;
    json["role"] = one.role;
    return json;
}

}  // namespace selvane_inspect
