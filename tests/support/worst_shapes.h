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
};

[[nodiscard]] gsl::span<const worst_shape> worst_shapes();

}  // namespace test_support
