#include "apps/inspect/value_sources.h"

#include "apps/inspect/formula_text.h"
#include "apps/inspect/lint/formula_outline.h"
#include "genicam/document/node_facts.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <unordered_set>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

// Links that have no part in what a node answers.
constexpr GenICam::name_list idle_roles =
    "pFeature pInvalidator pSelected pPort pAlias pCastAlias pBlockPolling pError pTerminal pDependent";
constexpr GenICam::name_list register_elements =
    "IntReg FloatReg Register StringReg MaskedIntReg StructEntry";
constexpr GenICam::name_list field_elements = "MaskedIntReg StructEntry";
constexpr GenICam::name_list block_elements = "StringReg Register";

std::optional<std::uint64_t> mask_of(pugi::xml_node element, std::size_t length) {
    const bool is_field = field_elements.contains(element.name());
    if (!is_field || length == 0 || length > sizeof(std::uint64_t)) return std::nullopt;
    return GenICam::field_bits_of(element, static_cast<std::int64_t>(length));
}

std::string_view byte_order_word(pugi::xml_node element, std::size_t length) {
    if (length < 2 || block_elements.contains(element.name())) return {};
    return GenICam::byte_order_of(element) == GenICam::Endianess::LittleEndian ? "LittleEndian" : "BigEndian";
}

// The node's own access is the last one: those before it belong to its address.
std::optional<register_state> probe_register(traced_port& port, GenICam::INode& node, pugi::xml_node xml) {
    constexpr std::uint32_t past_everything =
        GenICam::access_flags::bypass_cache | GenICam::access_flags::skip_access_check;
    const silence quiet;
    static_cast<void>(port.take());
    try {
        static_cast<void>(engine_value(node, past_everything));
    } catch (const std::exception&) {
        return std::nullopt;  // a length that nobody reads, or no memory has room for
    }
    const std::vector<port_access> accesses = port.take();
    if (accesses.empty()) return std::nullopt;
    const simcam::bytes& data = accesses.back().data;
    return register_state{accesses.back().address, data, mask_of(xml, data.size()),
                          byte_order_word(xml, data.size())};
}

std::string port_defect(GenICam::IGenICamDoc& document, pugi::xml_node xml) {
    const std::string_view stated = GenICam::register_element_of(xml).child_value("pPort");
    const std::string name(stated.empty() ? "Device" : stated);
    GenICam::INode* const port = document.find_port(name);
    if (port == nullptr) return "port " + name + ": there is none";
    return static_cast<GenICam::IPort*>(port)->is_bound() ? ""
                                                          : "port " + name + ": nothing is behind it here";
}

class source_finder {
public:
    source_finder(description& in, evaluation_guard& guard)
        : description_(in), guard_(guard), reader_(guard) {}

    [[nodiscard]] value_source find(GenICam::INode& node, std::size_t depth);

private:
    void add_formulas(element_index element, value_source& source);
    void add_variables(element_index element, value_source& source);
    static void add_variable(formula_binding& formulas, std::string_view name, std::string_view node,
                             value_source& source);

    static constexpr std::size_t max_depth = 100;

    description& description_;
    evaluation_guard& guard_;
    feature_reader reader_;
    std::unordered_set<element_index> told_;
};

value_source source_finder::find(GenICam::INode& node, std::size_t depth) {
    value_source source;
    source.name = node.get_name();
    source.value = reader_.read_value(node);
    const auto element = description_.tree().find(node);
    if (!element) return source;
    const pugi::xml_node xml = description_.tree().at(*element).xml;
    source.element = xml.name();
    source.is_cut = depth > max_depth;
    source.is_known = !source.is_cut && !told_.insert(*element).second;
    if (source.is_cut || source.is_known) return source;
    if (formula_binding::has_formulas(description_.tree().at(*element))) add_formulas(*element, source);
    if (register_elements.contains(xml.name())) {
        if (guard_.find({*element, operation::value}) == nullptr)
            source.state = probe_register(description_.port(), node, xml);
        source.port = port_defect(*description_.document(), xml);
    }
    guard_.graph().for_each_link(*element, [&](const element_link& link) {
        GenICam::INode* target = description_.document()->find_node(link.target);
        if (idle_roles.contains(link.role) || target == nullptr) return;
        value_source behind = find(*target, depth + 1);
        behind.role = link.role;
        behind.label = link.label;
        source.behind.push_back(std::move(behind));
    });
    return source;
}

void source_finder::add_formulas(element_index element, value_source& source) {
    for (const bound_formula& formula : guard_.binding(element).formulas()) {
        source.formulas.push_back({formula.xml.name(), formula.xml.attribute("Name").value(),
                                   std::string(formula.text),
                                   formula.program ? "" : refusal_text(formula.text, formula.tree.end)});
    }
    add_variables(element, source);
}

void source_finder::add_variables(element_index element, value_source& source) {
    formula_binding& formulas = guard_.binding(element);
    // What a division of its own is made of can be read like that of any other formula.
    const hazard* const found = guard_.find({element, operation::value});
    const bool is_own = found != nullptr && found->what == hazard::kind::division;
    if (found == nullptr || (is_own && found->path.front() == element)) formulas.refresh();
    const pugi::xml_node xml = description_.tree().at(element).xml;
    if (formulas.is_converter()) add_variable(formulas, "FROM", xml.child_value("pValue"), source);
    for (const pugi::xml_node one : xml.children("Constant")) {
        add_variable(formulas, one.attribute("Name").value(), {}, source);
    }
    for (const pugi::xml_node one : xml.children("pVariable")) {
        add_variable(formulas, one.attribute("Name").value(), one.child_value(), source);
    }
}

void source_finder::add_variable(formula_binding& formulas, std::string_view name, std::string_view node,
                                 value_source& source) {
    const GenICam::resolved_name resolved = formulas.resolve(name);
    shown_variable shown = {std::string(name), std::string(node), std::nullopt};
    if (const auto* constant = std::get_if<GenICam::eval_value>(&resolved)) shown.value = *constant;
    if (const auto* id = std::get_if<GenICam::identifier_id>(&resolved)) {
        if (const GenICam::eval_value* present = formulas.value_of(*id)) shown.value = *present;
    }
    source.variables.push_back(std::move(shown));
}

std::string register_text(const register_state& read) {
    std::string text =
        fmt::format("register {}, {} {}{}{}: {}", address_text(read.address), read.bytes.size(),
                    read.bytes.size() == 1 ? "byte" : "bytes", read.byte_order.empty() ? "" : " ",
                    read.byte_order, block_text(read.bytes, some_bytes));
    if (read.mask) text += fmt::format(", mask 0x{:0{}X}", *read.mask, read.bytes.size() * 2);
    return text;
}

std::string value_behind_name(const answer<feature_value>& value) {
    if (!value.value) return " (" + value.failure + ")";
    const std::string text = value_text(*value.value, GenICam::Representation::PureNumber, some_bytes);
    return text.empty() ? "" : " = " + text;
}

void append_lines(const value_source& source, std::size_t depth, std::string& text) {
    const auto line = [&](std::size_t deeper, const std::string& what) {
        text += std::string((depth + deeper) * 2, ' ') + visible_text(what) + '\n';
    };
    const std::string role = source.role + (source.label.empty() ? "" : " " + source.label);
    line(0, fmt::format("{}{}{} {}{}{}{}", role, role.empty() ? "" : ": ", source.element, source.name,
                        value_behind_name(source.value), source.is_known ? " (told above)" : "",
                        source.is_cut ? " (too deep to go on)" : ""));
    if (source.state) line(1, register_text(*source.state));
    if (!source.port.empty()) line(1, source.port);
    for (const shown_formula& formula : source.formulas) {
        line(1, fmt::format("{}{}{}: {}", formula.element, formula.name.empty() ? "" : " ", formula.name,
                            on_one_line(formula.text)));
        if (!formula.refusal.empty()) line(2, on_one_line(formula.refusal));
    }
    for (const shown_variable& variable : source.variables) {
        line(2, fmt::format("{} = {}{}{}", variable.name,
                            variable.value ? number_with_kind(*variable.value) : "unknown",
                            variable.node.empty() ? "" : " from ", variable.node));
    }
    for (const value_source& behind : source.behind) append_lines(behind, depth + 1, text);
}

nlohmann::ordered_json register_json(const register_state& read) {
    nlohmann::ordered_json json = {{"address", address_text(read.address)},
                                   {"bytes", bytes_text(read.bytes)}};
    if (!read.byte_order.empty()) json["byte_order"] = read.byte_order;
    if (read.mask) json["mask"] = fmt::format("0x{:X}", *read.mask);
    return json;
}

nlohmann::ordered_json to_json(const shown_variable& variable) {
    nlohmann::ordered_json json = {{"name", variable.name}, {"node", variable.node}, {"value", nullptr}};
    if (!variable.value) return json;
    json["value"] = number_json(*variable.value);
    json["kind"] = number_kind_word(*variable.value);
    return json;
}

}  // namespace

value_source find_sources(description& in, evaluation_guard& guard, GenICam::INode& feature) {
    return source_finder(in, guard).find(feature, 0);
}

bool has_sources(const value_source& source) {
    return source.state || !source.port.empty() || !source.formulas.empty() || !source.behind.empty();
}

std::string sources_text(const value_source& source) {
    std::string text;
    append_lines(source, 1, text);
    return text;
}

nlohmann::ordered_json sources_json(const value_source& source) {
    nlohmann::ordered_json json;
    if (!source.role.empty()) json["role"] = source.role;
    if (!source.label.empty()) json["label"] = source.label;
    json["name"] = source.name;
    json["element"] = source.element;
    if (source.value.value) {
        json["value"] = value_json(*source.value.value);
    } else {
        json["error"] = source.value.failure;
    }
    if (source.state) json["register"] = register_json(*source.state);
    if (!source.port.empty()) json["port"] = source.port;
    for (const shown_formula& formula : source.formulas) {
        json["formulas"].push_back({{"element", formula.element},
                                    {"name", formula.name},
                                    {"text", formula.text},
                                    {"refusal", formula.refusal}});
    }
    for (const shown_variable& variable : source.variables) json["variables"].push_back(to_json(variable));
    if (source.is_known) json["told_above"] = true;
    if (source.is_cut) json["too_deep"] = true;
    for (const value_source& behind : source.behind) json["sources"].push_back(sources_json(behind));
    return json;
}

}  // namespace selvane_inspect
