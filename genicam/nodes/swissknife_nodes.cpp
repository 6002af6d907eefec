#include "genicam/nodes/swissknife_nodes.h"

#include "formula/formula_store.h"
#include "genicam/core/messages.h"
#include "genicam/nodes/formula_names.h"
#include "genicam/nodes/formula_watch.h"

namespace GenICam {

void swissknife_impl::resolve_converter_references(IGenICamDoc* doc, const described_element& xml,
                                                   node_base_data& self) {
    map_.take_room(xml, self);
    const std::string_view text = child_text(xml, child::Formula);
    if (text.empty()) {
        report(messages::swissknife_formula_missing, self.origin());
        return;
    }
    variable_table table(true, self.formula_expansion());
    build_formula_name_lookup(table, doc, xml, map_.is_integer());
    map_.resolve_converter_references(doc, xml, self, table);
    formula_ = &self.formulas().keep(text, table, map_.kinds(number_kind::integer));
    if (formula_->was_refused()) {
        report(messages::swissknife_formula_invalid, self.origin(child::Formula), text);
    }
}

result<eval_value> swissknife_impl::evaluate(const node_base_data& self, std::uint32_t flags) {
    if (formula_ == nullptr || formula_->is_empty()) return make_error_code(not_implemented);
    map_.refresh(flags);
    return compute_formula(formula_->program(), map_, self, child::Formula);
}

int_swissknife_type::int_swissknife_type(document_services* services, const described_element& xml)
    : node_base_impl_dependent_cache(services, xml) {
    set_actual_access_mode(AccessMode::RO);
}

void int_swissknife_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    impl_.resolve_converter_references(doc, xml, *this);
}

std::error_code int_swissknife_type::set_val(std::int64_t, std::uint32_t) {
    return make_error_code(not_implemented);
}

result<std::int64_t> int_swissknife_type::get_val(std::uint32_t flags) {
    return number_of(impl_.evaluate(*this, flags));
}

float_swissknife_type::float_swissknife_type(document_services* services, const described_element& xml)
    : node_base_impl_dependent_cache(services, xml) {
    set_actual_access_mode(AccessMode::RO);
}

void float_swissknife_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    impl_.resolve_converter_references(doc, xml, *this);
}

std::error_code float_swissknife_type::set_val(double, std::uint32_t) {
    return make_error_code(not_implemented);
}

result<double> float_swissknife_type::get_val(std::uint32_t flags) {
    return number_of(impl_.evaluate(*this, flags));
}

}  // namespace GenICam
