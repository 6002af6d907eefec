#pragma once

#include <cstdint>
#include <limits>

namespace ZELPropUI {

/// A measure at 96 dots per inch in pixels of a screen with so many: MulDiv(measure, dots_per_inch, 96),
/// halves rounded away from zero and -1 for a result beyond 32 bits.
[[nodiscard]] constexpr int ScaleMeasure(int measure, int dots_per_inch) noexcept {
    constexpr std::int64_t base = 96;
    const std::int64_t product = std::int64_t{measure} * dots_per_inch;
    const std::int64_t scaled = (product + (product < 0 ? -base / 2 : base / 2)) / base;
    const bool fits = scaled >= std::numeric_limits<int>::min() && scaled <= std::numeric_limits<int>::max();
    return fits ? static_cast<int>(scaled) : -1;
}

}  // namespace ZELPropUI
