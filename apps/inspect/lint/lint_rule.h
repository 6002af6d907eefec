#pragma once

#include "inspection/severity.h"

#include <string_view>
#include <vector>

#include <gsl/span>

namespace selvane_inspect {

class lint_context;

/// One thing that is looked for in descriptions. Names are stable: people write them into scripts.
struct lint_rule {
    std::string_view name;
    severity level;
    std::string_view why;  ///< why it matters
    std::string_view what_to_do;
    void (*check)(lint_context& context);
};

/// In the order in which they are listed.
[[nodiscard]] const std::vector<lint_rule>& all_lint_rules();

// The rules by what they look at, each group beside its checks.

/// What the engine itself says of a description, or what would become of it.
[[nodiscard]] gsl::span<const lint_rule> engine_rules() noexcept;
/// What an author would regret in formulas.
[[nodiscard]] gsl::span<const lint_rule> formula_rules() noexcept;
/// The same in elements, their names and their links.
[[nodiscard]] gsl::span<const lint_rule> element_rules() noexcept;
/// The same in the limits of floats.
[[nodiscard]] gsl::span<const lint_rule> number_rules() noexcept;
/// The same in the marks for the property pages.
[[nodiscard]] gsl::span<const lint_rule> mark_rules() noexcept;
/// The same in how the pages show what is marked.
[[nodiscard]] gsl::span<const lint_rule> page_rules() noexcept;

}  // namespace selvane_inspect
