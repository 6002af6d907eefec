#include "genicam/nodes/int_reg_nodes.h"

#include "genicam/core/messages.h"

#include <algorithm>

namespace GenICam {

int_reg_type_base::int_reg_type_base(document_services* services, const described_element& xml)
    : node_base_impl_register(services, xml) {
    read_cache_words(xml);
    cache_.sign = parse_sign(xml, xml.text(child::Sign));
    read_access_mode(*this, xml);
}

void int_reg_type_base::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    cache_.port = find_register_port(doc, xml);
}

message_origin int_reg_type_base::length_origin() const {
    return origin(node_base_data::xml().child("pLength") ? child::pLength : child::Length);
}

integer_range int_reg_type_base::get_value_range() {
    const std::int64_t length = std::clamp<std::int64_t>(get_length(), 0, word_size);
    return range_of_bits(static_cast<unsigned>(length) * 8, cache_.sign);
}

result<std::int64_t> int_reg_type_base::read_number(register_span span, std::uint32_t flags) {
    if (!fits_word(span.length)) {
        report(messages::int_register_get_length, length_origin(), span.length);
        return make_error_code(index_out_of_range);
    }
    std::uint64_t word = 0;
    if (const std::error_code failure = cache_.read_word(span, word, flags)) return failure;
    if (cache_.sign == Sign::Signed) word = extend_sign(word, static_cast<unsigned>(span.length) * 8);
    return static_cast<std::int64_t>(word);
}

std::error_code int_reg_type_base::write_number(register_span span, std::int64_t value, std::uint32_t flags) {
    if (!fits_word(span.length)) {
        report(messages::int_register_set_length, length_origin(), span.length);
        return make_error_code(index_out_of_range);
    }
    return cache_.write_word(span, static_cast<std::uint64_t>(value), flags);
}

int_reg_type_const_address::int_reg_type_const_address(document_services* services,
                                                       const described_element& xml)
    : addressed_register(services, xml, register_const_address_eval(xml)) {}

int_reg_type_dyn::int_reg_type_dyn(document_services* services, const described_element& xml)
    : addressed_register(services, xml, register_dyn_address_eval()) {}

void int_reg_type_dyn::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    int_reg_type_base::_resolve_references(doc, xml);
    address_.resolve_references_len(doc, xml, this);
}

}  // namespace GenICam
