#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>

#include <gsl/span>

namespace GenICam {

/// Up to so many keys are searched: an order of them would not be faster.
constexpr std::size_t most_searched_keys = 32;

/// Fills `order` with the positions from 0 on. `compare` gives less than 0 for what comes first; of equal
/// ones the smaller does.
void put_in_order(gsl::span<std::uint32_t> order,
                  const std::function<int(std::uint32_t, std::uint32_t)>& compare);

[[nodiscard]] constexpr int compare_numbers(std::int64_t left, std::int64_t right) noexcept {
    return static_cast<int>(left > right) - static_cast<int>(left < right);
}

/// The first of `count` positions with that key; `count` for none. Searches where there is no order.
template <class Key, class KeyAt>
[[nodiscard]] std::size_t find_key(gsl::span<const std::uint32_t> order, std::size_t count, const Key& wanted,
                                   KeyAt key_at) {
    if (order.empty()) {
        std::size_t at = 0;
        while (at < count && key_at(at) != wanted) ++at;
        return at;
    }
    const std::uint32_t* const end = order.data() + order.size();
    const std::uint32_t* const found = std::lower_bound(
        order.data(), end, wanted, [&](std::uint32_t at, const Key& key) { return key_at(at) < key; });
    return found != end && key_at(*found) == wanted ? *found : count;
}

}  // namespace GenICam
