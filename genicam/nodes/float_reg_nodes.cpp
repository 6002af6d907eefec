#include "genicam/nodes/float_reg_nodes.h"

#include "genicam/core/messages.h"

#include <cstring>
#include <limits>

namespace GenICam {
namespace {

using single_limits = std::numeric_limits<float>;
using double_limits = std::numeric_limits<double>;

constexpr std::int64_t single_size = sizeof(float);
constexpr std::int64_t double_size = sizeof(double);

constexpr bool is_float_size(std::int64_t length) noexcept {
    return length == single_size || length == double_size;
}

// Rounded as the processor does it. The language leaves numbers beyond the greatest single undefined.
float to_single(double number) noexcept {
    constexpr auto greatest = static_cast<double>(single_limits::max());
    constexpr double first_infinite = 0x1.ffffffp127;  // half a step above the greatest
    if (number > greatest) return number < first_infinite ? single_limits::max() : single_limits::infinity();
    if (number < -greatest)
        return number > -first_infinite ? single_limits::lowest() : -single_limits::infinity();
    return static_cast<float>(number);
}

template <class To, class From>
To bit_copy(From from) noexcept {
    static_assert(sizeof(To) == sizeof(From));
    To to;
    std::memcpy(&to, &from, sizeof to);
    return to;
}

std::uint64_t bits_of(double number, std::int64_t length) noexcept {
    return length == single_size ? bit_copy<std::uint32_t>(to_single(number))
                                 : bit_copy<std::uint64_t>(number);
}

double number_of(std::uint64_t bits, std::int64_t length) noexcept {
    if (length == double_size) return bit_copy<double>(bits);
    return static_cast<double>(bit_copy<float>(static_cast<std::uint32_t>(bits)));
}

std::error_code refuse_length(const message<std::int64_t>& wrong_length, std::int64_t length) {
    report(wrong_length, {}, length);
    return make_error_code(index_out_of_range);
}

}  // namespace

float_reg_type_base::float_reg_type_base(document_services* services, const described_element& xml)
    : node_base_impl_register(services, xml) {
    read_cache_words(xml);
    read_access_mode(*this, xml);
}

void float_reg_type_base::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    cache_.port = find_register_port(doc, xml);
}

result<double> float_reg_type_base::get_min(std::uint32_t) {
    return get_length() == double_size ? double_limits::min() : static_cast<double>(single_limits::min());
}

result<double> float_reg_type_base::get_max(std::uint32_t) {
    return get_length() == double_size ? double_limits::max() : static_cast<double>(single_limits::max());
}

result<double> float_reg_type_base::get_inc(std::uint32_t) { return make_error_code(not_implemented); }

result<double> float_reg_type_base::get_default(std::uint32_t) { return make_error_code(not_implemented); }

result<double> float_reg_type_base::read_number(register_span span, std::uint32_t flags) {
    if (!is_float_size(span.length)) {
        return refuse_length(messages::float_register_get_length, span.length);
    }
    std::uint64_t bits = 0;
    if (const std::error_code failure = cache_.read_word(span, bits, flags)) return failure;
    return number_of(bits, span.length);
}

std::error_code float_reg_type_base::write_number(register_span span, double value, std::uint32_t flags) {
    if (!is_float_size(span.length)) {
        return refuse_length(messages::float_register_set_length, span.length);
    }
    return cache_.write_word(span, bits_of(value, span.length), flags);
}

float_reg_type_const_address::float_reg_type_const_address(document_services* services,
                                                           const described_element& xml)
    : addressed_register(services, xml, register_const_address_eval(xml)) {}

float_reg_type_dyn::float_reg_type_dyn(document_services* services, const described_element& xml)
    : addressed_register(services, xml, register_dyn_address_eval()) {}

void float_reg_type_dyn::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    float_reg_type_base::_resolve_references(doc, xml);
    address_.resolve_references_len(doc, xml, this);
}

}  // namespace GenICam
