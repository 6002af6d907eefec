#include "genicam/nodes/string_nodes.h"

#include "genicam/base/node_link.h"
#include "genicam/core/messages.h"
#include "genicam/genicam_doc.h"

#include <cstddef>
#include <limits>
#include <utility>

namespace GenICam {
namespace {

// No text of a camera comes near this, while a length may be whatever stands in a register.
constexpr std::int64_t greatest_text = std::int64_t{16} << 20;

IString* find_string(IGenICamDoc* doc, std::string_view name) {
    INode* node = doc->find_node(name);
    const bool is_string = node != nullptr && node->get_node_type() == node_type::string;
    return is_string ? static_cast<IString*>(node) : nullptr;
}

}  // namespace

void string_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    const std::string_view name = child_text(xml, child::pValue);
    if (name.empty()) {
        value_ = child_text(xml, child::Value);
        return;
    }
    link_ = find_string(doc, name);
    if (!depend_on(link_, this)) report(messages::string_link_unresolved, origin(child::pValue));
}

result<std::string> string_type::get_val(std::uint32_t flags) {
    if (const std::error_code refused = check_own_access(false, flags)) return refused;
    if (link_ != nullptr) return link_->get_val(flags);
    return value_;
}

std::error_code string_type::set_val(std::string_view value, std::uint32_t flags) {
    if (const std::error_code refused = check_own_access(true, flags)) return refused;
    if (link_ != nullptr) return link_->set_val(value, flags);
    value_ = value;
    return spread_write(*this, {});
}

std::error_code string_cache::read(register_span span, std::string& text, std::uint32_t flags) {
    if (port == nullptr) return make_error_code(not_implemented);
    const bool is_cache_only = (flags & access_flags::cache_only) != 0;
    if ((flags & access_flags::bypass_cache) == 0 && (is_cache_only || cachable != Cachable::NoCache)) {
        const bool is_held = cache_valid && cached_address == span.address;
        const auto length = static_cast<std::size_t>(span.length);
        if (is_held && length <= cached_text.size()) {
            text.assign(cached_text, 0, length);
            return {};
        }
        if (is_cache_only) return make_error_code(is_held ? buffer_too_small : no_cached_value);
    }
    text.assign(static_cast<std::size_t>(span.length), '\0');
    if (const std::error_code failure = port->read(span.address, text.data(), span.length, flags))
        return failure;
    return store(span.address, text);
}

std::error_code string_cache::write(std::uint64_t address, std::string_view text, std::uint32_t flags) {
    if (port == nullptr) return make_error_code(not_implemented);
    const bool is_cache_only = (flags & access_flags::cache_only) != 0;
    if (is_cache_only && cachable == Cachable::NoCache) return make_error_code(not_implemented);
    if (is_cache_only || cachable == Cachable::WriteThrough) {
        const std::error_code failure = store(address, text);
        if (failure || is_cache_only) return failure;
    } else if (cachable == Cachable::WriteAround) {
        clear();
    }
    return port->write(address, text.data(), static_cast<std::int64_t>(text.size()), flags);
}

std::error_code string_cache::store(std::uint64_t address, std::string_view text) {
    if (text.size() > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
        return make_error_code(buffer_too_small);
    }
    cached_text = text;
    cached_address = address;
    cache_valid = true;
    return {};
}

string_reg_type::string_reg_type(document_services* services, const described_element& xml)
    : node_base_impl_value(services, xml) {
    cache_.cachable = parse_cachable(xml, xml.text(child::Cachable), Cachable::WriteThrough);
    read_access_mode(*this, xml);
}

void string_reg_type::invalidate() {
    cache_.clear();
    notify_changed();
}

void string_reg_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    address_.resolve_references_len(doc, xml, this);
    cache_.port = find_register_port(doc, xml);
}

result<std::string> string_reg_type::get_val(std::uint32_t flags) {
    if (const std::error_code refused = check_own_access(false, flags)) return refused;
    const result<register_span> span = address_.get_address_and_length(flags);
    if (!span) return span.error();
    const std::int64_t length = span.assume_value().length;
    if (length < 0 || length > greatest_text) return make_error_code(index_out_of_range);
    std::string text;
    if (const std::error_code failure = cache_.read(span.assume_value(), text, flags)) return failure;
    return {std::move(text)};
}

std::error_code string_reg_type::set_val(std::string_view value, std::uint32_t flags) {
    if (const std::error_code refused = check_own_access(true, flags)) return refused;
    const result<register_span> span = address_.get_address_and_length(flags);
    if (!span) return span.error();
    return spread_write(*this, cache_.write(span.assume_value().address, value, flags));
}

}  // namespace GenICam
