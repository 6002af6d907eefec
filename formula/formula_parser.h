#pragma once

#include "formula/formula_program.h"
#include "formula/formula_tree.h"
#include "formula/function_ref.h"
#include "formula/known_numbers.h"
#include "genicam/core/error.h"

#include <string_view>
#include <variant>

namespace GenICam {

/// An expression that is known, and may not be copied any more.
struct exhausted_expression {};
/// What a name in a formula stands for: nothing known, a variable (never id 0), an expression whose
/// instructions are copied in, a constant, or an expression beyond what may be copied.
using resolved_name =
    std::variant<std::monostate, identifier_id, const formula_program*, eval_value, exhausted_expression>;
using name_resolver = function_ref<resolved_name(std::string_view name)>;

/// Reads a formula. A formula that breaks off at the end of the text gives what stood there so far, and text
/// behind a complete formula is ignored; an empty text gives an empty tree. Formulas nested deeper than 4096
/// levels are refused, and so are those that expressions make longer than 65536 instructions. The names
/// behind the first thing that is refused are not asked for.
[[nodiscard]] formula_tree read_formula(std::string_view text, name_resolver resolver);

/// Whether a formula can be run; says so, as the log is there for, where it cannot.
[[nodiscard]] bool is_usable(const formula_tree& tree);

/// Compiles a formula, made ready for variables of these kinds. Fails with `formula_parse_failed` only.
[[nodiscard]] result<formula_program> parse_formula(std::string_view text, name_resolver resolver,
                                                    variable_kinds kinds);

/// The same for variables that may all be integers or all be floats.
[[nodiscard]] result<formula_program> parse_formula(std::string_view text, name_resolver resolver);

/// The same without preparation for speed: for formulas that are copied into others.
[[nodiscard]] result<formula_program> parse_instructions(std::string_view text, name_resolver resolver);

}  // namespace GenICam
