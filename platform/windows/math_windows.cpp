#include "platform/math.h"

#include <cmath>

namespace platform {

// The library's pow for double multiplies rounded reciprocals for negative integer exponents: it is wrong
// already for 10 to the -2. Its long double form has digits to spare.
double power(double base, double exponent) noexcept {
    return static_cast<double>(std::pow(static_cast<long double>(base), static_cast<long double>(exponent)));
}

}  // namespace platform
