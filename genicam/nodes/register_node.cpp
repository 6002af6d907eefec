#include "genicam/nodes/register_node.h"

#include "genicam/core/messages.h"

namespace GenICam {

register_type::register_type(document_services* services, const described_element& xml)
    : node_base_impl_value(services, xml) {
    read_access_mode(*this, xml);
}

void register_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    address_.resolve_references_len(doc, xml, this);
    port_ = find_register_port(doc, xml);
    if (port_ == nullptr) {
        report(messages::register_port_unresolved, origin(child::pPort));
    }
}

result<register_span> register_type::find_bytes(std::int64_t length, std::uint32_t flags) const {
    const result<register_span> span = address_.get_address_and_length(flags);
    if (span && (length < 1 || length > span.assume_value().length))
        return make_error_code(invalid_parameter);
    return span;
}

std::error_code register_type::read(void* buffer, std::int64_t length, std::uint32_t flags) {
    if (const std::error_code refused = check_own_access(false, flags)) return refused;
    if (port_ == nullptr) return make_error_code(not_implemented);
    const result<register_span> span = find_bytes(length, flags);
    if (!span) return span.error();
    return port_->read(span.assume_value().address, buffer, length, flags);
}

// Asks for the port first, unlike a read.
std::error_code register_type::write(const void* buffer, std::int64_t length, std::uint32_t flags) {
    if (port_ == nullptr) return make_error_code(not_implemented);
    if (const std::error_code refused = check_own_access(true, flags)) return refused;
    const result<register_span> span = find_bytes(length, flags);
    if (!span) return span.error();
    return spread_write(*this, port_->write(span.assume_value().address, buffer, length, flags));
}

result<std::uint64_t> register_type::get_address(std::uint32_t flags) {
    const result<register_span> span = address_.get_address_and_length(flags);
    if (!span) return span.error();
    return span.assume_value().address;
}

result<std::int64_t> register_type::get_length(std::uint32_t flags) {
    const result<register_span> span = address_.get_address_and_length(flags);
    if (!span) return span.error();
    return span.assume_value().length;
}

}  // namespace GenICam
