#include "genicam/nodes/integer_nodes.h"

#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"
#include "genicam/genicam_doc.h"

namespace GenICam {
void integer_constant_value_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    read_value(doc, xml, messages::integer_constant_value_invalid);
}

std::error_code integer_constant_value_type::set_val(std::int64_t, std::uint32_t) {
    return make_error_code(access_denied);
}

void integer_floating_value_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    read_value(doc, xml, messages::integer_floating_value_invalid);
}

std::error_code integer_floating_value_type::set_val(std::int64_t value, std::uint32_t flags) {
    if (const std::error_code refused = check_access(true, flags)) return refused;
    if (!is_in_range(*this, value, flags)) {
        return refuse_range(messages::integer_value_out_of_range, origin(), value);
    }
    store_value(value_, value);
    return {};
}

void integer_pValue_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    range_.resolve(doc, xml, *this, false);
    value_.resolve(doc, xml, child::pValue, *this, messages::integer_link_unresolved);
}

std::error_code integer_pValue_type::set_val(std::int64_t value, std::uint32_t flags) {
    if (const std::error_code refused = check_access(true, flags)) return refused;
    if (!value_) return make_error_code(not_implemented);
    if (!is_in_range(*this, value, flags)) {
        return refuse_range(messages::integer_link_out_of_range, origin(), value);
    }
    return value_.set(value, flags);
}

void integer_pValueCopy_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    range_.resolve(doc, xml, *this, false);
    if (!value_.resolve(doc, xml, child::pValue, *this, messages::integer_copy_source_unresolved)) return;
    for (const pugi::xml_node element : xml.children()) add_target(doc, element);
}

void integer_pValueCopy_type::add_target(IGenICamDoc* doc, pugi::xml_node element) {
    const std::string_view name = element.name();
    if (name == "pValue") {
        targets_.push_back(value_.node());
    } else if (name == "pValueCopy") {
        if (INode* target = doc->find_node(element.child_value())) {
            targets_.push_back(target);
        } else {
            report(messages::integer_copy_target_unresolved, {node_base_data::xml(), element});
        }
    }
}

std::error_code integer_pValueCopy_type::set_val(std::int64_t value, std::uint32_t flags) {
    if (const std::error_code refused = check_access(true, flags)) return refused;
    if (!is_in_range(*this, value, flags)) {
        return refuse_range(messages::integer_copy_out_of_range, origin(), value);
    }
    std::error_code failed = make_error_code(not_implemented);
    for (INode* target : targets_) {
        failed = set_eval_val(target, value, flags);
        if (failed) break;
    }
    return failed;
}

result<std::int64_t> integer_pValueCopy_type::unstated_limit(range_record::limit which, std::uint32_t flags) {
    if (which != range_record::min && which != range_record::max)
        return integer_linked_value::unstated_limit(which, flags);
    result<std::int64_t> narrowest = unlimited_integer(which);
    for (INode* target : targets_) {
        const result<std::int64_t> limit = get_eval_limit<std::int64_t>(target, which, flags);
        if (!limit) return limit;
        const std::int64_t value = limit.assume_value();
        const bool narrows =
            which == range_record::min ? value > narrowest.assume_value() : value < narrowest.assume_value();
        if (narrows) narrowest = value;
    }
    return narrowest;
}

result<std::int64_t> integer_pValueCopy_type::get_default(std::uint32_t flags) {
    if (range_.kind(range_record::inc) != limit_kind::absent) return get_inc(flags);
    return unstated_limit(range_record::default_value, flags);
}

void integer_pIndex_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    if (!values_.resolve_index(doc, xml, this)) return;
    range_.resolve(doc, xml, *this, false);
    values_.resolve_table(doc, xml, this, false);
}

IInteger* integer_pIndex_type::current_target() {
    INode* link = values_.current_link(access_flags::none);
    const bool is_integer = link != nullptr && link->get_node_type() == node_type::integer;
    return is_integer ? static_cast<IInteger*>(link) : nullptr;
}

Representation integer_pIndex_type::get_representation() {
    if (const std::optional<Representation> own = find_representation(node_base_data::xml())) return *own;
    IInteger* target = current_target();
    return target != nullptr ? target->get_representation() : Representation::PureNumber;
}

std::string_view integer_pIndex_type::get_unit() {
    const std::string_view own = child_text(node_base_data::xml(), "Unit");
    if (!own.empty()) return own;
    IInteger* target = current_target();
    return target != nullptr ? target->get_unit() : std::string_view();
}

std::error_code integer_pIndex_type::set_val(std::int64_t value, std::uint32_t flags) {
    if (const std::error_code refused = check_access(true, flags)) return refused;
    if (!is_in_range(*this, value, flags)) {
        return refuse_range(messages::integer_index_out_of_range, origin(), value);
    }
    const result<indexed_entry*> found = values_.current_entry(flags);
    if (!found) return found.error();
    indexed_entry& entry = *found.assume_value();
    if (entry.node != nullptr) return set_eval_val(entry.node, value, flags);
    store_value(entry.value.integer, value);
    return {};
}

result<std::int64_t> integer_pIndex_type::get_val(std::uint32_t flags) {
    if (const std::error_code refused = check_access(false, flags)) return refused;
    const result<indexed_entry*> found = values_.current_entry(flags);
    if (!found) return found.error();
    const indexed_entry& entry = *found.assume_value();
    if (entry.node != nullptr) return get_eval_int(entry.node, flags);
    return entry.value.integer;
}

result<std::int64_t> integer_pIndex_type::unstated_limit(range_record::limit which, std::uint32_t flags) {
    INode* link = values_.current_link(flags);
    return link != nullptr ? get_eval_limit<std::int64_t>(link, which, flags) : unlimited_integer(which);
}

}  // namespace GenICam
