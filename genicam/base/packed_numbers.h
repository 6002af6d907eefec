#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <gsl/span>

namespace GenICam {

/// Numbers one behind the other, seven bits of them in a byte: those of real descriptions take two.
class packed_numbers {
public:
    void append(gsl::span<const std::uint32_t> numbers) {
        const std::size_t before = bytes_.size();
        bytes_.resize(before + numbers.size() * most_bytes);
        std::uint8_t* at = bytes_.data() + before;
        for (const std::uint32_t number : numbers) at = write(number, at);
        bytes_.resize(static_cast<std::size_t>(at - bytes_.data()));
    }
    /// Where the next number will stand.
    [[nodiscard]] std::size_t end() const noexcept { return bytes_.size(); }

    /// Calls `fn` with so many numbers from an offset on.
    template <class Function>
    void for_each(std::size_t offset, std::size_t count, Function fn) const {
        const std::uint8_t* at = bytes_.data() + offset;
        for (; count > 0; --count) fn(read(at));
    }
    /// No more numbers come.
    void close() { bytes_.shrink_to_fit(); }

private:
    static constexpr unsigned width = 7;
    static constexpr std::uint32_t low_bits = 0x7F;
    static constexpr std::uint32_t more_follows = 0x80;

    static constexpr std::size_t most_bytes = 5;

    [[nodiscard]] static std::uint8_t* write(std::uint32_t number, std::uint8_t* at) noexcept {
        for (; number > low_bits; number >>= width) *at++ = static_cast<std::uint8_t>(number | more_follows);
        *at = static_cast<std::uint8_t>(number);
        return at + 1;
    }
    [[nodiscard]] static std::uint32_t read(const std::uint8_t*& at) noexcept {
        std::uint32_t number = *at & low_bits;
        for (unsigned shift = width; (*at++ & more_follows) != 0; shift += width)
            number |= (*at & low_bits) << shift;
        return number;
    }

    std::vector<std::uint8_t> bytes_;
};

}  // namespace GenICam
