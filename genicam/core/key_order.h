#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <utility>

#include <gsl/span>

namespace GenICam {

/// Up to so many keys are searched: an order of them would not be faster.
constexpr std::size_t most_searched_keys = 32;

/// Fills `order` with the positions from 0 on, in the order of their keys; of equal keys the first comes
/// first.
template <class KeyAt>
void put_in_order(gsl::span<std::uint32_t> order, KeyAt key_at) {
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [&](std::uint32_t left, std::uint32_t right) {
        return std::make_pair(key_at(left), left) < std::make_pair(key_at(right), right);
    });
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
    const auto found = std::lower_bound(order.begin(), order.end(), wanted,
                                        [&](std::uint32_t at, const Key& key) { return key_at(at) < key; });
    return found != order.end() && key_at(*found) == wanted ? *found : count;
}

}  // namespace GenICam
