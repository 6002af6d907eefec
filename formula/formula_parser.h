#pragma once

#include "formula/formula_program.h"
#include "formula/formula_token.h"
#include "formula/function_ref.h"
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

/// Compiles a formula. Fails with `formula_parse_failed` only. A formula that breaks off at the end of the
/// text gives what stood there so far, and text behind a complete formula is ignored; an empty text gives an
/// empty program. Formulas nested deeper than 4096 levels fail, and so do those that expressions make longer
/// than 65536 instructions.
[[nodiscard]] result<formula_program> parse_formula(std::string_view text, name_resolver resolver);

/// Where and how a parse ended, for whoever explains formulas.
struct parse_end {
    parse_status status = parse_status::none;
    std::string_view rest;  ///< the text behind the formula, or behind what was refused
};

/// The same, and how it ended.
[[nodiscard]] result<formula_program> parse_formula(std::string_view text, name_resolver resolver,
                                                    parse_end& end);

/// The same without preparation for speed: for formulas that are copied into others, and for those whose
/// variables have kinds that are known, which `specialise_formula` prepares better.
[[nodiscard]] result<formula_program> parse_instructions(std::string_view text, name_resolver resolver);

}  // namespace GenICam
