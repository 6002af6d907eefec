#pragma once

#include "apps/check/check_rule.h"
#include "platform/com.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace selvane_check {

struct driver_finding {
    const check_rule* rule;
    std::string message;
    std::size_t count = 1;  ///< how often it was met
};

struct check_options {
    /// Also writes what it has read of described features back to them.
    bool write = false;
    /// Microseconds from any start; empty for the system's own.
    std::function<std::uint64_t()> clock;
};

struct driver_report {
    std::vector<driver_finding> findings;  ///< in the order of the rules
    bool named_access = false;
    bool register_access = false;
    bool registers_asked = false;
    std::size_t descriptions = 0;
    std::size_t controls = 0;  ///< of described and built-in items together
    std::uint64_t calls = 0;
};

/// Asks a driver what the pages would ask it, and more where that tells why a page stays empty. Only reads
/// unless the options allow more; buttons are never pushed. Every call is watched and timed.
/// Of a driver with both access paths the described features are asked over both.
[[nodiscard]] driver_report check_driver(IUnknown& driver, const check_options& options);

/// Calls that take longer are told, in microseconds.
constexpr std::uint64_t longest_call = 20'000;
/// More descriptions are not fetched: there may be no end.
constexpr std::uint32_t most_descriptions = 64;

}  // namespace selvane_check
