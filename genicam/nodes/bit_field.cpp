#include "genicam/nodes/bit_field.h"

#include "genicam/core/number_parser.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace GenICam {
namespace {

constexpr std::int64_t word_bits = word_size * 8;

std::optional<std::uint32_t> parse_bit(const described_element& xml, child name) {
    std::int64_t number = 0;
    if (parse_int(child_text(xml, name), number) == 0 || number < 0) return std::nullopt;
    constexpr std::int64_t greatest = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::min(number, greatest));
}

}  // namespace

bit_field::bit_field(const described_element& xml) {
    if (const auto bit = parse_bit(xml, child::Bit)) {
        lsb_ = msb_ = *bit;
        return;
    }
    const auto msb = parse_bit(xml, child::MSB);
    const auto lsb = parse_bit(xml, child::LSB);
    if (!msb || !lsb) return;
    msb_ = *msb;
    lsb_ = *lsb;
}

bit_field::mask_and_shift bit_field::locate(std::int64_t length, Endianess endianess) const noexcept {
    std::int64_t low = lsb_;
    std::int64_t high = msb_;
    if (endianess == Endianess::BigEndian) {
        low = length * 8 - 1 - low;
        high = length * 8 - 1 - high;
    }
    if (low < 0 || low >= word_bits || high < low) return {0, 0};
    high = std::min(high, word_bits - 1);
    const std::uint64_t ones = ~std::uint64_t{0} >> (word_bits - 1 - (high - low));
    return {ones << low, static_cast<unsigned>(low)};
}

std::int64_t bit_field::get(std::uint64_t word, std::int64_t length, Endianess endianess,
                            Sign sign) const noexcept {
    const mask_and_shift at = locate(length, endianess);
    std::uint64_t field = (word & at.mask) >> at.shift;
    if (sign == Sign::Signed && distance() < word_bits) field = extend_sign(field, distance() + 1);
    return static_cast<std::int64_t>(field);
}

std::uint64_t bit_field::put(std::uint64_t word, std::int64_t value, std::int64_t length,
                             Endianess endianess) const noexcept {
    const mask_and_shift at = locate(length, endianess);
    return (word & ~at.mask) | ((static_cast<std::uint64_t>(value) << at.shift) & at.mask);
}

integer_range bit_field::get_range(Sign sign) const noexcept {
    constexpr std::uint32_t greatest_distance = word_bits - 1;
    return range_of_bits(std::min(distance(), greatest_distance) + 1, sign);
}

node_base_impl_bit_field::node_base_impl_bit_field(document_services* services, const described_element& xml)
    : node_base_impl_register(services, xml), bits_(xml) {
    cache_.sign = parse_sign(xml, xml.text(child::Sign));
}

result<std::int64_t> node_base_impl_bit_field::read_field(register_span span, std::uint32_t flags) {
    std::uint64_t word = 0;
    if (const std::error_code failure = cache_.read_word(span, word, flags)) return failure;
    return bits_.get(word, span.length, cache_.endianess, cache_.sign);
}

std::error_code node_base_impl_bit_field::write_field(register_span span, std::int64_t value,
                                                      std::uint32_t flags) {
    std::uint64_t word = 0;
    if (const std::error_code failure = cache_.read_word(span, word, flags)) return failure;
    return cache_.write_word(span, bits_.put(word, value, span.length, cache_.endianess), flags);
}

}  // namespace GenICam
