#pragma once

#include <cstdint>
#include <limits>

namespace GenICam {

// The limits of nodes with formulas: neither the formula nor the target of a converter has a say in them.

constexpr std::int64_t formula_integer_min = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t formula_integer_max = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t formula_integer_inc = 1;

/// The smallest positive normal number, not the lowest one, as in a `Float` that states no `Min`.
constexpr double formula_float_min = std::numeric_limits<double>::min();
constexpr double formula_float_max = std::numeric_limits<double>::max();

}  // namespace GenICam
