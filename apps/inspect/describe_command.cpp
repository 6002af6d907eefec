#include "apps/inspect/commands.h"
#include "apps/inspect/value_sources.h"
#include "genicam/document/node_facts.h"
#include "genicam/ieval.h"

#include <algorithm>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

using GenICam::INode;
using nlohmann::ordered_json;

/// An element inside a feature's, or inside the frame that a feature shares with others.
struct shown_element {
    pugi::xml_node xml;
    std::size_t depth;
};

void collect_elements(pugi::xml_node parent, std::size_t depth, std::vector<shown_element>& elements) {
    constexpr std::size_t max_depth = 8;
    for (const pugi::xml_node child : parent.children()) {
        if (child.type() != pugi::node_element || depth > max_depth) continue;
        elements.push_back({child, depth});
        collect_elements(child, depth + 1, elements);
    }
}

// What a structure holds for all of its entries, without the entries.
void collect_struct_reg(pugi::xml_node struct_reg, std::vector<shown_element>& elements) {
    elements.push_back({struct_reg, 0});
    for (const pugi::xml_node child : struct_reg.children()) {
        const std::string_view name = child.name();
        if (child.type() != pugi::node_element || name == "StructEntry" || name == "Group") continue;
        elements.push_back({child, 1});
        collect_elements(child, 2, elements);
    }
}

std::vector<shown_element> find_elements(pugi::xml_node feature) {
    std::vector<shown_element> elements;
    collect_elements(feature, 0, elements);
    const pugi::xml_node struct_reg = GenICam::register_element_of(feature);
    if (struct_reg != feature) collect_struct_reg(struct_reg, elements);
    return elements;
}

// Of an enumeration; NI and NA for the access as for a feature.
ordered_json find_entries(feature_reader& reader, INode& feature) {
    auto entries = ordered_json::array();
    if (feature.get_node_type() != GenICam::node_type::enumeration) return entries;
    for (GenICam::IEnumEntry* entry : static_cast<GenICam::IEnumeration&>(feature).get_entries()) {
        ordered_json& shown = entries.emplace_back();
        shown["name"] = entry->get_name();
        shown["display_name"] = entry->get_display_name();
        shown["value"] = entry->get_value();
        if (const auto number = entry->get_numeric_value()) shown["numeric_value"] = *number;
        shown["access"] = reader.access_state(*entry);
    }
    return entries;
}

// The features, and entries of enumerations, whose elements name the feature.
ordered_json find_direct(const description& in, const operation_graph& graph, INode& feature) {
    auto found = ordered_json::array();
    for (element_index at = 0; at < in.tree().elements().size(); ++at) {
        const node_element& element = in.tree().at(at);
        graph.for_each_link(at, [&](const element_link& link) {
            if (link.target != feature.get_name()) return;
            ordered_json& one = found.emplace_back();
            one["name"] = element.name;
            const char* const owner = element.xml.parent().attribute("Name").value();
            if (element.made == nullptr && *owner != 0) one["enumeration"] = owner;
            one["role"] = link.role;
        });
    }
    return found;
}

// What the engine holds for stale after a write.
std::vector<std::string> find_invalidated(INode& feature) {
    std::vector<std::string> names;
    for (GenICam::IEval* eval : feature.get_eval()->get_dependents())
        names.emplace_back(eval->get_node()->get_name());
    std::sort(names.begin(), names.end());
    return names;
}

struct shown_flag {
    const char* name;
    operation asked;
};
constexpr shown_flag shown_flags[] = {{"implemented", operation::implemented},
                                      {"available", operation::available},
                                      {"locked", operation::locked}};

/// Everything about one feature.
class feature_facts {
public:
    feature_facts(description& in, evaluation_guard& guard, INode& node)
        : tree_(in.tree()),
          path_(in.path()),
          reader_(guard),
          node_(node),
          element_(tree_.at(*tree_.find(node))),
          elements_(find_elements(element_.xml)),
          entries_(find_entries(reader_, node)),
          sources_(find_sources(in, guard, node)),
          direct_(find_direct(in, guard.graph(), node)),
          invalidated_(find_invalidated(node)) {}

    void print(std::ostream& out);
    [[nodiscard]] ordered_json as_json();

private:
    void print_identity(std::ostream& out) const;
    void print_state(std::ostream& out);
    void print_elements(std::ostream& out) const;
    void print_entries(std::ostream& out) const;
    void print_dependents(std::ostream& out) const;
    [[nodiscard]] ordered_json elements_json() const;

    const description_tree& tree_;
    const std::string& path_;
    feature_reader reader_;
    INode& node_;
    const node_element& element_;
    std::vector<shown_element> elements_;
    ordered_json entries_;
    value_source sources_;
    ordered_json direct_;  // in document order
    std::vector<std::string> invalidated_;
};

std::string flag_text(const answer<bool>& flag) {
    if (!flag.value) return "unknown (" + flag.failure + ")";
    return *flag.value ? "yes" : "no";
}

void print_line(std::ostream& out, std::string_view what, std::string_view is) {
    if (!is.empty()) write_line(out, fmt::format("  {:<14}{}", what, on_one_line(is)));
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

void feature_facts::print_identity(std::ostream& out) const {
    const text_position at = tree_.position_of(element_.xml);
    write_line(out, fmt::format("{} ({}, class {}), {}:{}:{}", node_.get_name(), element_.xml.name(),
                                element_.made->name, path_, at.line, at.column));
    print_line(out, "display name", node_.get_display_name());
    print_line(out, "tool tip", node_.get_tooltip());
    print_line(out, "description", node_.get_description());
    print_line(out, "visibility", visibility_word(node_.get_visibility()));
}

void feature_facts::print_state(std::ostream& out) {
    const feature_state state = reader_.read(node_);
    print_line(out, "access", state.access);
    for (const shown_flag& flag : shown_flags)
        print_line(out, flag.name, flag_text(reader_.read_flag(node_, flag.asked)));
    const std::string value =
        state.value.value ? value_text(*state.value.value, state.style, some_bytes) : state.value.failure;
    print_line(out, "value", value + (state.value.value && !state.unit.empty() ? " " + state.unit : ""));
    print_line(out, "range", range_text(state));
    if (state.default_value) print_line(out, "default", value_text(*state.default_value, state.style));
}

void feature_facts::print_elements(std::ostream& out) const {
    out << "  elements\n";
    for (const shown_element& element : elements_) {
        std::string attributes;
        for (const pugi::xml_attribute one : element.xml.attributes())
            attributes += fmt::format(" {}=\"{}\"", one.name(), on_one_line(one.value()));
        const std::string text = on_one_line(element.xml.child_value());
        write_line(out, fmt::format("    {:>6}  {}{}{}{}{}", tree_.position_of(element.xml).line,
                                    std::string(element.depth * 2, ' '), element.xml.name(), attributes,
                                    text.empty() ? "" : ": ", text));
    }
}

void feature_facts::print_entries(std::ostream& out) const {
    if (entries_.empty()) return;
    out << "  entries\n";
    for (const ordered_json& entry : entries_) {
        const auto name = entry["name"].get<std::string>();
        const auto access = entry["access"].get<std::string>();
        const std::string number = entry.contains("numeric_value")
                                       ? ", as a float " + number_text(entry["numeric_value"].get<double>())
                                       : std::string();
        write_line(out, fmt::format("    {} = {}{}{}", name, entry["value"].get<std::int64_t>(), number,
                                    access.front() == 'N' ? " (" + access + ")" : ""));
    }
}

void feature_facts::print_dependents(std::ostream& out) const {
    out << "  what names it\n";
    if (direct_.empty()) out << "    nothing\n";
    for (const ordered_json& one : direct_) {
        const std::string enumeration = one.value("enumeration", "");
        write_line(out, fmt::format("    {}{}{} ({})", enumeration, enumeration.empty() ? "" : " entry ",
                                    one["name"].get<std::string>(), one["role"].get<std::string>()));
    }
    if (invalidated_.empty()) return;
    out << "  what a write makes stale\n";
    print_names(out, invalidated_);
}

void feature_facts::print(std::ostream& out) {
    print_identity(out);
    print_state(out);
    print_elements(out);
    print_entries(out);
    if (has_sources(sources_)) out << "  where it comes from\n" << sources_text(sources_);
    print_dependents(out);
}

ordered_json feature_facts::elements_json() const {
    auto json = ordered_json::array();
    for (const shown_element& element : elements_) {
        const text_position at = tree_.position_of(element.xml);
        ordered_json& one = json.emplace_back();
        one["name"] = element.xml.name();
        one["depth"] = element.depth;
        one["text"] = element.xml.child_value();
        for (const pugi::xml_attribute attribute : element.xml.attributes())
            one["attributes"][attribute.name()] = attribute.value();
        one["line"] = at.line;
        one["column"] = at.column;
    }
    return json;
}

ordered_json feature_facts::as_json() {
    ordered_json json = to_json(reader_.read(node_));
    const text_position at = tree_.position_of(element_.xml);
    json["element"] = element_.xml.name();
    json["class"] = element_.made->name;
    json["line"] = at.line;
    json["column"] = at.column;
    json["display_name"] = node_.get_display_name();
    json["tool_tip"] = node_.get_tooltip();
    json["description"] = node_.get_description();
    json["visibility"] = visibility_word(node_.get_visibility());
    for (const shown_flag& flag : shown_flags) {
        const answer<bool> given = reader_.read_flag(node_, flag.asked);
        json[flag.name] = given.value ? ordered_json(*given.value) : ordered_json();
    }
    json["elements"] = elements_json();
    if (node_.get_node_type() == GenICam::node_type::enumeration) json["entries"] = entries_;
    json["sources"] = sources_json(sources_);
    json["named_by"] = direct_;
    json["invalidates"] = invalidated_;
    return json;
}

}  // namespace

int describe(const describe_options& options, const channels& to) {
    const auto opened = open(options.input);
    evaluation_guard guard(*opened);
    ordered_json json = {{"command", "describe"}, {"file", opened->path()}};
    json["features"] = ordered_json::array();
    bool first = true;
    for (INode* node : find_features(*opened, options.features)) {
        feature_facts facts(*opened, guard, *node);
        if (to.json) {
            json["features"].push_back(facts.as_json());
            continue;
        }
        if (!first) to.out << '\n';
        first = false;
        facts.print(to.out);
    }
    if (to.json) write_json(to.out, json);
    return exit_code::fine;
}

}  // namespace selvane_inspect
