#pragma once

#include "formula/formula_tree.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace selvane_inspect {

/// Something about the text of a formula, and where in it.
struct formula_remark {
    std::size_t offset = 0;
    std::string text;
};

/// What can be told of a formula by the way it was read alone.
struct formula_outline {
    /// Why the text ends too soon: what the language goes along with and an author does not mean.
    std::vector<formula_remark> breaks;
    /// Operators that are carried out in another order than in mathematics and in most languages.
    std::vector<formula_remark> surprises;
    /// Calls of ROUND with one argument.
    std::vector<formula_remark> short_rounds;
};

[[nodiscard]] formula_outline outline_formula(const GenICam::formula_tree& tree);

/// Why and where the language refuses a formula, as one line.
[[nodiscard]] std::string refusal_text(std::string_view formula, const GenICam::parse_end& end);

/// The end of a formula that the language does not read; empty for none.
[[nodiscard]] std::string_view ignored_text(const GenICam::parse_end& end);

/// What an author should know of a formula that the language takes.
[[nodiscard]] std::vector<std::string> formula_notes(const GenICam::formula_tree& tree);

}  // namespace selvane_inspect
