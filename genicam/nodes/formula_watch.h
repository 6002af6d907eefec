#pragma once

#include "formula/formula_evaluator.h"
#include "genicam/base/node_base.h"
#include "genicam/core/children.h"
#include "genicam/core/error.h"
#include "genicam/nodes/variable_binding.h"

#include <pugixml.hpp>

namespace GenICam {

/// Computes the formulas of all nodes in the place of the engine, and so sees what goes into each before it
/// is carried out. What it throws leaves the engine, whose nodes can be asked again.
class formula_watch {
public:
    /// `formula` is the child of the node's element that the program was made from. The program has its
    /// instructions where somebody listened to the log when the document was loaded; else it may have none.
    [[nodiscard]] virtual result<eval_value> compute(const formula_view& program,
                                                     const variable_map_impl& variables,
                                                     pugi::xml_node element, child formula) = 0;

protected:
    ~formula_watch() = default;
};

/// Null, as it begins, for nobody. Like the nodes for one thread at a time.
extern formula_watch* present_formula_watch;

/// Computes a formula of a node over its variables.
[[nodiscard]] inline result<eval_value> compute_formula(const formula_view& program,
                                                        const variable_map_impl& variables,
                                                        const node_base_data& node, child formula) {
    if (__builtin_expect(present_formula_watch != nullptr, 0))
        return present_formula_watch->compute(program, variables, node.xml(), formula);
    return evaluate_formula(program, variables);
}

}  // namespace GenICam
