#include "apps/inspect/lint/lint_context.h"

#include "apps/inspect/formula_text.h"
#include "apps/inspect/lint/formula_outline.h"
#include "apps/inspect/lint/integer_divisions.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

using GenICam::identifier_id;
using GenICam::known_kind;
using node_index = GenICam::formula_tree::index;

/// A formula of a node with all that rules ask of it.
struct visited_formula {
    lint_context& context;
    element_index node;
    const formula_binding& node_formulas;
    const bound_formula& formula;

    [[nodiscard]] const GenICam::formula_tree& tree() const { return formula.tree; }
    /// "FormulaFrom of GainConverter", "Expression HALF of GainConverter"
    [[nodiscard]] std::string title() const {
        return fmt::format("{} of {}", title_of(formula.xml), context.tree().at(node).name);
    }
    /// Adds a finding at a character of the text, behind the title.
    void add(std::size_t offset, const std::string& message) const {
        context.add(context.position_in_text(formula.xml, offset), title() + message);
    }
};

/// A look at every formula.
template <void (*look_at)(const visited_formula&)>
void check_formulas(lint_context& context) {
    if (!context.is_loaded()) return;
    for (element_index node = 0; node < context.tree().elements().size(); ++node) {
        if (!formula_binding::has_formulas(context.tree().at(node))) continue;
        const formula_binding& formulas = context.guard().binding(node);
        for (const bound_formula& formula : formulas.formulas()) look_at({context, node, formulas, formula});
    }
}

void check_refusal(const visited_formula& at) {
    if (at.formula.program || !outline_formula(at.tree()).short_rounds.empty()) return;
    at.add(at.formula.text.size() - at.tree().end.rest.size(),
           " is " + refusal_text(at.formula.text, at.tree().end));
}

void check_short_rounds(const visited_formula& at) {
    for (const formula_remark& round : outline_formula(at.tree()).short_rounds)
        at.add(round.offset, ": " + round.text + " has one argument");
}

template <std::vector<formula_remark> formula_outline::*remarks>
void check_remarks(const visited_formula& at) {
    if (!at.formula.program) return;
    const formula_outline outline = outline_formula(at.tree());
    for (const formula_remark& remark : outline.*remarks) at.add(remark.offset, ": " + remark.text);
}

void check_ignored_text(const visited_formula& at) {
    if (!at.formula.program) return;
    const std::string_view ignored = ignored_text(at.tree().end);
    if (ignored.empty()) return;
    at.add(static_cast<std::size_t>(ignored.data() - at.formula.text.data()),
           fmt::format(" ends before \"{}\"", ignored));
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
known_kind kind_of_current(const visited_formula& at) {
    const std::string_view element = at.formula.xml.name();
    const formula_binding& formulas = at.node_formulas;
    if (element == "Expression") return known_kind::either;
    if (element == "FormulaTo") return formulas.is_integer() ? known_kind::integer : known_kind::floating;
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

std::optional<analysed_formula> analyse_bound(const visited_formula& at) {
    return analyse(at.tree(), [&](identifier_id id) {
        if (id == GenICam::current_value_id) return kind_of_current(at);
        return at.node_formulas.is_integer() ? known_kind::integer : known_kind::floating;
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
std::string name_of(const visited_formula& at, identifier_id id) {
    const bool calls_it_to = mentions(at.tree(), "TO") && !mentions(at.tree(), "FROM");
    if (id == GenICam::current_value_id) return calls_it_to ? "TO" : "FROM";
    for (const pugi::xml_node variable : at.context.tree().at(at.node).xml.children("pVariable")) {
        const std::string_view name = variable.attribute("Name").value();
        const GenICam::resolved_name resolved = at.node_formulas.resolve(name);
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

bool share_one(const kinds_of_variables& left, const kinds_of_variables& right) {
    return std::any_of(left.begin(), left.end(),
                       [&](const auto& one) { return right.count(one.first) != 0; });
}

// The divisions inside the branches of a ternary whose condition looks at what they divide by.
std::set<node_index> guarded_divisions(const analysed_formula& formula) {
    const GenICam::formula_tree& tree = *formula.tree;
    std::set<node_index> found;
    for (node_index select = 0; select < tree.size(); ++select) {
        if (tree[select].instruction.code != GenICam::op_code::op_select) continue;
        const node_index condition = tree.operands(select).front();
        const kinds_of_variables tested = variables_of(formula, condition);
        for (node_index at = condition + 1; at < select; ++at) {
            const node_index divisor = GenICam::formula_tree::last_operand(at);
            if (may_divide_integers(formula, at) && share_one(tested, variables_of(formula, divisor)) &&
                can_be_zero(formula, divisor))
                found.insert(at);
        }
    }
    return found;
}

void add_division(const visited_formula& at, node_index division, const char* what) {
    const auto names = [&](identifier_id id) { return name_of(at, id); };
    at.context.add(at.formula.xml, "{}: {} {}", at.title(), part_text(at.tree(), division, names), what);
}

void check_integer_divisions(const visited_formula& at) {
    if (at.node_formulas.is_integer()) return;
    const std::optional<analysed_formula> analysed = analyse_bound(at);
    for (node_index node = 0; analysed && node < at.tree().size(); ++node) {
        if (!divides_integers(*analysed, node) || is_exact(*analysed, node)) continue;
        add_division(at, node, "divides integers and drops the fraction");
    }
}

void check_guarded_divisions(const visited_formula& at) {
    const std::optional<analysed_formula> analysed = analyse_bound(at);
    if (!analysed) return;
    for (const node_index node : guarded_divisions(*analysed))
        add_division(at, node, "is computed whatever the condition says");
}

constexpr lint_rule formula_table[] = {
    {"formula-refused", severity::error, "The node has no program: every read and write of it fails.",
     "Write what the language takes; see what stands before the place.", check_formulas<check_refusal>},
    {"round-one-argument", severity::error, "ROUND takes two arguments; the formula is refused.",
     "Say how many digits to keep: ROUND(x, 0).", check_formulas<check_short_rounds>},
    {"formula-breaks-off", severity::warning,
     "The text ends where something is missing, and what was read so far is the formula.",
     "Complete the formula.", check_formulas<check_remarks<&formula_outline::breaks>>},
    {"formula-text-ignored", severity::warning,
     "The formula is complete before its text ends, and what follows is never read.",
     "Take the rest away, or write the operator that is missing.", check_formulas<check_ignored_text>},
    {"operator-order", severity::warning,
     "The language has five levels of operators: ** binds like *, and & | ^ << >> share a level as "
     "comparisons and logic do.",
     "Write the parentheses that say what is meant.",
     check_formulas<check_remarks<&formula_outline::surprises>>},
    {"integer-division", severity::warning,
     "FROM comes as an integer from an integer node, and a division of integers drops the fraction.",
     "Write one of the numbers with a point, as in FROM/10.0.", check_formulas<check_integer_divisions>},
    {"guarded-division", severity::warning,
     "Both branches of a ternary are computed before it chooses: an integer division by zero ends the "
     "process.",
     "Make the divisor itself harmless, as in A/(B+(B=0)).", check_formulas<check_guarded_divisions>},
};

}  // namespace

gsl::span<const lint_rule> formula_rules() noexcept { return formula_table; }

}  // namespace selvane_inspect
