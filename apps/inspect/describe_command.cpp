#include "apps/inspect/commands.h"
#include "apps/inspect/value_sources.h"
#include "genicam/document/node_facts.h"
#include "genicam/ieval.h"
#include "inspection/feature_reader.h"

#include <algorithm>
#include <sstream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

using GenICam::INode;
using nlohmann::ordered_json;

// The entries of an enumeration; NI and NA for the access as for a feature.
told_part find_entries(feature_reader& reader, INode& feature) {
    told_part entries;
    if (feature.get_node_type() != GenICam::node_type::enumeration) return entries;
    entries.json = ordered_json::array();
    for (GenICam::IEnumEntry* entry : static_cast<GenICam::IEnumeration&>(feature).get_entries()) {
        const std::string_view access = reader.access_state(*entry);
        const auto number = entry->get_numeric_value();
        entries.text += visible_text(fmt::format("    {} = {}{}{}", entry->get_name(), entry->get_value(),
                                                 number ? ", as a float " + number_text(*number) : "",
                                                 access.front() == 'N' ? fmt::format(" ({})", access) : ""));
        entries.text += '\n';
        ordered_json& shown = entries.json.emplace_back();
        shown["name"] = entry->get_name();
        shown["display_name"] = entry->get_display_name();
        shown["value"] = entry->get_value();
        if (number) shown["numeric_value"] = *number;
        shown["access"] = access;
    }
    return entries;
}

struct shown_flag {
    const char* name;
    operation asked;
};
constexpr shown_flag shown_flags[] = {{"implemented", operation::implemented},
                                      {"available", operation::available},
                                      {"locked", operation::locked}};

std::string flag_text(const answer<bool>& flag) {
    if (!flag.value) return "unknown (" + flag.failure + ")";
    return *flag.value ? "yes" : "no";
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

/// Tells everything about one feature, as text and as data.
class feature_teller {
public:
    feature_teller(description& in, evaluation_guard& guard, INode& node, std::ostream& out)
        : in_(in),
          guard_(guard),
          reader_(guard),
          node_(node),
          element_(in.tree().at(*in.tree().find(node))),
          out_(out) {}

    [[nodiscard]] ordered_json tell();

private:
    void add_line(std::string_view what, std::string_view is);
    void tell_identity();
    void tell_text(std::string_view what, const char* key, std::string_view is);
    void tell_state(const feature_state& state);
    void tell_elements();
    void tell_children(pugi::xml_node parent, std::size_t depth, const GenICam::name_list& left_out);
    void tell_element(pugi::xml_node xml, std::size_t depth);
    void tell_references();
    void tell_invalidated();

    description& in_;
    evaluation_guard& guard_;
    feature_reader reader_;
    INode& node_;
    const node_element& element_;
    std::ostream& out_;
    ordered_json json_;
};

// The sources are read first: what is read of them shall not be what the feature has left in its caches.
ordered_json feature_teller::tell() {
    told_part entries = find_entries(reader_, node_);
    told_part sources = find_sources(in_, guard_, node_);
    const feature_state state = reader_.read(node_);
    json_ = to_json(state);
    tell_identity();
    tell_state(state);
    tell_elements();
    if (!entries.text.empty()) out_ << "  entries\n" << entries.text;
    if (!entries.json.is_null()) json_["entries"] = std::move(entries.json);
    if (!sources.text.empty()) out_ << "  where it comes from\n" << sources.text;
    json_["sources"] = std::move(sources.json);
    tell_references();
    tell_invalidated();
    return std::move(json_);
}

void feature_teller::add_line(std::string_view what, std::string_view is) {
    if (!is.empty()) write_line(out_, fmt::format("  {:<14}{}", what, on_one_line(is)));
}

void feature_teller::tell_identity() {
    const text_position at = in_.tree().position_of(element_.xml);
    write_line(out_, fmt::format("{} ({}, class {}), {}:{}:{}", node_.get_name(), element_.xml.name(),
                                 element_.made->name, in_.path(), at.line, at.column));
    json_["element"] = element_.xml.name();
    json_["class"] = element_.made->name;
    json_["line"] = at.line;
    json_["column"] = at.column;
    tell_text("display name", "display_name", node_.get_display_name());
    tell_text("tool tip", "tool_tip", node_.get_tooltip());
    tell_text("description", "description", node_.get_description());
    tell_text("visibility", "visibility", visibility_word(node_.get_visibility()));
}

void feature_teller::tell_text(std::string_view what, const char* key, std::string_view is) {
    add_line(what, is);
    json_[key] = is;
}

void feature_teller::tell_state(const feature_state& state) {
    add_line("access", state.access);
    for (const shown_flag& flag : shown_flags) {
        const answer<bool> given = reader_.read_flag(node_, flag.asked);
        add_line(flag.name, flag_text(given));
        json_[flag.name] = given.value ? ordered_json(*given.value) : ordered_json();
    }
    const std::string value =
        state.value.value ? value_text(*state.value.value, state.style, some_bytes) : state.value.failure;
    add_line("value", value + (state.value.value && !state.unit.empty() ? " " + state.unit : ""));
    add_line("range", range_text(state));
    if (state.default_value) add_line("default", value_text(*state.default_value, state.style));
}

// Those inside the feature's element; then the structure that it shares with others, without the others.
void feature_teller::tell_elements() {
    constexpr GenICam::name_list sharers = "StructEntry Group";
    out_ << "  elements\n";
    json_["elements"] = ordered_json::array();
    tell_children(element_.xml, 0, {});
    const pugi::xml_node struct_reg = GenICam::register_element_of(element_.xml);
    if (struct_reg == element_.xml) return;
    tell_element(struct_reg, 0);
    tell_children(struct_reg, 1, sharers);
}

void feature_teller::tell_children(pugi::xml_node parent, std::size_t depth,
                                   const GenICam::name_list& left_out) {
    constexpr std::size_t max_depth = 8;
    for (const pugi::xml_node child : parent.children()) {
        if (child.type() != pugi::node_element || left_out.contains(child.name())) continue;
        tell_element(child, depth);
        if (depth < max_depth) tell_children(child, depth + 1, {});
    }
}

void feature_teller::tell_element(pugi::xml_node xml, std::size_t depth) {
    const text_position at = in_.tree().position_of(xml);
    ordered_json& json = json_["elements"].emplace_back();
    json["name"] = xml.name();
    json["depth"] = depth;
    json["text"] = xml.child_value();
    std::string attributes;
    for (const pugi::xml_attribute one : xml.attributes()) {
        attributes += fmt::format(" {}=\"{}\"", one.name(), on_one_line(one.value()));
        json["attributes"][one.name()] = one.value();
    }
    json["line"] = at.line;
    json["column"] = at.column;
    const std::string text = on_one_line(xml.child_value());
    write_line(out_, fmt::format("    {:>6}  {}{}{}{}{}", at.line, std::string(depth * 2, ' '), xml.name(),
                                 attributes, text.empty() ? "" : ": ", text));
}

// The features, and entries of enumerations, whose elements name the feature, in document order.
void feature_teller::tell_references() {
    out_ << "  what names it\n";
    auto references = ordered_json::array();
    for (element_index at = 0; at < in_.tree().elements().size(); ++at) {
        const node_element& element = in_.tree().at(at);
        guard_.graph().for_each_link(at, [&](const element_link& link) {
            if (link.target != node_.get_name()) return;
            const char* const owner = element.xml.parent().attribute("Name").value();
            const bool is_entry = element.made == nullptr && *owner != 0;
            write_line(out_, fmt::format("    {}{}{} ({})", is_entry ? owner : "", is_entry ? " entry " : "",
                                         element.name, link.role));
            ordered_json& one = references.emplace_back();
            one["name"] = element.name;
            if (is_entry) one["enumeration"] = owner;
            one["role"] = link.role;
        });
    }
    if (references.empty()) out_ << "    nothing\n";
    json_["named_by"] = std::move(references);
}

// What the engine holds for stale after a write.
void feature_teller::tell_invalidated() {
    std::vector<std::string> names;
    for (GenICam::IEval* eval : node_.get_eval()->get_dependents())
        names.emplace_back(eval->get_node()->get_name());
    std::sort(names.begin(), names.end());
    json_["invalidates"] = names;
    if (names.empty()) return;
    out_ << "  what a write makes stale\n";
    print_names(out_, names);
}

}  // namespace

int describe(const describe_options& options, const channels& to) {
    const auto opened = open(options.input);
    evaluation_guard guard(*opened);
    ordered_json json = {{"command", "describe"}, {"file", opened->path()}};
    json["features"] = ordered_json::array();
    bool first = true;
    for (INode* node : find_features(*opened, options.features)) {
        std::ostringstream text;
        ordered_json told = feature_teller(*opened, guard, *node, text).tell();
        if (to.json) {
            json["features"].push_back(std::move(told));
        } else {
            to.out << (first ? "" : "\n") << text.str();
        }
        first = false;
    }
    if (to.json) write_json(to.out, json);
    return exit_code::fine;
}

}  // namespace selvane_inspect
