#include "genicam/nodes/masked_int_reg_nodes.h"

#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"

namespace GenICam {
namespace {

constexpr std::int32_t fallback_length = 4;

}  // namespace

masked_int_reg_type_base::masked_int_reg_type_base(document_services* services, const described_element& xml)
    : node_base_impl_bit_field(services, xml) {
    cache_.endianess = parse_endianess(xml, xml.text(child::Endianess));
    read_access_mode(*this, xml);
}

void masked_int_reg_type_base::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    std::int64_t length = 0;
    if (parse_int(child_text(xml, child::Length), length) == 0 || length < 0) {
        report(messages::masked_length_invalid, {xml, child::Length});
    } else {
        length_ = fits_word(length) ? static_cast<std::int32_t>(length) : fallback_length;
    }
    cache_.port = find_register_port(doc, xml);
}

masked_int_reg_type_const_address::masked_int_reg_type_const_address(document_services* services,
                                                                     const described_element& xml)
    : masked_register(services, xml), address_(calc_address_nodes_sum(xml)) {}

std::error_code masked_int_reg_type_const_address::set_val(std::int64_t value, std::uint32_t flags) {
    if (const std::error_code refused = check_own_access(true, flags)) return refused;
    return spread_write(*this, write_field({address_, length()}, value, flags));
}

result<std::int64_t> masked_int_reg_type_const_address::get_val(std::uint32_t flags) {
    if (const std::error_code refused = check_own_access(false, flags)) return refused;
    return read_field({address_, length()}, flags);
}

void masked_int_reg_type_dyn_address::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    address_.resolve_references(doc, xml, this);
    masked_int_reg_type_base::_resolve_references(doc, xml);
}

result<std::uint64_t> masked_int_reg_type_dyn_address::get_address(std::uint32_t flags) {
    return address_.calc_address(length(), flags);
}

std::error_code masked_int_reg_type_dyn_address::set_val(std::int64_t value, std::uint32_t flags) {
    if (const std::error_code refused = check_own_access(true, flags)) return refused;
    const result<std::uint64_t> address = get_address(flags);
    if (!address) return address.error();
    return spread_write(*this, write_field({address.assume_value(), length()}, value, flags));
}

result<std::int64_t> masked_int_reg_type_dyn_address::get_val(std::uint32_t flags) {
    if (const std::error_code refused = check_own_access(false, flags)) return refused;
    const result<std::uint64_t> address = get_address(flags);
    if (!address) return address.error();
    return read_field({address.assume_value(), length()}, flags);
}

}  // namespace GenICam
