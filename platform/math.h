#pragma once

namespace platform {

/// `pow`, correct to the last place or next to it.
[[nodiscard]] double power(double base, double exponent) noexcept;

}  // namespace platform
