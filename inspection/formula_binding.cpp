#include "inspection/formula_binding.h"

#include "genicam/base/value_links.h"
#include "genicam/document/node_facts.h"
#include "genicam/nodes/formula_names.h"

namespace selvane_inspect {

bool formula_binding::has_formulas(const node_element& element) {
    return element.made != nullptr && GenICam::find_node_facts(element.made->name)->computes;
}

formula_binding::formula_binding(description& from, element_index index)
    : xml_(from.tree().at(index).xml),
      is_converter_(!GenICam::find_node_facts(from.tree().at(index).made->name)->targets.empty()),
      table_(!is_converter_, from.formula_expansion()),
      map_(from.node_of(index)->get_node_type() == GenICam::node_type::integer) {
    const silence quiet;
    GenICam::IGenICamDoc* document = from.document();
    const GenICam::scanned_element scanned(xml_);
    GenICam::build_formula_name_lookup(table_, document, *scanned, is_integer());
    sources_.resize(scanned->count(GenICam::child::pVariable));
    map_.read_references(document, *scanned, table_, sources_.data());
    if (is_converter_) target_ = document->find_node(xml_.child_value("pValue"));
    for (const char* name : {"Formula", "FormulaFrom", "FormulaTo", "Expression"}) parse(name);
}

// A swissknife has no use for the formulas of a converter, nor the other way round.
void formula_binding::parse(const char* element_name) {
    const std::string_view name = element_name;
    if (name != "Expression" && (name == "Formula") == is_converter_) return;
    for (const pugi::xml_node xml : xml_.children(element_name)) {
        const std::string_view text = xml.child_value();
        formulas_.push_back({xml, text, GenICam::read_formula(text, table_), std::nullopt});
        bound_formula& formula = formulas_.back();
        if (formula.tree.is_accepted()) formula.program = formula.tree.program();
        if (name != "Expression") break;  // only the first counts
    }
}

// What FROM stands for while the node is read.
void formula_binding::refresh() {
    const silence quiet;
    map_.refresh(GenICam::access_flags::none);
    if (target_ == nullptr) return;
    const GenICam::result<GenICam::eval_value> value =
        GenICam::get_eval_value(target_, GenICam::access_flags::none);
    if (value) map_.current = value.assume_value();
}

}  // namespace selvane_inspect
