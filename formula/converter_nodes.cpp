#include "formula/converter_nodes.h"

#include "formula/formula_evaluator.h"
#include "formula/formula_limits.h"
#include "genicam/core/node_log.h"
#include "genicam/core/value_links.h"
#include "genicam/genicam_doc.h"

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

bool converter_impl::resolve_target(IGenICamDoc* doc, const described_element& xml, node_base_data& self) {
    target_ = doc->find_node(child_text(xml, child::pValue));
    if (target_ == nullptr) {
        log_node(
            "GenICam::converter::converter_impl::resolve_converter_references, "
            "Converter (\"%s\"). Failed due to missing pValue element.\n",
            self);
        return false;
    }
    target_->get_eval()->add_dependent(self.get_node());
    return true;
}

void converter_impl::resolve_converter_references(IGenICamDoc* doc, const described_element& xml,
                                                  node_base_data& self) {
    if (!resolve_target(doc, xml, self)) return;
    const std::string_view from = child_text(xml, child::FormulaFrom);
    const std::string_view to = child_text(xml, child::FormulaTo);
    if (from.empty() || to.empty()) {
        log_node(
            "GenICam::converter::converter_impl::resolve_converter_references, "
            "Converter (\"%s\"). Failed due to missing FormulaFrom/FormulaTo member(s).\n",
            self);
        return;
    }
    variable_table table(false, self.formula_expansion());
    table.build_formula_name_lookup(doc, xml, map_.is_integer());
    map_.resolve_converter_references(doc, xml, self.get_node(), table);
    const bool reads_float = target_->get_node_type() == node_type::floating;
    const bool takes_float = !map_.is_integer();
    if (parse(from, table, reads_float, self, formula_from_))
        parse(to, table, takes_float, self, formula_to_);
}

bool converter_impl::parse(std::string_view text, const variable_table& table, bool is_float,
                           const node_base_data& self, formula_program& program) const {
    const number_kind kind = is_float ? number_kind::floating : number_kind::integer;
    if (map_.parse(text, table, kind, self.formulas(), program)) {
        log_node(
            "GenICam::converter::converter_impl::resolve_converter_references, "
            "Converter (\"%s\"). failed to evaluate \"%.*s\"\n",
            self, static_cast<int>(text.size()), text.data());
        return false;
    }
    return true;
}

result<eval_value> converter_impl::read(std::uint32_t flags) {
    if (formula_from_.empty() || target_ == nullptr) return make_error_code(not_implemented);
    map_.refresh(flags);
    const result<eval_value> value = get_eval_value(target_, flags);
    if (!value) return value.error();
    map_.current = value.assume_value();
    return evaluate_formula(formula_from_, map_);
}

std::error_code converter_impl::write(const eval_value& value, std::uint32_t flags) {
    if (formula_to_.empty() || target_ == nullptr) return make_error_code(not_implemented);
    map_.refresh(flags);
    map_.current = value;
    const result<eval_value> converted = evaluate_formula(formula_to_, map_);
    if (!converted) return converted.error();
    return set_result(target_, converted.assume_value(), flags);
}

void int_converter_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    impl_.resolve_converter_references(doc, xml, *this);
}

std::error_code int_converter_type::set_val(std::int64_t value, std::uint32_t flags) {
    return impl_.write(eval_value::of(value), flags);
}

result<std::int64_t> int_converter_type::get_val(std::uint32_t flags) {
    const result<eval_value> value = impl_.read(flags);
    if (!value) return value.error();
    return to_int(value.assume_value());
}

result<std::int64_t> int_converter_type::get_min(std::uint32_t) { return formula_integer_min; }
result<std::int64_t> int_converter_type::get_max(std::uint32_t) { return formula_integer_max; }
result<std::int64_t> int_converter_type::get_inc(std::uint32_t) { return formula_integer_inc; }
result<std::int64_t> int_converter_type::get_default(std::uint32_t) {
    return make_error_code(not_implemented);
}

void float_converter_type::_resolve_references(IGenICamDoc* doc, const described_element& xml) {
    impl_.resolve_converter_references(doc, xml, *this);
}

std::error_code float_converter_type::set_val(double value, std::uint32_t flags) {
    return impl_.write(eval_value::of(value), flags);
}

result<double> float_converter_type::get_val(std::uint32_t flags) {
    const result<eval_value> value = impl_.read(flags);
    if (!value) return value.error();
    return to_double(value.assume_value());
}

result<double> float_converter_type::get_min(std::uint32_t) { return formula_float_min; }
result<double> float_converter_type::get_max(std::uint32_t) { return formula_float_max; }
result<double> float_converter_type::get_default(std::uint32_t) { return make_error_code(not_implemented); }
result<double> float_converter_type::get_inc(std::uint32_t) { return make_error_code(not_implemented); }

}  // namespace GenICam
