#include "genicam/core/eval_value.h"

#include <cmath>
#include <limits>

namespace GenICam {

std::int64_t truncate_to_int(double number) noexcept {
    // The conversion instruction of the x86 answers so; in the language the same conversion is undefined.
    constexpr double limit = 9223372036854775808.0;
    if (!(number >= -limit && number < limit)) return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(number);
}

std::int64_t round_to_int(double number) noexcept {
    // Not std::round: in one C library that gives 1 for the double just below one half.
    const double whole = std::trunc(number);
    const bool is_half_or_more = std::fabs(number - whole) >= 0.5;
    return truncate_to_int(is_half_or_more ? whole + std::copysign(1.0, number) : whole);
}

}  // namespace GenICam
