#pragma once

#include "apps/inspect/lint/formula_tree.h"

#include <cstddef>

namespace selvane_inspect {

/// Whether a part of a formula comes out as 0 for some values of its variables. Told by trying small numbers,
/// powers of two and what the formula itself compares and computes with, each with its neighbours: enough for
/// the divisors that people write.
[[nodiscard]] bool can_be_zero(const program_tree& tree, std::size_t node);

}  // namespace selvane_inspect
