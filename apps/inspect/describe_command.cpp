#include "apps/inspect/command.h"
#include "apps/inspect/description_options.h"
#include "apps/inspect/feature_reader.h"
#include "apps/inspect/value_sources.h"
#include "genicam/ieval.h"

#include <algorithm>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

using GenICam::INode;

struct describe_options {
    description_options input;
    std::vector<std::string> features;
};

/// An element inside a feature's.
struct shown_element {
    std::size_t depth;
    std::string name;
    std::string attributes;
    std::string text;
    text_position at;
};

struct dependent {
    std::string name;
    std::string role;
};

/// Everything about a feature that is not its state.
struct feature_facts {
    element_index element;
    std::vector<shown_element> elements;
    value_source sources;
    std::vector<dependent> direct;         ///< whose elements name the feature
    std::vector<std::string> invalidated;  ///< what the engine holds for stale after a write
};

void collect_elements(const description_tree& tree, pugi::xml_node parent, std::size_t depth,
                      std::vector<shown_element>& elements) {
    constexpr std::size_t max_depth = 8;
    for (const pugi::xml_node child : parent.children()) {
        if (child.type() != pugi::node_element || depth > max_depth) continue;
        std::string attributes;
        for (const pugi::xml_attribute one : child.attributes()) {
            attributes += fmt::format(" {}=\"{}\"", one.name(), one.value());
        }
        elements.push_back({depth, child.name(), attributes, child.child_value(), tree.position_of(child)});
        collect_elements(tree, child, depth + 1, elements);
    }
}

std::vector<dependent> find_direct(const description& in, const operation_graph& graph, INode& node) {
    std::vector<dependent> found;
    for (element_index at = 0; at < in.tree().elements().size(); ++at) {
        for (const element_link& link : graph.links(at)) {
            if (link.target == node.get_name())
                found.push_back({std::string(in.tree().at(at).name), std::string(link.role)});
        }
    }
    return found;
}

std::vector<std::string> find_invalidated(INode& node) {
    std::vector<std::string> names;
    for (GenICam::IEval* eval : node.get_eval()->get_dependents())
        names.emplace_back(eval->get_node()->get_name());
    std::sort(names.begin(), names.end());
    return names;
}

feature_facts find_facts(description& in, evaluation_guard& guard, INode& node) {
    feature_facts facts;
    facts.element = *in.tree().find(node);
    collect_elements(in.tree(), in.tree().at(facts.element).xml, 0, facts.elements);
    facts.sources = find_sources(in, guard, node);
    facts.direct = find_direct(in, guard.graph(), node);
    facts.invalidated = find_invalidated(node);
    return facts;
}

std::string flag_text(const answer<bool>& flag) {
    if (!flag.value) return "unknown (" + flag.failure + ")";
    return *flag.value ? "yes" : "no";
}

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
    return text;
}

void print_identity(std::ostream& out, const description& in, INode& node, const feature_facts& facts) {
    const node_element& element = in.tree().at(facts.element);
    const text_position at = in.tree().position_of(element.xml);
    out << fmt::format("{} ({}, class {}), {}:{}:{}\n", node.get_name(), element.xml.name(),
                       element.made->name, in.path(), at.line, at.column);
    const auto line = [&](std::string_view what, std::string_view is) {
        if (!is.empty()) out << fmt::format("  {:<14}{}\n", what, is);
    };
    line("display name", node.get_display_name());
    line("tool tip", node.get_tooltip());
    line("description", node.get_description());
    line("visibility", visibility_word(node.get_visibility()));
}

void print_state(std::ostream& out, feature_reader& reader, INode& node) {
    const auto line = [&](std::string_view what, const std::string& is) {
        if (!is.empty()) out << fmt::format("  {:<14}{}\n", what, is);
    };
    const feature_state state = reader.read(node);
    line("access", std::string(state.access));
    line("implemented", flag_text(reader.read_flag(node, operation::implemented)));
    line("available", flag_text(reader.read_flag(node, operation::available)));
    line("locked", flag_text(reader.read_flag(node, operation::locked)));
    const std::string value =
        state.value.value ? value_text(*state.value.value, state.style) : state.value.failure;
    line("value", value + (state.value.value && !state.unit.empty() ? " " + state.unit : ""));
    line("range", range_text(state));
    if (state.default_value) line("default", value_text(*state.default_value, state.style));
}

void print_facts(std::ostream& out, const feature_facts& facts) {
    out << "  elements\n";
    for (const shown_element& element : facts.elements) {
        out << fmt::format("    {:>6}  {}{}{}{}{}\n", element.at.line, std::string(element.depth * 2, ' '),
                           element.name, element.attributes, element.text.empty() ? "" : ": ", element.text);
    }
    out << "  where it comes from\n" << sources_text(facts.sources);
    out << "  what names it\n";
    for (const dependent& one : facts.direct) out << fmt::format("    {} ({})\n", one.name, one.role);
    if (!facts.invalidated.empty())
        out << "  what a write makes stale\n    " << joined(facts.invalidated) << '\n';
}

nlohmann::ordered_json flag_json(const answer<bool>& flag) {
    if (flag.value) return *flag.value;
    return nullptr;
}

nlohmann::ordered_json as_json(const description& in, feature_reader& reader, INode& node,
                               const feature_facts& facts) {
    nlohmann::ordered_json json = to_json(reader.read(node));
    const node_element& element = in.tree().at(facts.element);
    const text_position at = in.tree().position_of(element.xml);
    json["element"] = element.xml.name();
    json["class"] = element.made->name;
    json["line"] = at.line;
    json["column"] = at.column;
    json["display_name"] = node.get_display_name();
    json["tool_tip"] = node.get_tooltip();
    json["description"] = node.get_description();
    json["visibility"] = visibility_word(node.get_visibility());
    json["implemented"] = flag_json(reader.read_flag(node, operation::implemented));
    json["available"] = flag_json(reader.read_flag(node, operation::available));
    json["locked"] = flag_json(reader.read_flag(node, operation::locked));
    json["elements"] = nlohmann::ordered_json::array();
    for (const shown_element& one : facts.elements) {
        json["elements"].push_back({{"name", one.name},
                                    {"depth", one.depth},
                                    {"text", one.text},
                                    {"line", one.at.line},
                                    {"column", one.at.column}});
    }
    json["sources"] = sources_json(facts.sources);
    json["named_by"] = nlohmann::ordered_json::array();
    for (const dependent& one : facts.direct)
        json["named_by"].push_back({{"name", one.name}, {"role", one.role}});
    json["invalidates"] = facts.invalidated;
    return json;
}

int describe(const describe_options& options, const channels& to) {
    const auto opened = open(options.input);
    evaluation_guard guard(*opened);
    feature_reader reader(guard);
    nlohmann::ordered_json json = {{"command", "describe"}, {"file", opened->path()}};
    json["features"] = nlohmann::ordered_json::array();
    bool first = true;
    for (INode* node : find_features(*opened, options.features)) {
        const feature_facts facts = find_facts(*opened, guard, *node);
        if (to.json) {
            json["features"].push_back(as_json(*opened, reader, *node, facts));
            continue;
        }
        if (!first) to.out << '\n';
        first = false;
        print_identity(to.out, *opened, *node, facts);
        print_state(to.out, reader, *node);
        print_facts(to.out, facts);
    }
    if (to.json) write_json(to.out, json);
    return exit_code::fine;
}

}  // namespace

void add_describe(command_set& commands) {
    CLI::App* command = nullptr;
    describe_options& options = commands.add(
        "describe", "Everything about features: elements, where the value comes from, what depends on it",
        describe, command);
    add_description_options(*command, options.input);
    command->add_option("FEATURE", options.features, "Names of features")->required()->type_name("");
}

}  // namespace selvane_inspect
