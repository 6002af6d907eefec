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

std::int64_t round_to_int(double number) noexcept { return truncate_to_int(std::round(number)); }

}  // namespace GenICam
