#include "genicam/nodes/variable_binding.h"

#include "genicam/base/node_link.h"
#include "genicam/base/value_links.h"
#include "genicam/core/children.h"
#include "genicam/core/messages.h"
#include "genicam/genicam_doc.h"
#include "genicam/nodes/formula_names.h"

#include <new>
#include <optional>
#include <utility>

namespace GenICam {
namespace {

template <auto Limit>
struct limit_of;

template <class Interface, class Number, result<Number> (Interface::*Limit)(std::uint32_t)>
struct limit_of<Limit> {
    static result<eval_value> read(INode* node, std::uint32_t flags) {
        const result<Number> limit = (static_cast<Interface*>(node)->*Limit)(flags);
        if (!limit) return limit.error();
        return eval_value::of(limit.assume_value());
    }
};

/// A name that ends so reads a limit of its node instead of the value.
struct limit_specifier {
    std::string_view suffix;
    variable_accessor of_integer;
    variable_accessor of_float;
    const message<>& missing;
};

constexpr limit_specifier limit_specifiers[] = {
    {".Min", limit_of<&IInteger::get_min>::read, limit_of<&IFloat::get_min>::read,
     messages::minimum_of_variable_missing},
    {".Max", limit_of<&IInteger::get_max>::read, limit_of<&IFloat::get_max>::read,
     messages::minimum_of_variable_missing},
    {".Inc", limit_of<&IInteger::get_inc>::read, limit_of<&IFloat::get_inc>::read,
     messages::increment_of_variable_missing},
};

// The first occurrence counts: behind one in the middle, another at the end means nothing.
bool ends_in_first(std::string_view name, std::string_view suffix) noexcept {
    const std::size_t at = name.find(suffix);
    return at != std::string_view::npos && at + suffix.size() == name.size();
}

variable_accessor accessor_of(const limit_specifier& specifier, node_type type, pugi::xml_node element) {
    if (type == node_type::integer) return specifier.of_integer;
    if (type == node_type::floating) return specifier.of_float;
    report(specifier.missing, {element.parent(), element});
    return nullptr;
}

}  // namespace

variable_accessor create_resulting_entry(const INode& node, std::string_view name, pugi::xml_node element) {
    if (name.find('.') == std::string_view::npos) return get_eval_value;
    for (const limit_specifier& specifier : limit_specifiers) {
        if (ends_in_first(name, specifier.suffix))
            return accessor_of(specifier, node.get_node_type(), element);
    }
    if (name.find(".Entry") != std::string_view::npos) return nullptr;
    return get_eval_value;
}

void variable_map_impl::take_room(const described_element& xml, const node_base_data& self) {
    if (sources_ != nullptr) return;
    const std::size_t size = xml.count(child::pVariable) * sizeof(variable_source);
    sources_ = static_cast<variable_source*>(self.take_room(size));
}

void variable_map_impl::resolve_converter_references(IGenICamDoc* doc, const described_element& xml,
                                                     node_base_data& self, variable_table& table) {
    bind(doc, xml, self.get_node(), table);
}

void variable_map_impl::read_references(IGenICamDoc* doc, const described_element& xml, variable_table& table,
                                        variable_source* room) {
    sources_ = room;
    bind(doc, xml, nullptr, table);
}

void variable_map_impl::bind(IGenICamDoc* doc, const described_element& xml, INode* self,
                             variable_table& table) {
    const auto children = xml.known_children();
    source_count_ = 0;
    for (const known_child& found : children) {
        if (found.name == child::pVariable) bind_variable(doc, found, self, table);
    }
    if (!xml.has(child::Expression)) return;
    for (const known_child& found : children) {
        if (found.name == child::Expression) parse_expression(found, table);
    }
}

void variable_map_impl::bind_variable(IGenICamDoc* doc, const known_child& found, INode* self,
                                      variable_table& table) {
    const std::string_view name = binding_name(found.element);
    if (table.has(name)) return;
    INode* node = doc->find_node(found.text());
    if (node == nullptr) return;
    const variable_accessor accessor = create_resulting_entry(*node, name, found.element);
    if (accessor == nullptr) return;
    const identifier_id id = first_source_id + source_count_;
    ::new (sources_ + source_count_++) variable_source{eval_value::of(std::int64_t{0}), node, accessor};
    if (self != nullptr) static_cast<void>(depend_on(node, self));
    table.add_variable(name, id);
}

void variable_map_impl::parse_expression(const known_child& found, variable_table& table) {
    const std::string_view name = binding_name(found.element);
    if (table.has(name)) return;
    const std::string_view text = found.text();
    result<formula_program> program = parse_instructions(text, table);
    if (program) {
        table.add_expression(name, std::move(program.assume_value()));
    } else {
        report(messages::expression_invalid, {found.element.parent(), found.element}, name, text);
    }
}

void variable_map_impl::refresh(std::uint32_t flags) {
    for (variable_source* at = sources_; at != sources_ + source_count_; ++at) {
        variable_source& source = *at;
        const result<eval_value> read = source.accessor(source.node, flags);
        if (!read) continue;
        const eval_value& value = read.assume_value();
        source.value = is_integer_ ? eval_value::of(to_int(value)) : eval_value::of(to_double(value));
    }
}

}  // namespace GenICam
