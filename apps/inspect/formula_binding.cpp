#include "apps/inspect/formula_binding.h"

#include "apps/inspect/engine_messages.h"
#include "genicam/core/value_links.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace selvane_inspect {
namespace {

using GenICam::eval_value;

struct formula_kind {
    std::string_view element;
    bool is_converter;
    bool is_integer;
};
constexpr formula_kind formula_kinds[] = {{"IntSwissKnife", false, true},
                                          {"SwissKnife", false, false},
                                          {"IntConverter", true, true},
                                          {"Converter", true, false}};

const formula_kind* kind_of(pugi::xml_node element) {
    const std::string_view name = element.name();
    const auto* found = std::find_if(std::begin(formula_kinds), std::end(formula_kinds),
                                     [&](const formula_kind& kind) { return kind.element == name; });
    return found != std::end(formula_kinds) ? found : nullptr;
}

}  // namespace

bool formula_binding::has_formulas(pugi::xml_node element) { return kind_of(element) != nullptr; }

formula_binding::formula_binding(description& from, element_index index)
    : xml_(from.tree().at(index).xml),
      is_converter_(kind_of(xml_)->is_converter),
      table_(!is_converter_, from.formula_expansion()),
      map_(kind_of(xml_)->is_integer) {
    const silence quiet;
    GenICam::IGenICamDoc* document = from.document();
    const GenICam::scanned_element scanned(xml_);
    table_.build_formula_name_lookup(document, *scanned, is_integer());
    map_.resolve_converter_references(document, *scanned, nullptr, table_);
    if (is_converter_) target_ = document->find_node(xml_.child_value("pValue"));
    for (const char* name : {"Formula", "FormulaFrom", "FormulaTo", "Expression"}) parse(name);
}

// A knife has no use for the formulas of a converter, nor the other way round.
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

const bound_formula* formula_binding::find(std::string_view element_name) const {
    const auto found = std::find_if(formulas_.begin(), formulas_.end(), [&](const bound_formula& formula) {
        return element_name == formula.xml.name();
    });
    return found != formulas_.end() ? &*found : nullptr;
}

std::optional<guarded_result> formula_binding::run(const bound_formula* formula) {
    if (formula == nullptr || !formula->program || formula->program->empty()) return std::nullopt;
    return run_guarded(*formula->program, [&](GenICam::identifier_id id) -> std::optional<eval_value> {
        const eval_value* value = map_(id);
        if (value == nullptr) return std::nullopt;
        return *value;
    });
}

std::optional<guarded_result> formula_binding::rehearse_read() {
    const silence quiet;
    refresh();
    if (!is_converter_) return run(find("Formula"));
    if (target_ == nullptr) return std::nullopt;
    const GenICam::result<eval_value> value = GenICam::get_eval_value(target_, GenICam::access_flags::none);
    if (!value) return std::nullopt;
    map_.current = value.assume_value();
    return run(find("FormulaFrom"));
}

std::optional<guarded_result> formula_binding::rehearse_write(const eval_value& value) {
    const silence quiet;
    if (!is_converter_ || target_ == nullptr) return std::nullopt;
    refresh();
    map_.current = value;
    return run(find("FormulaTo"));
}

}  // namespace selvane_inspect
