#pragma once

#include <cstddef>
#include <string>

#include <gsl/span>

namespace test_support {

/// A description that is as bad as we could think of for whoever walks over it.
struct worst_shape {
    const char* name;
    std::string (*make)(std::size_t n);  ///< so many of what is bad
    std::size_t smallest = 500;          ///< from here on time may not grow faster than the size
    /// Each value takes as many evaluations as there are values, and the engine carries them out anew for
    /// everyone who asks: only what asks for no values can be in proportion.
    bool values_unfold = false;
};

[[nodiscard]] gsl::span<const worst_shape> worst_shapes();

}  // namespace test_support
