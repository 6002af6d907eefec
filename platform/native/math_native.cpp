#include "platform/math.h"

#include <cmath>

namespace platform {

double power(double base, double exponent) noexcept { return std::pow(base, exponent); }

}  // namespace platform
