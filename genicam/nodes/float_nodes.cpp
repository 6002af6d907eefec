#include "genicam/nodes/float_nodes.h"

#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"
#include "genicam/genicam_doc.h"

#include <cstring>

namespace GenICam {
namespace {

std::int64_t bits_of(double value) noexcept {
    std::int64_t bits = 0;
    static_assert(sizeof(bits) == sizeof(value));
    std::memcpy(&bits, &value, sizeof(bits));
    return bits;
}

}  // namespace

void float_constant_value_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    read_value(doc, xml, messages::float_constant_value_invalid);
}

std::error_code float_constant_value_type::set_val(double, std::uint32_t) {
    return make_error_code(access_denied);
}

void float_floating_value_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    read_value(doc, xml, messages::float_floating_value_invalid);
}

std::error_code float_floating_value_type::set_val(double value, std::uint32_t flags) {
    if (const std::error_code refused = check_access(true, flags)) return refused;
    if (!is_in_range(*this, value, flags)) {
        return refuse_range(messages::float_value_out_of_range, origin(), value);
    }
    store_value(value_, value);
    return {};
}

result<double> float_floating_value_type::get_val(std::uint32_t flags) {
    if (const std::error_code refused = check_access(false, flags)) return refused;
    return value_;
}

void float_pValue_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    range_.resolve(doc, xml, *this, true);
    value_.resolve(doc, xml, child::pValue, *this, messages::float_link_unresolved);
}

std::error_code float_pValue_type::set_val(double value, std::uint32_t flags) {
    if (const std::error_code refused = check_access(true, flags)) return refused;
    if (!value_) return make_error_code(not_implemented);
    if (!is_in_range(*this, value, flags)) {
        return refuse_range(messages::float_link_out_of_range, origin(), value);
    }
    return value_.set(value, flags);
}

result<double> float_pValue_type::get_val(std::uint32_t flags) {
    if (const std::error_code refused = check_access(false, flags)) return refused;
    return value_.get<double>(flags);
}

result<double> float_pValue_type::unstated_limit(range_record::limit which, std::uint32_t flags) {
    if (!value_) return make_error_code(not_implemented);
    return get_eval_limit<double>(value_.node(), which, flags);
}

void float_pIndex_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    if (!values_.resolve_index(doc, xml, this)) return;
    range_.resolve(doc, xml, *this, true);
    values_.resolve_table(doc, xml, this, true);
}

IFloat* float_pIndex_type::current_target() {
    INode* link = values_.current_link(access_flags::none);
    const bool is_float = link != nullptr && link->get_node_type() == node_type::floating;
    return is_float ? static_cast<IFloat*>(link) : nullptr;
}

FloatRepresentation float_pIndex_type::get_representation() {
    if (const std::optional<FloatRepresentation> own = find_float_representation(node_base_data::xml()))
        return *own;
    IFloat* target = current_target();
    return target != nullptr ? target->get_representation() : FloatRepresentation::PureNumber;
}

std::string_view float_pIndex_type::get_unit() {
    const std::string_view own = child_text(node_base_data::xml(), "Unit");
    if (!own.empty()) return own;
    IFloat* target = current_target();
    return target != nullptr ? target->get_unit() : std::string_view();
}

DisplayNotation float_pIndex_type::get_display_notation() {
    if (const std::optional<DisplayNotation> own = find_display_notation(node_base_data::xml())) return *own;
    IFloat* target = current_target();
    return target != nullptr ? target->get_display_notation() : DisplayNotation::Automatic;
}

std::int64_t float_pIndex_type::get_display_precision() {
    if (const std::optional<std::int64_t> own = find_display_precision(node_base_data::xml())) return *own;
    IFloat* target = current_target();
    return target != nullptr ? target->get_display_precision() : default_display_precision;
}

std::error_code float_pIndex_type::set_val(double value, std::uint32_t flags) {
    if (const std::error_code refused = check_access(true, flags)) return refused;
    if (!is_in_range(*this, value, flags)) {
        return refuse_range(messages::float_index_out_of_range, origin(), bits_of(value));
    }
    const result<indexed_entry*> found = values_.current_entry(flags);
    if (!found) return found.error();
    indexed_entry& entry = *found.assume_value();
    if (entry.node != nullptr) return set_eval_val(entry.node, value, flags);
    store_value(entry.value.real, value);
    return {};
}

result<double> float_pIndex_type::get_val(std::uint32_t flags) {
    if (const std::error_code refused = check_access(false, flags)) return refused;
    const result<indexed_entry*> found = values_.current_entry(flags);
    if (!found) return found.error();
    const indexed_entry& entry = *found.assume_value();
    if (entry.node != nullptr) return get_eval_double(entry.node, flags);
    return entry.value.real;
}

result<double> float_pIndex_type::unstated_limit(range_record::limit which, std::uint32_t flags) {
    INode* link = values_.current_link(flags);
    return link != nullptr ? get_eval_limit<double>(link, which, flags) : unlimited_float(which);
}

}  // namespace GenICam
