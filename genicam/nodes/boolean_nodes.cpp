#include "genicam/nodes/boolean_nodes.h"

#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"
#include "genicam/genicam_doc.h"

namespace GenICam {
namespace {

std::optional<bool> find_truth(std::string_view text) noexcept {
    if (text == "true" || text == "1") return true;
    if (text == "false" || text == "0") return false;
    return std::nullopt;
}

}  // namespace

boolean_mapping::boolean_mapping(const described_element& xml) {
    // Text that is no number leaves the usual 1 and 0, and the parser leaves what it cannot read.
    static_cast<void>(parse_int(child_text(xml, child::OnValue), on_value_));
    static_cast<void>(parse_int(child_text(xml, child::OffValue), off_value_));
}

void boolean_mapping::resolve_default(IGenICamDoc* doc, const described_element& xml, node_base_data& owner) {
    if (!xml.has(child::Extension)) return;
    default_.store(resolve_link_or_value_from_contents(doc, xml, owner.find_extension("Default"),
                                                       owner.find_extension("pDefault")),
                   owner.get_node());
}

bool boolean_mapping::value_of(std::int64_t number, const node_base_data& owner,
                               const message<std::int64_t>& is_neither) const {
    if (number == on_value_) return true;
    if (number == off_value_) return false;
    report(is_neither, owner.origin(), number);
    return number != 0;
}

result<bool> boolean_mapping::get_default(std::uint32_t flags) const {
    const result<std::int64_t> number = default_.evaluate(flags);
    if (!number) return number.error();
    return number.assume_value() != off_value_;
}

boolean_pValue_type::boolean_pValue_type(document_services* services, const described_element& xml)
    : node_base_impl_dependent_cache(services, xml), implement_inode_Boolean_type(xml) {}

void boolean_pValue_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    mapping_.resolve_default(doc, xml, *this);
    value_.resolve(doc, xml, child::pValue, *this, messages::boolean_link_unresolved);
}

std::error_code boolean_pValue_type::set_val(bool value, std::uint32_t flags) {
    if (const std::error_code refused = check_access(true, flags)) return refused;
    return value_.set(mapping_.number_of(value), flags);
}

result<bool> boolean_pValue_type::get_val(std::uint32_t flags) {
    if (const std::error_code refused = check_access(false, flags)) return refused;
    const result<std::int64_t> number = value_.get<std::int64_t>(flags);
    if (!number) return number.error();
    return mapping_.value_of(number.assume_value(), *this, messages::boolean_link_is_neither);
}

boolean_Value_type::boolean_Value_type(document_services* services, const described_element& xml)
    : node_base_impl_value(services, xml), implement_inode_Boolean_type(xml) {}

void boolean_Value_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    mapping_.resolve_default(doc, xml, *this);
    if (const std::optional<bool> value = find_truth(child_text(xml, child::Value))) {
        value_ = mapping_.number_of(*value);
    } else {
        report(messages::boolean_value_invalid, origin(child::Value));
    }
}

std::error_code boolean_Value_type::set_val(bool value, std::uint32_t flags) {
    if (const std::error_code refused = check_access(true, flags)) return refused;
    const std::int64_t number = mapping_.number_of(value);
    store_value(value_, number);
    return {};
}

result<bool> boolean_Value_type::get_val(std::uint32_t flags) {
    if (const std::error_code refused = check_access(false, flags)) return refused;
    return mapping_.value_of(value_, *this, messages::boolean_value_is_neither);
}

}  // namespace GenICam
