// Numbers take as few bytes as they need, and come back as they were.

#include "genicam/base/packed_numbers.h"

#include <cstdint>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace {

using GenICam::packed_numbers;

std::vector<std::uint32_t> read_all(const packed_numbers& packed, std::size_t offset, std::size_t count) {
    std::vector<std::uint32_t> read;
    packed.for_each(offset, count, [&read](std::uint32_t number) { read.push_back(number); });
    return read;
}

TEST(PackedNumbers, ComeBackFromEachOffset) {
    std::vector<std::uint32_t> numbers;
    for (unsigned bits = 0; bits < 32; ++bits) {
        for (const std::uint32_t beside : {0U, 1U, 2U})
            numbers.push_back((std::uint32_t{1} << bits) - 1 + beside);
    }
    numbers.push_back(std::numeric_limits<std::uint32_t>::max());
    packed_numbers packed;
    std::vector<std::size_t> offsets;
    for (const std::uint32_t number : numbers) {
        offsets.push_back(packed.end());
        packed.append({&number, 1});
    }
    packed.close();
    EXPECT_EQ(read_all(packed, 0, numbers.size()), numbers);
    packed_numbers together;
    together.append({numbers.data(), numbers.size()});
    EXPECT_EQ(read_all(together, 0, numbers.size()), numbers);
    EXPECT_EQ(together.end(), packed.end());
    for (std::size_t at = 0; at < numbers.size(); ++at)
        EXPECT_EQ(read_all(packed, offsets[at], 1), std::vector<std::uint32_t>{numbers[at]});
}

TEST(PackedNumbers, TakeAByteForSevenBits) {
    const auto size_of = [](std::uint32_t number) {
        packed_numbers packed;
        packed.append({&number, 1});
        return packed.end();
    };
    EXPECT_EQ(size_of(0), 1U);
    EXPECT_EQ(size_of(127), 1U);
    EXPECT_EQ(size_of(128), 2U);
    EXPECT_EQ(size_of(16383), 2U);
    EXPECT_EQ(size_of(16384), 3U);
    EXPECT_EQ(size_of(std::numeric_limits<std::uint32_t>::max()), 5U);
}

}  // namespace
