#include "genicam/nodes/converter_nodes.h"

#include "formula/formula_store.h"
#include "genicam/base/value_links.h"
#include "genicam/core/messages.h"
#include "genicam/genicam_doc.h"
#include "genicam/nodes/formula_names.h"
#include "genicam/nodes/formula_watch.h"

namespace GenICam {
namespace {

// As every write of a value to a node, but a float for an integer node is rounded, not cut off.
std::error_code set_result(INode* target, const eval_value& value, std::uint32_t flags) {
    if (value.is_integer || target->get_node_type() == node_type::integer) {
        return set_eval_val(target, to_int(value), flags);
    }
    return set_eval_val(target, value.value.real, flags);
}

}  // namespace

void converter_impl::resolve_converter_references(IGenICamDoc* doc, const described_element& xml,
                                                  node_base_data& self) {
    map_.take_room(xml, self);
    if (!target_.resolve(doc, xml, child::pValue, self, messages::converter_link_unresolved)) return;
    if (xml.text(child::FormulaFrom).empty() || xml.text(child::FormulaTo).empty()) {
        report(messages::converter_formula_missing, self.origin());
        return;
    }
    variable_table table(false, self.formula_expansion());
    build_formula_name_lookup(table, doc, xml, map_.is_integer());
    map_.resolve_converter_references(doc, xml, self, table);
    formula_from_ = keep(xml, child::FormulaFrom, table, kinds_when_reading(), self);
    if (formula_from_ != nullptr)
        formula_to_ = keep(xml, child::FormulaTo, table, map_.kinds(map_.kind()), self);
}

// An enumeration has numbers of either kind.
source_kinds converter_impl::kinds_when_reading() const {
    const node_type target = target_.node()->get_node_type();
    const number_kind read = target == node_type::floating ? number_kind::floating : number_kind::integer;
    source_kinds kinds = map_.kinds(read);
    if (target == node_type::enumeration) kinds.are_certain = false;
    return kinds;
}

kept_formula* converter_impl::keep(const described_element& xml, child name, const variable_table& table,
                                   const source_kinds& kinds, const node_base_data& self) {
    const std::string_view text = xml.text(name);
    kept_formula& formula = self.formulas().keep(text, table, kinds);
    if (!formula.was_refused()) return &formula;
    report(messages::converter_formula_invalid, self.origin(name), text);
    return nullptr;
}

result<eval_value> converter_impl::read(const node_base_data& self, std::uint32_t flags) {
    if (formula_from_ == nullptr || formula_from_->is_empty()) return make_error_code(not_implemented);
    map_.refresh(flags);
    const result<eval_value> value = target_.get<eval_value>(flags);
    if (!value) return value.error();
    map_.current = value.assume_value();
    return compute_formula(formula_from_->program(), map_, self, child::FormulaFrom);
}

// Where reading is refused, nobody has looked at the other direction.
bool converter_impl::can_write() const {
    return formula_to_ != nullptr && !formula_from_->is_refused() && !formula_to_->is_empty();
}

std::error_code converter_impl::write(const node_base_data& self, const eval_value& value,
                                      std::uint32_t flags) {
    if (!can_write()) return make_error_code(not_implemented);
    map_.refresh(flags);
    map_.current = value;
    const result<eval_value> converted =
        compute_formula(formula_to_->program(), map_, self, child::FormulaTo);
    if (!converted) return converted.error();
    return set_result(target_.node(), converted.assume_value(), flags);
}

void int_converter_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    impl_.resolve_converter_references(doc, xml, *this);
}

std::error_code int_converter_type::set_val(std::int64_t value, std::uint32_t flags) {
    return impl_.write(*this, eval_value::of(value), flags);
}

result<std::int64_t> int_converter_type::get_val(std::uint32_t flags) {
    return number_of(impl_.read(*this, flags));
}

void float_converter_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    impl_.resolve_converter_references(doc, xml, *this);
}

std::error_code float_converter_type::set_val(double value, std::uint32_t flags) {
    return impl_.write(*this, eval_value::of(value), flags);
}

result<double> float_converter_type::get_val(std::uint32_t flags) {
    return number_of(impl_.read(*this, flags));
}

}  // namespace GenICam
