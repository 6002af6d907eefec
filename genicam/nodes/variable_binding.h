#pragma once

#include "formula/formula_program.h"
#include "formula/source_kinds.h"
#include "formula/variable_table.h"
#include "genicam/core/children.h"
#include "genicam/core/error.h"
#include "genicam/core/eval_value.h"
#include "genicam/inode.h"

#include <cstdint>
#include <string_view>

#include <pugixml.hpp>

namespace GenICam {

class IGenICamDoc;
class node_base_data;

/// How a variable is read from its node.
using variable_accessor = result<eval_value> (*)(INode* node, std::uint32_t flags);

/// A bound `pVariable`. Keeps the last value that could be read.
struct variable_source {
    eval_value value;
    INode* node;
    variable_accessor accessor;
};

/// The variables of a node at run time. Scratch state: every read of the node writes it.
class variable_map_impl {
public:
    explicit variable_map_impl(bool is_integer) : is_integer_(is_integer) {}

    /// Takes the room that the document has reserved for the sources of a node. The first thing that the node
    /// does with its references, whatever comes of its formulas.
    void take_room(const described_element& xml, const node_base_data& self);
    /// Binds every `pVariable` whose name is still free, then parses every such `Expression`, both into the
    /// table. The node becomes a dependent of the sources.
    void resolve_converter_references(IGenICamDoc* doc, const described_element& xml, node_base_data& self,
                                      variable_table& table);
    /// The same for a reader of a document that is loaded, who has room for each `pVariable`.
    void read_references(IGenICamDoc* doc, const described_element& xml, variable_table& table,
                         variable_source* room);

    /// Reads every source. One that cannot be read keeps its value.
    void refresh(std::uint32_t flags);

    /// The present value of a variable; null for an unknown id.
    [[nodiscard]] const eval_value* operator()(identifier_id id) const noexcept {
        if (id == current_value_id) return &current;
        const identifier_id index = id - first_source_id;
        return index < source_count_ ? &sources_[index].value : nullptr;
    }

    [[nodiscard]] bool is_integer() const noexcept { return is_integer_; }
    /// Of all variables, once they could be read.
    [[nodiscard]] number_kind kind() const noexcept {
        return is_integer_ ? number_kind::integer : number_kind::floating;
    }
    /// With `FROM` and `TO` of that kind. Before a variable could be read it is an integer in any case.
    [[nodiscard]] source_kinds kinds(number_kind of_current) const noexcept {
        return {kind(), of_current, is_integer_ || source_count_ == 0};
    }

    /// What `FROM` and `TO` read.
    eval_value current;

private:
    void bind(IGenICamDoc* doc, const described_element& xml, INode* self, variable_table& table);
    void bind_variable(IGenICamDoc* doc, const known_child& found, INode* self, variable_table& table);
    static void parse_expression(const known_child& found, variable_table& table);

    variable_source* sources_ = nullptr;
    std::uint32_t source_count_ = 0;
    bool is_integer_;
};

/// How a `pVariable` of that name reads the node; null, with a message about the element, where it cannot.
[[nodiscard]] variable_accessor create_resulting_entry(const INode& node, std::string_view name,
                                                       pugi::xml_node element);

}  // namespace GenICam
