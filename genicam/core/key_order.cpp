#include "genicam/core/key_order.h"

#include <numeric>

namespace GenICam {

void put_in_order(gsl::span<std::uint32_t> order,
                  const std::function<int(std::uint32_t, std::uint32_t)>& compare) {
    std::uint32_t* const begin = order.data();
    std::uint32_t* const end = begin + order.size();
    std::iota(begin, end, 0U);
    std::sort(begin, end, [&](std::uint32_t left, std::uint32_t right) {
        const int compared = compare(left, right);
        return compared != 0 ? compared < 0 : left < right;
    });
}

}  // namespace GenICam
