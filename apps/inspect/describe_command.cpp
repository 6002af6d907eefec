#include "apps/inspect/commands.h"
#include "apps/inspect/feature_facts.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

using GenICam::INode;

std::string flag_text(const answer<bool>& flag) {
    if (!flag.value) return "unknown (" + flag.failure + ")";
    return *flag.value ? "yes" : "no";
}

void print_line(std::ostream& out, std::string_view what, std::string_view is) {
    if (!is.empty()) write_line(out, fmt::format("  {:<14}{}", what, on_one_line(is)));
}

void print_identity(std::ostream& out, const description& in, INode& node, const feature_facts& facts) {
    const node_element& element = in.tree().at(facts.element);
    const text_position at = in.tree().position_of(element.xml);
    write_line(out, fmt::format("{} ({}, class {}), {}:{}:{}", node.get_name(), element.xml.name(),
                                element.made->name, in.path(), at.line, at.column));
    print_line(out, "display name", node.get_display_name());
    print_line(out, "tool tip", node.get_tooltip());
    print_line(out, "description", node.get_description());
    print_line(out, "visibility", visibility_word(node.get_visibility()));
}

void print_state(std::ostream& out, feature_reader& reader, INode& node) {
    const feature_state state = reader.read(node);
    print_line(out, "access", state.access);
    print_line(out, "implemented", flag_text(reader.read_flag(node, operation::implemented)));
    print_line(out, "available", flag_text(reader.read_flag(node, operation::available)));
    print_line(out, "locked", flag_text(reader.read_flag(node, operation::locked)));
    const std::string value =
        state.value.value ? value_text(*state.value.value, state.style, some_bytes) : state.value.failure;
    print_line(out, "value", value + (state.value.value && !state.unit.empty() ? " " + state.unit : ""));
    print_line(out, "range", range_text(state));
    if (state.default_value) print_line(out, "default", value_text(*state.default_value, state.style));
}

void print_elements(std::ostream& out, const std::vector<shown_element>& elements) {
    out << "  elements\n";
    for (const shown_element& element : elements) {
        std::string attributes;
        for (const auto& [name, text] : element.attributes)
            attributes += fmt::format(" {}=\"{}\"", name, on_one_line(text));
        const std::string text = on_one_line(element.text);
        write_line(out,
                   fmt::format("    {:>6}  {}{}{}{}{}", element.at.line, std::string(element.depth * 2, ' '),
                               element.name, attributes, text.empty() ? "" : ": ", text));
    }
}

void print_entries(std::ostream& out, const std::vector<shown_entry>& entries) {
    if (entries.empty()) return;
    out << "  entries\n";
    for (const shown_entry& entry : entries) {
        const std::string number =
            entry.number ? fmt::format(", as a float {}", number_text(*entry.number)) : std::string();
        write_line(out, fmt::format("    {} = {}{}{}", entry.name, entry.value, number,
                                    entry.access.front() == 'N' ? fmt::format(" ({})", entry.access) : ""));
    }
}

// Names on lines of a readable length.
void print_names(std::ostream& out, const std::vector<std::string>& names) {
    constexpr std::size_t width = 100;
    std::string line = "   ";
    for (std::size_t at = 0; at < names.size(); ++at) {
        const std::string word = " " + names[at] + (at + 1 < names.size() ? "," : "");
        if (line.size() > 3 && line.size() + word.size() > width) {
            write_line(out, line);
            line = "   ";
        }
        line += word;
    }
    write_line(out, line);
}

void print_dependents(std::ostream& out, const feature_facts& facts) {
    out << "  what names it\n";
    if (facts.direct.empty()) out << "    nothing\n";
    for (const dependent& one : facts.direct) {
        write_line(out, fmt::format("    {}{}{} ({})", one.enumeration,
                                    one.enumeration.empty() ? "" : " entry ", one.name, one.role));
    }
    if (facts.invalidated.empty()) return;
    out << "  what a write makes stale\n";
    print_names(out, facts.invalidated);
}

void print_facts(std::ostream& out, const feature_facts& facts) {
    print_elements(out, facts.elements);
    print_entries(out, facts.entries);
    if (has_sources(facts.sources)) out << "  where it comes from\n" << sources_text(facts.sources);
    print_dependents(out, facts);
}

template <class Shown>
nlohmann::ordered_json list_json(const std::vector<Shown>& list) {
    auto json = nlohmann::ordered_json::array();
    for (const Shown& one : list) json.push_back(to_json(one));
    return json;
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
    json["elements"] = list_json(facts.elements);
    if (node.get_node_type() == GenICam::node_type::enumeration) json["entries"] = list_json(facts.entries);
    json["sources"] = sources_json(facts.sources);
    json["named_by"] = list_json(facts.direct);
    json["invalidates"] = facts.invalidated;
    return json;
}

}  // namespace

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

}  // namespace selvane_inspect
