#include "apps/inspect/lint/rules.h"

#include "apps/inspect/formula_text.h"
#include "apps/inspect/lint/formula_outline.h"
#include "apps/inspect/lint/integer_divisions.h"

#include <algorithm>
#include <functional>
#include <set>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

using GenICam::identifier_id;
using GenICam::known_kind;
using node_index = GenICam::formula_tree::index;

using formula_visitor =
    std::function<void(element_index node, formula_binding& formulas, const bound_formula& formula)>;

void for_each_formula(lint_context& context, const formula_visitor& visit) {
    if (!context.is_loaded()) return;
    for (element_index element = 0; element < context.tree().elements().size(); ++element) {
        if (!formula_binding::has_formulas(context.tree().at(element))) continue;
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
    return !outline_formula(formula.tree).short_rounds.empty();
}

void add_remarks(lint_context& context, finding_list& findings,
                 std::vector<formula_remark> formula_outline::*remarks) {
    for_each_formula(context, [&](element_index node, formula_binding&, const bound_formula& formula) {
        if (!formula.program) return;
        const formula_outline outline = outline_formula(formula.tree);
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

std::optional<analysed_formula> analyse_bound(const formula_binding& formulas, const bound_formula& formula) {
    return analyse(formula.tree, [&](identifier_id id) {
        if (id == GenICam::current_value_id) return kind_of_current(formulas, formula);
        return formulas.is_integer() ? known_kind::integer : known_kind::floating;
    });
}

bool mentions(const GenICam::formula_tree& tree, std::string_view name) {
    const auto nodes = tree.nodes();
    return std::any_of(nodes.begin(), nodes.end(), [&](const GenICam::formula_node& node) {
        return node.symbol == GenICam::token_kind::identifier &&
               GenICam::next_token(tree.text().substr(node.offset)).text == name;
    });
}

// The names of a node's variables, by what they became. Two names stand for the value on its way.
std::string name_of(const lint_context& context, element_index node, const formula_binding& formulas,
                    const bound_formula& formula, identifier_id id) {
    const bool calls_it_to = mentions(formula.tree, "TO") && !mentions(formula.tree, "FROM");
    if (id == GenICam::current_value_id) return calls_it_to ? "TO" : "FROM";
    for (const pugi::xml_node variable : context.tree().at(node).xml.children("pVariable")) {
        const std::string_view name = variable.attribute("Name").value();
        const GenICam::resolved_name resolved = formulas.resolve(name);
        const auto* known = std::get_if<identifier_id>(&resolved);
        if (known != nullptr && *known == id) return std::string(name);
    }
    return "?";
}

bool is_exact(const analysed_formula& formula, node_index division) {
    const node_index right = GenICam::formula_tree::last_operand(division);
    const GenICam::known_number& dividend = formula.numbers[formula.tree->operand_before(right)];
    const GenICam::known_number& divisor = formula.numbers[right];
    return formula.numbers[division].is_constant && to_int(dividend.value()) % to_int(divisor.value()) == 0;
}

std::set<identifier_id> variables_below(const GenICam::formula_tree& tree, node_index node) {
    std::set<identifier_id> found;
    for (node_index at = tree[node].first; at <= node; ++at) {
        const GenICam::formula_instruction& instruction = tree[at].instruction;
        if (instruction.code == GenICam::op_code::op_variable) found.insert(instruction.variable);
    }
    return found;
}

bool share_one(const std::set<identifier_id>& left, const std::set<identifier_id>& right) {
    return std::any_of(left.begin(), left.end(), [&](identifier_id id) { return right.count(id) != 0; });
}

// The divisions inside the branches of a ternary whose condition looks at what they divide by.
std::set<node_index> guarded_divisions(const analysed_formula& formula) {
    const GenICam::formula_tree& tree = *formula.tree;
    std::set<node_index> found;
    for (node_index select = 0; select < tree.size(); ++select) {
        if (tree[select].instruction.code != GenICam::op_code::op_select) continue;
        const node_index condition = tree.operands(select).front();
        const std::set<identifier_id> tested = variables_below(tree, condition);
        for (node_index at = condition + 1; at < select; ++at) {
            if (!may_divide_integers(formula, at)) continue;
            const node_index divisor = GenICam::formula_tree::last_operand(at);
            if (share_one(tested, variables_below(tree, divisor)) && can_be_zero(formula, divisor))
                found.insert(at);
        }
    }
    return found;
}

void add_division(lint_context& context, finding_list& findings, element_index node,
                  const formula_binding& formulas, const bound_formula& formula, node_index division,
                  const char* what) {
    const auto names = [&](identifier_id id) { return name_of(context, node, formulas, formula, id); };
    findings.add(context.tree().position_of(formula.xml),
                 fmt::format("{}: {} {}", title(context, node, formula),
                             part_text(formula.tree, division, names), what));
}

}  // namespace

void check_refused_formulas(lint_context& context, finding_list& findings) {
    for_each_formula(context, [&](element_index node, formula_binding&, const bound_formula& formula) {
        if (formula.program || has_short_round(formula)) return;
        const std::size_t read = formula.text.size() - formula.tree.end.rest.size();
        findings.add(context.position_in_text(formula.xml, read),
                     title(context, node, formula) + " is " + refusal_text(formula.text, formula.tree.end));
    });
}

void check_short_rounds(lint_context& context, finding_list& findings) {
    for_each_formula(context, [&](element_index node, formula_binding&, const bound_formula& formula) {
        const formula_outline outline = outline_formula(formula.tree);
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
        const std::string_view ignored =
            formula.program ? ignored_text(formula.tree.end) : std::string_view();
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
                         if (formulas.is_integer()) return;
                         const std::optional<analysed_formula> analysed = analyse_bound(formulas, formula);
                         for (node_index at = 0; analysed && at < formula.tree.size(); ++at) {
                             if (!divides_integers(*analysed, at) || is_exact(*analysed, at)) continue;
                             add_division(context, findings, node, formulas, formula, at,
                                          "divides integers and drops the fraction");
                         }
                     });
}

void check_guarded_divisions(lint_context& context, finding_list& findings) {
    for_each_formula(context,
                     [&](element_index node, formula_binding& formulas, const bound_formula& formula) {
                         const std::optional<analysed_formula> analysed = analyse_bound(formulas, formula);
                         if (!analysed) return;
                         for (const node_index at : guarded_divisions(*analysed)) {
                             add_division(context, findings, node, formulas, formula, at,
                                          "is computed whatever the condition says");
                         }
                     });
}

}  // namespace selvane_inspect
