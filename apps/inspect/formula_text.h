#pragma once

#include "formula/formula_program.h"
#include "formula/formula_tree.h"
#include "genicam/core/eval_value.h"

#include <functional>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace selvane_inspect {

using variable_names = std::function<std::string(GenICam::identifier_id)>;

/// "3 (integer)", "3.5 (float)"
[[nodiscard]] std::string number_with_kind(const GenICam::eval_value& number);
/// "integer", "float"
[[nodiscard]] std::string_view number_kind_word(const GenICam::eval_value& number) noexcept;
/// The number alone; a float never looks like an integer.
[[nodiscard]] std::string number_alone(const GenICam::eval_value& number);

/// A number; infinities and NaN as text.
[[nodiscard]] nlohmann::ordered_json number_json(const GenICam::eval_value& number);

/// What an instruction of a postfix program does: "push 3", "variable A", "unary -", "binary **", "call
/// ROUND", "select".
[[nodiscard]] std::string instruction_text(const GenICam::formula_instruction& instruction,
                                           const variable_names& name_of);

/// A node of a formula and what it is computed from, with parentheses around every operation inside it, cut
/// to a readable length.
[[nodiscard]] std::string part_text(const GenICam::formula_tree& tree, GenICam::formula_tree::index node,
                                    const variable_names& name_of);

}  // namespace selvane_inspect
