#pragma once

#include "formula/formula_parser.h"
#include "formula/variable_table.h"
#include "genicam/nodes/variable_binding.h"
#include "inspection/description.h"

#include <optional>
#include <string_view>
#include <vector>

namespace selvane_inspect {

/// A formula of a node, as it was read.
struct bound_formula {
    pugi::xml_node xml;  ///< `Formula`, `FormulaFrom`, `FormulaTo` or `Expression`
    std::string_view text;
    GenICam::formula_tree tree;
    std::optional<GenICam::formula_program> program;  ///< not set when the language refuses the text
};

/// The formulas of one node with their names, built beside the engine by the engine's own parts: so they can
/// be looked into.
class formula_binding {
public:
    /// The element is one with formulas, and it has a node. Says nothing to the log.
    formula_binding(description& from, element_index index);

    [[nodiscard]] static bool has_formulas(const node_element& element);

    [[nodiscard]] bool is_integer() const noexcept { return map_.is_integer(); }
    [[nodiscard]] bool is_converter() const noexcept { return is_converter_; }
    /// The formulas by which the node is read and written, then its expressions.
    [[nodiscard]] const std::vector<bound_formula>& formulas() const noexcept { return formulas_; }
    /// The node of `pValue`; null for none.
    [[nodiscard]] GenICam::INode* target() const noexcept { return target_; }

    /// What a name stands for.
    [[nodiscard]] GenICam::resolved_name resolve(std::string_view name) const { return table_(name); }
    /// The value of a variable since the last `refresh`; null for an unknown one.
    [[nodiscard]] const GenICam::eval_value* value_of(GenICam::identifier_id id) const { return map_(id); }

    /// Reads the variables, and what FROM stands for; called only when that is safe.
    void refresh();

private:
    void parse(const char* element_name);

    pugi::xml_node xml_;
    bool is_converter_;
    GenICam::variable_table table_;
    std::vector<GenICam::variable_source> sources_;  // of the map
    GenICam::variable_map_impl map_;
    GenICam::INode* target_ = nullptr;
    std::vector<bound_formula> formulas_;
};

}  // namespace selvane_inspect
