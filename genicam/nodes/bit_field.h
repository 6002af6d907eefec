#pragma once

#include "genicam/core/children.h"
#include "genicam/inode.h"
#include "genicam/nodes/register_base.h"

#include <cstdint>

#include <pugixml.hpp>

namespace GenICam {

/// A field of bits in a register. Bit 0 is the lowest bit of a little-endian register and the highest bit of
/// a big-endian one.
class bit_field {
public:
    /// Reads `Bit`, or `MSB` and `LSB`. What cannot be read is bit 0; numbers beyond 32 bits are cut to the
    /// greatest.
    bit_field(const described_element& xml);

    /// The field in the word of a register of `length` bytes (1 to 8). A field that is written the wrong way
    /// round or starts outside the word is empty: it reads as 0 and a write changes nothing. Of one that ends
    /// outside the word, the part inside counts.
    [[nodiscard]] std::int64_t get(std::uint64_t word, std::int64_t length, Endianess endianess,
                                   Sign sign) const noexcept;
    /// The word with the low bits of `value` in the field.
    [[nodiscard]] std::uint64_t put(std::uint64_t word, std::int64_t value, std::int64_t length,
                                    Endianess endianess) const noexcept;

    /// Whatever the length of the register; a field of more than 64 bits has the range of 64.
    [[nodiscard]] integer_range get_range(Sign sign) const noexcept;

private:
    struct mask_and_shift {
        std::uint64_t mask;
        unsigned shift;
    };

    [[nodiscard]] mask_and_shift locate(std::int64_t length, Endianess endianess) const noexcept;
    /// How far the two ends are apart: one less than the width.
    [[nodiscard]] std::uint32_t distance() const noexcept { return lsb_ > msb_ ? lsb_ - msb_ : msb_ - lsb_; }

    std::uint32_t lsb_ = 0;
    std::uint32_t msb_ = 0;
};

/// A node that presents a field of a register as a number.
class node_base_impl_bit_field : public node_base_impl_register {
public:
    [[nodiscard]] integer_range get_value_range() const { return bits_.get_range(cache_.sign); }

protected:
    node_base_impl_bit_field(document_services* services, const described_element& xml);
    ~node_base_impl_bit_field() = default;

    // The length of the span must fit a number.

    [[nodiscard]] result<std::int64_t> read_field(register_span span, std::uint32_t flags);
    /// Reads the register, with the same flags, puts the value in and writes it back.
    [[nodiscard]] std::error_code write_field(register_span span, std::int64_t value, std::uint32_t flags);

private:
    bit_field bits_;
};

}  // namespace GenICam
