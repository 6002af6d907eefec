#include "apps/inspect/value_sources.h"

#include "apps/inspect/formula_text.h"
#include "apps/inspect/lint/formula_outline.h"
#include "genicam/document/node_facts.h"
#include "inspection/feature_reader.h"

#include <exception>
#include <optional>
#include <unordered_set>
#include <utility>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

using nlohmann::ordered_json;

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
std::optional<port_access> probe_register(traced_port& port, GenICam::INode& node) {
    constexpr std::uint32_t past_everything =
        GenICam::access_flags::bypass_cache | GenICam::access_flags::skip_access_check;
    const silence quiet;
    static_cast<void>(port.take());
    try {
        static_cast<void>(engine_value(node, past_everything));
    } catch (const std::exception&) {
        return std::nullopt;  // a length that nobody reads, or no memory has room for
    }
    std::vector<port_access> accesses = port.take();
    if (accesses.empty()) return std::nullopt;
    return std::move(accesses.back());
}

std::string port_defect(GenICam::IGenICamDoc& document, pugi::xml_node xml) {
    const std::string_view stated = GenICam::register_element_of(xml).child_value("pPort");
    const std::string name(stated.empty() ? "Device" : stated);
    GenICam::INode* const port = document.find_port(name);
    if (port == nullptr) return "port " + name + ": there is none";
    return static_cast<GenICam::IPort*>(port)->is_bound() ? ""
                                                          : "port " + name + ": nothing is behind it here";
}

std::string value_behind_name(const answer<feature_value>& value) {
    if (!value.value) return " (" + value.failure + ")";
    const std::string text = value_text(*value.value, GenICam::Representation::PureNumber, some_bytes);
    return text.empty() ? "" : " = " + text;
}

/// Tells of the nodes as it comes to them: each has lines of the text, and an object with those of the nodes
/// behind it.
class source_walk {
public:
    source_walk(description& in, evaluation_guard& guard) : description_(in), guard_(guard), reader_(guard) {}

    /// Of a node that a link leads to; of the feature itself without one.
    [[nodiscard]] ordered_json visit(GenICam::INode& node, const element_link& link, std::size_t depth);
    [[nodiscard]] std::string& text() noexcept { return text_; }

private:
    void add_line(std::size_t depth, const std::string& line);
    void add_register(element_index element, GenICam::INode& node, std::size_t depth, ordered_json& json);
    void add_formulas(element_index element, std::size_t depth, ordered_json& json);
    void add_variables(element_index element, std::size_t depth, ordered_json& json);
    void add_variable(formula_binding& formulas, const char* name, const char* node, std::size_t depth,
                      ordered_json& json);
    void add_behind(element_index element, std::size_t depth, ordered_json& json);

    static constexpr std::size_t max_depth = 100;

    description& description_;
    evaluation_guard& guard_;
    feature_reader reader_;
    std::unordered_set<element_index> told_;
    std::string text_;
};

void source_walk::add_line(std::size_t depth, const std::string& line) {
    text_ += std::string((depth + 1) * 2, ' ') + visible_text(line) + '\n';
}

ordered_json source_walk::visit(GenICam::INode& node, const element_link& link, std::size_t depth) {
    const element_index element = *description_.tree().find(node);
    const char* const element_name = description_.tree().at(element).xml.name();
    const answer<feature_value> value = reader_.read_value(node);
    const bool is_cut = depth > max_depth;
    const bool is_known = !is_cut && !told_.insert(element).second;
    add_line(depth, fmt::format("{}{}{}{}{} {}{}{}{}", link.role, link.label.empty() ? "" : " ", link.label,
                                link.role.empty() ? "" : ": ", element_name, node.get_name(),
                                value_behind_name(value), is_known ? " (told above)" : "",
                                is_cut ? " (too deep to go on)" : ""));
    ordered_json json;
    if (!link.role.empty()) json["role"] = link.role;
    if (!link.label.empty()) json["label"] = link.label;
    json["name"] = node.get_name();
    json["element"] = element_name;
    if (value.value) json["value"] = value_json(*value.value);
    if (!value.value) json["error"] = value.failure;
    if (is_known) json["told_above"] = true;
    if (is_cut) json["too_deep"] = true;
    if (is_known || is_cut) return json;
    add_register(element, node, depth + 1, json);
    add_formulas(element, depth + 1, json);
    add_behind(element, depth + 1, json);
    return json;
}

void source_walk::add_register(element_index element, GenICam::INode& node, std::size_t depth,
                               ordered_json& json) {
    const pugi::xml_node xml = description_.tree().at(element).xml;
    if (!register_elements.contains(xml.name())) return;
    const bool is_safe = guard_.find({element, operation::value}) == nullptr;
    if (const auto read = is_safe ? probe_register(description_.port(), node) : std::nullopt) {
        const std::size_t length = read->data.size();
        const std::string_view byte_order = byte_order_word(xml, length);
        const auto mask = mask_of(xml, length);
        add_line(depth, fmt::format("register {}, {} {}{}{}: {}{}", address_text(read->address), length,
                                    length == 1 ? "byte" : "bytes", byte_order.empty() ? "" : " ", byte_order,
                                    block_text(read->data, some_bytes),
                                    mask ? fmt::format(", mask 0x{:0{}X}", *mask, length * 2) : ""));
        ordered_json& told = json["register"];
        told = {{"address", address_text(read->address)}, {"bytes", bytes_text(read->data)}};
        if (!byte_order.empty()) told["byte_order"] = byte_order;
        if (mask) told["mask"] = fmt::format("0x{:X}", *mask);
    }
    const std::string defect = port_defect(*description_.document(), xml);
    if (defect.empty()) return;
    add_line(depth, defect);
    json["port"] = defect;
}

void source_walk::add_formulas(element_index element, std::size_t depth, ordered_json& json) {
    if (!formula_binding::has_formulas(description_.tree().at(element))) return;
    for (const bound_formula& formula : guard_.binding(element).formulas()) {
        const std::string_view name = formula.xml.attribute("Name").value();
        const std::string refusal = formula.program ? "" : refusal_text(formula.text, formula.tree.end);
        add_line(depth, fmt::format("{}{}{}: {}", formula.xml.name(), name.empty() ? "" : " ", name,
                                    on_one_line(formula.text)));
        if (!refusal.empty()) add_line(depth + 1, on_one_line(refusal));
        json["formulas"].push_back(
            {{"element", formula.xml.name()}, {"name", name}, {"text", formula.text}, {"refusal", refusal}});
    }
    add_variables(element, depth + 1, json);
}

void source_walk::add_variables(element_index element, std::size_t depth, ordered_json& json) {
    formula_binding& formulas = guard_.binding(element);
    // What a division of its own is made of can be read like that of any other formula.
    const hazard* const found = guard_.find({element, operation::value});
    const bool is_own = found != nullptr && found->what == hazard::kind::division;
    if (found == nullptr || (is_own && found->path.front() == element)) formulas.refresh();
    const pugi::xml_node xml = description_.tree().at(element).xml;
    const auto add = [&](const char* name, const char* node) {
        add_variable(formulas, name, node, depth, json["variables"]);
    };
    if (formulas.is_converter()) add("FROM", xml.child_value("pValue"));
    for (const pugi::xml_node one : xml.children("Constant")) add(one.attribute("Name").value(), "");
    for (const pugi::xml_node one : xml.children("pVariable"))
        add(one.attribute("Name").value(), one.child_value());
}

// A name in the formulas of a node and what it stands for now, where the engine knows such a name.
void source_walk::add_variable(formula_binding& formulas, const char* name, const char* node,
                               std::size_t depth, ordered_json& json) {
    const GenICam::resolved_name resolved = formulas.resolve(name);
    const auto* value = std::get_if<GenICam::eval_value>(&resolved);
    if (const auto* id = std::get_if<GenICam::identifier_id>(&resolved)) value = formulas.value_of(*id);
    add_line(depth, fmt::format("{} = {}{}{}", name, value != nullptr ? number_with_kind(*value) : "unknown",
                                *node != 0 ? " from " : "", node));
    json.push_back({{"name", name}, {"node", node}, {"value", nullptr}});
    if (value == nullptr) return;
    json.back()["value"] = number_json(*value);
    json.back()["kind"] = number_kind_word(*value);
}

void source_walk::add_behind(element_index element, std::size_t depth, ordered_json& json) {
    guard_.graph().for_each_link(element, [&](const element_link& link) {
        GenICam::INode* const target = description_.document()->find_node(link.target);
        if (idle_roles.contains(link.role) || target == nullptr) return;
        json["sources"].push_back(visit(*target, link, depth));
    });
}

}  // namespace

told_part find_sources(description& in, evaluation_guard& guard, GenICam::INode& feature) {
    source_walk walk(in, guard);
    ordered_json json = walk.visit(feature, {}, 0);
    const bool tells_more = json.contains("register") || json.contains("port") || json.contains("formulas") ||
                            json.contains("sources");
    return {tells_more ? std::move(walk.text()) : std::string(), std::move(json)};
}

}  // namespace selvane_inspect
