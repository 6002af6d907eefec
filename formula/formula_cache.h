#pragma once

#include "formula/formula_parser.h"

#include <string_view>
#include <unordered_map>
#include <vector>

namespace GenICam {

/// The programs of the formulas of a document, as long as it loads. Many formulas of real descriptions are
/// copies of one another: what was made of a text is taken again where its names stand for the same, and
/// variables have the same kinds.
class formula_cache {
public:
    formula_cache() = default;
    formula_cache(const formula_cache&) = delete;
    formula_cache& operator=(const formula_cache&) = delete;

    /// As `parse_formula`, into a program that outlives the cache, as the text does.
    [[nodiscard]] std::error_code parse(std::string_view text, name_resolver resolver, variable_kinds kinds,
                                        formula_program& program);

private:
    /// A name that the formula asked for, and what it stood for.
    struct answered_name {
        std::string_view name;
        resolved_name meaning;
        known_kind kind;  // of a variable
    };
    struct known_formula {
        std::vector<answered_name> names;
        const formula_program* program;
    };

    [[nodiscard]] const formula_program* find(std::string_view text, name_resolver resolver,
                                              variable_kinds kinds) const;

    std::unordered_multimap<std::string_view, known_formula> known_;
};

}  // namespace GenICam
