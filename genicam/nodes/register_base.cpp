#include "genicam/nodes/register_base.h"

#include <limits>

namespace GenICam {

void read_access_mode(node_base_data& node, const described_element& xml) {
    node.set_actual_access_mode(parse_access_mode(xml, xml.text(child::AccessMode)));
}

void node_base_impl_register::read_cache_words(const described_element& xml) {
    cache_.cachable = parse_cachable(xml, xml.text(child::Cachable), Cachable::NoCache);
    cache_.endianess = parse_endianess(xml, xml.text(child::Endianess));
}

integer_range range_of_bits(unsigned bits, Sign sign) noexcept {
    constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();
    if (bits == 0) return {0, 0};
    if (sign == Sign::Signed) {
        const std::int64_t max = highest >> (64 - bits);
        return {-max - 1, max};
    }
    return {0, bits == 64 ? highest : highest >> (63 - bits)};
}

}  // namespace GenICam
