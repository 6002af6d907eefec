#include "apps/inspect/lint/formula_rules.h"

#include "apps/inspect/lint/divisor_probe.h"
#include "apps/inspect/lint/formula_outline.h"
#include "apps/inspect/lint/formula_tree.h"

#include <algorithm>
#include <functional>
#include <set>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

using GenICam::identifier_id;

using formula_visitor =
    std::function<void(element_index node, formula_binding& formulas, const bound_formula& formula)>;

void for_each_formula(lint_context& context, const formula_visitor& visit) {
    if (!context.is_loaded()) return;
    for (element_index element = 0; element < context.tree().elements().size(); ++element) {
        const node_element& node = context.tree().at(element);
        if (node.made == nullptr || !formula_binding::has_formulas(node.xml)) continue;
        formula_binding& formulas = context.guard().binding(element);
        for (const bound_formula& formula : formulas.formulas()) visit(element, formulas, formula);
    }
}

// "FormulaFrom of GainConverter", "Expression HALF of GainConverter"
std::string title(const lint_context& context, element_index node, const bound_formula& formula) {
    const std::string_view name = formula.xml.attribute("Name").value();
    return fmt::format("{}{}{} of {}", formula.xml.name(), name.empty() ? "" : " ", name,
                       context.tree().at(node).name);
}

bool has_short_round(const bound_formula& formula) {
    return !outline_formula(formula.text).short_rounds.empty();
}

// What the language read of a formula that it took.
std::string_view read_text(const bound_formula& formula) {
    return formula.text.substr(0, formula.text.size() - ignored_text(formula.end).size());
}

void add_remarks(lint_context& context, finding_list& findings,
                 std::vector<formula_remark> formula_outline::*remarks) {
    for_each_formula(context, [&](element_index node, formula_binding&, const bound_formula& formula) {
        if (!formula.program) return;
        const formula_outline outline = outline_formula(read_text(formula));
        for (const formula_remark& remark : outline.*remarks) {
            findings.add(context.position_in_text(formula.xml, remark.offset),
                         title(context, node, formula) + ": " + remark.text);
        }
    });
}

// An entry with a number of its own gives a float.
known_kind kind_of_entries(GenICam::IEnumeration& enumeration) {
    const auto entries = enumeration.get_entries();
    const bool any_float = std::any_of(entries.begin(), entries.end(), [](const GenICam::IEnumEntry* entry) {
        return entry->get_numeric_value().has_value();
    });
    return any_float ? known_kind::either : known_kind::integer;
}

// The value of a variable has the kind of the node with the formula; what FROM reads comes as the target has
// it.
known_kind kind_of_current(const formula_binding& formulas, const bound_formula& formula) {
    if (std::string_view(formula.xml.name()) == "Expression") return known_kind::either;
    if (std::string_view(formula.xml.name()) == "FormulaTo") {
        return formulas.is_integer() ? known_kind::integer : known_kind::floating;
    }
    if (formulas.target() == nullptr) return known_kind::either;
    switch (formulas.target()->get_node_type()) {
        case GenICam::node_type::integer:
        case GenICam::node_type::boolean:
            return known_kind::integer;
        case GenICam::node_type::floating:
            return known_kind::floating;
        case GenICam::node_type::enumeration:
            return kind_of_entries(static_cast<GenICam::IEnumeration&>(*formulas.target()));
        default:
            return known_kind::either;
    }
}

program_tree tree_of(const formula_binding& formulas, const bound_formula& formula) {
    return {*formula.program, [&](identifier_id id) {
                if (id == GenICam::current_value_id) return kind_of_current(formulas, formula);
                return formulas.is_integer() ? known_kind::integer : known_kind::floating;
            }};
}

bool mentions(std::string_view formula, std::string_view name) {
    for (std::string_view rest = formula;;) {
        const GenICam::formula_token token = GenICam::next_token(rest);
        if (token.kind == GenICam::token_kind::end) return false;
        if (token.kind == GenICam::token_kind::identifier && token.name == name) return true;
        rest = token.rest;
    }
}

// The names of a node's variables, by what they became. Two names stand for the value on its way.
std::string name_of(const lint_context& context, element_index node, const formula_binding& formulas,
                    const bound_formula& formula, identifier_id id) {
    const bool calls_it_to = mentions(formula.text, "TO") && !mentions(formula.text, "FROM");
    if (id == GenICam::current_value_id) return calls_it_to ? "TO" : "FROM";
    for (const pugi::xml_node variable : context.tree().at(node).xml.children("pVariable")) {
        const std::string_view name = variable.attribute("Name").value();
        const GenICam::resolved_name resolved = formulas.resolve(name);
        const auto* known = std::get_if<identifier_id>(&resolved);
        if (known != nullptr && *known == id) return std::string(name);
    }
    return "?";
}

bool is_exact(const program_tree& tree, const program_node& division) {
    const auto& left = tree.nodes()[division.operands[0]].constant;
    const auto& right = tree.nodes()[division.operands[1]].constant;
    return left && right && division.constant && to_int(*left) % to_int(*right) == 0;
}

std::set<identifier_id> variables_below(const program_tree& tree, std::size_t node) {
    std::set<identifier_id> found;
    for (const std::size_t at : tree.below(node)) {
        const GenICam::formula_instruction& instruction = *tree.nodes()[at].instruction;
        if (instruction.code == GenICam::op_code::op_variable) found.insert(instruction.variable);
    }
    return found;
}

bool share_one(const std::set<identifier_id>& left, const std::set<identifier_id>& right) {
    return std::any_of(left.begin(), left.end(), [&](identifier_id id) { return right.count(id) != 0; });
}

// The divisions inside the branches of a ternary whose condition looks at what they divide by.
std::set<std::size_t> guarded_divisions(const program_tree& tree) {
    std::set<std::size_t> found;
    for (const program_node& select : tree.nodes()) {
        if (select.instruction->code != GenICam::op_code::op_select) continue;
        const std::set<identifier_id> condition = variables_below(tree, select.operands[0]);
        for (const std::size_t branch : {select.operands[1], select.operands[2]}) {
            for (const std::size_t at : tree.below(branch)) {
                const program_node& node = tree.nodes()[at];
                if (!may_divide_integers(tree, node)) continue;
                const std::size_t divisor = node.operands[1];
                if (share_one(condition, variables_below(tree, divisor)) && can_be_zero(tree, divisor))
                    found.insert(at);
            }
        }
    }
    return found;
}

}  // namespace

void check_refused_formulas(lint_context& context, finding_list& findings) {
    for_each_formula(context, [&](element_index node, formula_binding&, const bound_formula& formula) {
        if (formula.program || has_short_round(formula)) return;
        const std::size_t read = formula.text.size() - formula.end.rest.size();
        findings.add(context.position_in_text(formula.xml, read),
                     title(context, node, formula) + " is " + refusal_text(formula.text, formula.end));
    });
}

void check_short_rounds(lint_context& context, finding_list& findings) {
    for_each_formula(context, [&](element_index node, formula_binding&, const bound_formula& formula) {
        const formula_outline outline = outline_formula(formula.text);
        for (const formula_remark& round : outline.short_rounds) {
            findings.add(context.position_in_text(formula.xml, round.offset),
                         fmt::format("{}: {} has one argument", title(context, node, formula), round.text));
        }
    });
}

void check_broken_off_formulas(lint_context& context, finding_list& findings) {
    add_remarks(context, findings, &formula_outline::breaks);
}

void check_ignored_text(lint_context& context, finding_list& findings) {
    for_each_formula(context, [&](element_index node, formula_binding&, const bound_formula& formula) {
        const std::string_view ignored = formula.program ? ignored_text(formula.end) : std::string_view();
        if (ignored.empty()) return;
        const std::size_t start = static_cast<std::size_t>(ignored.data() - formula.text.data());
        findings.add(context.position_in_text(formula.xml, start),
                     fmt::format("{} ends before \"{}\"", title(context, node, formula), ignored));
    });
}

void check_operator_order(lint_context& context, finding_list& findings) {
    add_remarks(context, findings, &formula_outline::surprises);
}

void check_integer_divisions(lint_context& context, finding_list& findings) {
    for_each_formula(context,
                     [&](element_index node, formula_binding& formulas, const bound_formula& formula) {
                         if (formulas.is_integer() || !formula.program) return;
                         const program_tree tree = tree_of(formulas, formula);
                         for (std::size_t at = 0; at < tree.nodes().size(); ++at) {
                             const program_node& division = tree.nodes()[at];
                             if (!divides_integers(tree, division) || is_exact(tree, division)) continue;
                             const auto names = [&](identifier_id id) {
                                 return name_of(context, node, formulas, formula, id);
                             };
                             findings.add(context.tree().position_of(formula.xml),
                                          fmt::format("{}: {} divides integers and drops the fraction",
                                                      title(context, node, formula), tree.text(at, names)));
                         }
                     });
}

void check_guarded_divisions(lint_context& context, finding_list& findings) {
    for_each_formula(context,
                     [&](element_index node, formula_binding& formulas, const bound_formula& formula) {
                         if (!formula.program) return;
                         const program_tree tree = tree_of(formulas, formula);
                         for (const std::size_t at : guarded_divisions(tree)) {
                             const auto names = [&](identifier_id id) {
                                 return name_of(context, node, formulas, formula, id);
                             };
                             findings.add(context.tree().position_of(formula.xml),
                                          fmt::format("{}: {} is computed whatever the condition says",
                                                      title(context, node, formula), tree.text(at, names)));
                         }
                     });
}

}  // namespace selvane_inspect
