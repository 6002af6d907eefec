#include "formula/formula_parser.h"

#include "formula/formula_specialiser.h"
#include "formula/math_parser.h"
#include "genicam/core/messages.h"

#include <cstddef>
#include <string>
#include <utility>

namespace GenICam {
namespace {

constexpr std::size_t max_nesting = 4096;
constexpr std::size_t max_expanded_instructions = 65536;

// The fewest characters of a node in ordinary formulas, with what stands between nodes.
constexpr std::size_t characters_per_node = 2;

// What nodes are computed from, by their instruction.
std::size_t operand_count(op_code code) noexcept {
    switch (code) {
        case op_code::op_unary:
            return 1;
        case op_code::op_binary:
            return 2;
        case op_code::op_select:
            return 3;
        default:
            return 0;
    }
}

}  // namespace

const formula_tree& math_parser::read(std::string_view text, name_resolver resolver, bool is_told) {
    resolver_ = &resolver;
    is_told_ = is_told;
    tree_.begin(text);
    open_.clear();
    depth_ = 1;
    last_token_ = 0;
    next_token(text, token_);
    behind_ = text;
    bool goes_on = begin_expression();
    while (goes_on) goes_on = wants_operand_ ? take_operand() : take_follower();
    return tree_;
}

void math_parser::reserve(const formula_size& largest) {
    tree_.reserve(largest);
    open_.reserve(largest.nodes + largest.marks);
}

void math_parser::read_token() {
    last_token_ = offset_of(token_);
    behind_ = token_.rest;
    // Into its place: a copy would wait for what was just written.
    next_token(behind_, token_);
}

void math_parser::end_operand() {
    read_token();
    wants_operand_ = false;
}

// What comes first decides.
void math_parser::note_refusal(parse_status status, std::string_view rest) {
    if (!is_refused()) tree_.end = {status, rest};
}

bool math_parser::end_with(parse_status status, std::string_view rest) {
    note_refusal(status, rest);
    return false;
}

bool math_parser::open(waiting owner, const formula_token& token, std::string_view rest) {
    if (depth_ == max_nesting) return end_with(parse_status::beyond_limits, rest);
    ++depth_;
    open_part& part = add_open(owner, token);
    part.arguments = 1;
    part.name = token.text;
    return true;
}

// Filled where it stands: a copy would wait for what was just written.
math_parser::open_part& math_parser::add_open(waiting owner, const formula_token& token) {
    open_part& part = open_.emplace_back();
    part.owner = owner;
    part.symbol = token.kind;
    part.offset = offset_of(token);
    part.behind = tree_.size();
    return part;
}

void math_parser::close_part() {
    open_.pop_back();
    --depth_;
}

bool math_parser::begin_expression() {
    wants_operand_ = true;
    if (token_.kind != token_kind::end) return true;
    if (!open_.empty()) tree_.dropped = last_token_;
    return end_text();
}

bool math_parser::take_operand() {
    switch (token_.kind) {
        case token_kind::number:
            add_number(token_.number);
            end_operand();
            return true;
        case token_kind::identifier:
            add_name();
            end_operand();
            return true;
        case token_kind::open:
            return take_opening(waiting::parenthesis);
        case token_kind::function:
            return take_opening(waiting::arguments);
        default:
            return take_sign();
    }
}

bool math_parser::take_opening(waiting owner) {
    if (!open(owner, token_, token_.rest)) return false;
    read_token();
    return begin_expression();
}

// The token behind the sign is looked at first: a text that ends here says so whatever the sign is.
bool math_parser::take_sign() {
    const formula_token sign = token_;
    read_token();
    if (token_.kind == token_kind::end) return end_with(parse_status::nothing_after_unary, token_.rest);
    if (operation_of(sign.kind)->unary == nullptr && sign.kind != token_kind::plus)
        return end_with(parse_status::no_factor, behind_);
    return open(waiting::sign, sign, token_.rest);
}

// An operand has ended, and with it perhaps what waits for it.
bool math_parser::take_follower() {
    add_signs();
    if (token_.kind == token_kind::end) return end_text();
    const formula_operation* operation = operation_of(token_.kind);
    if (operation != nullptr && operation->level != operator_level::none)
        return take_operator(operation->level);
    add_operators(operator_level::relation);
    return token_.kind == token_kind::question ? take_opening(waiting::then_part) : end_expression();
}

// The operators of this level and of those inside it have their right operand.
bool math_parser::take_operator(operator_level binding) {
    add_operators(binding);
    add_open(waiting::operand, token_).level = binding;
    read_token();
    wants_operand_ = true;
    if (token_.kind != token_kind::end) return true;
    open_.pop_back();
    tree_.dropped = last_token_;
    return end_text();
}

bool math_parser::end_expression() {
    for (; is_inside(waiting::else_part); close_part()) add_selection(open_.back());
    if (open_.empty()) return end_with(parse_status::none, behind_);
    switch (open_.back().owner) {
        case waiting::parenthesis:
            return end_parenthesis();
        case waiting::arguments:
            return end_argument();
        default:
            return end_then_part();
    }
}

bool math_parser::end_parenthesis() {
    if (token_.kind != token_kind::close) return end_with(parse_status::no_closing_parenthesis, behind_);
    if (tree_.size() > open_.back().behind) {
        formula_node& enclosed = tree_.last();
        enclosed.start = open_.back().offset;
        enclosed.end = offset_of(token_) + 1;
        enclosed.is_enclosed = true;
    }
    close_part();
    end_operand();
    return true;
}

bool math_parser::end_argument() {
    if (token_.kind == token_kind::comma) {
        ++open_.back().arguments;
        read_token();
        return begin_expression();
    }
    if (token_.kind != token_kind::close) return end_with(parse_status::no_end_of_arguments, behind_);
    add_call(open_.back());
    close_part();
    end_operand();
    return true;
}

bool math_parser::end_then_part() {
    if (token_.kind != token_kind::colon) return end_with(parse_status::no_colon, behind_);
    open_.back().owner = waiting::else_part;
    read_token();
    return begin_expression();
}

// What waits gets what there is: a text that ends is no mistake but where a parenthesis is open.
bool math_parser::end_text() {
    if (token_.status != parse_status::end_of_text) return end_with(token_.status, token_.rest);
    for (; !open_.empty(); open_.pop_back()) {
        const open_part& part = open_.back();
        switch (part.owner) {
            case waiting::operand:
                add_operator(part);
                break;
            case waiting::sign:
                add_sign(part);
                break;
            case waiting::parenthesis:
                return end_with(parse_status::no_closing_parenthesis, token_.rest);
            case waiting::else_part:
                add_selection(part);
                break;
            case waiting::arguments:
            case waiting::then_part:
                tree_.unfinished.push_back({part.symbol, part.offset});
        }
    }
    return end_with(parse_status::end_of_text, token_.rest);
}

// Behind what was refused nobody is asked any more, and the name is a number for those who explain the rest.
void math_parser::add_name() {
    const double* constant = find_named_constant(token_.text);
    if (constant != nullptr) return add_number(eval_value::of(*constant));
    if (!is_refused()) note_refusal(add_identifier_token(), token_.rest);
    if (is_refused()) add_number({});
}

parse_status math_parser::add_identifier_token() {
    const resolved_name resolved = (*resolver_)(token_.text);
    if (std::holds_alternative<std::monostate>(resolved)) {
        if (is_told_) report(messages::name_unresolved, {}, token_.text);
        return parse_status::unknown_name;
    }
    if (std::holds_alternative<exhausted_expression>(resolved)) return parse_status::beyond_limits;
    if (const auto* expression = std::get_if<const formula_program*>(&resolved)) return append(**expression);
    if (const auto* constant = std::get_if<eval_value>(&resolved)) {
        add_number(*constant);
        return parse_status::none;
    }
    add_leaf(op_code::op_variable).variable = std::get<identifier_id>(resolved);
    return parse_status::none;
}

// Expressions that use one another can double in length with each step.
parse_status math_parser::append(const formula_program& expression) {
    const auto& copied = expression.instructions;
    if (tree_.size() + copied.size() > max_expanded_instructions) return parse_status::beyond_limits;
    for (const formula_instruction& instruction : copied) {
        formula_node& node =
            tree_.add(token_kind::identifier, offset_of(token_), operand_count(instruction.code));
        node.instruction = instruction;
        node.end = offset_of(token_) + static_cast<std::uint32_t>(token_.text.size());
    }
    return parse_status::none;
}

formula_instruction& math_parser::add_leaf(op_code code) {
    const std::uint32_t offset = offset_of(token_);
    formula_node& node = tree_.add(token_.kind, offset, 0);
    node.end = offset + static_cast<std::uint32_t>(token_.text.size());
    node.instruction.code = code;
    return node.instruction;
}

void math_parser::add_number(const eval_value& number) {
    add_leaf(number.is_integer ? op_code::op_push_int : op_code::op_push_float).number = number.value;
}

void math_parser::add_call(const open_part& call) {
    const formula_function* function = find_function(call.name, call.arguments);
    if (function == nullptr) note_refusal(parse_status::unknown_function, token_.rest);
    formula_node& node = tree_.add(call.symbol, call.offset, call.arguments);
    node.end = offset_of(token_) + 1;
    node.instruction.code = call.arguments == 1 ? op_code::op_unary : op_code::op_binary;
    node.instruction.function = function;
}

void math_parser::add_signs() {
    for (; is_inside(waiting::sign); close_part()) add_sign(open_.back());
}

// A plus does nothing.
void math_parser::add_sign(const open_part& sign) {
    if (const formula_function* function = operation_of(sign.symbol)->unary) {
        add_operation(sign, op_code::op_unary).function = function;
    } else if (tree_.size() > sign.behind) {
        tree_.last().start = sign.offset;
    }
}

void math_parser::add_operators(operator_level outermost) {
    for (; is_inside(waiting::operand) && open_.back().level >= outermost; open_.pop_back())
        add_operator(open_.back());
}

void math_parser::add_operator(const open_part& part) {
    add_operation(part, op_code::op_binary).function = operation_of(part.symbol)->binary;
}

void math_parser::add_selection(const open_part& question) {
    add_operation(question, op_code::op_select).function = nullptr;
}

formula_instruction& math_parser::add_operation(const open_part& part, op_code code) {
    formula_node& node = tree_.add(part.symbol, part.offset, operand_count(code));
    node.instruction.code = code;
    return node.instruction;
}

namespace {

template <class Prepare>
result<formula_program> compile(std::string_view text, name_resolver resolver, Prepare prepare) {
    const formula_tree tree = read_formula(text, resolver);
    if (!is_usable(tree)) return make_error_code(formula_parse_failed);
    formula_program program = tree.program();
    program.specialised = prepare(tree);
    return program;
}

}  // namespace

bool is_usable(const formula_tree& tree) {
    if (!tree.is_accepted())
        report(messages::formula_refused, {}, status_text(tree.end.status), tree.end.rest);
    return tree.is_accepted();
}

formula_tree read_formula(std::string_view text, name_resolver resolver) {
    math_parser parser(text.size() / characters_per_node + 1);
    static_cast<void>(parser.read(text, resolver));
    return parser.take_tree();
}

result<formula_program> parse_formula(std::string_view text, name_resolver resolver, variable_kinds kinds) {
    return compile(text, resolver, [&](const formula_tree& tree) { return specialise_formula(tree, kinds); });
}

result<formula_program> parse_formula(std::string_view text, name_resolver resolver) {
    return compile(text, resolver, [](const formula_tree& tree) { return specialise_formula(tree); });
}

result<formula_program> parse_instructions(std::string_view text, name_resolver resolver) {
    return compile(text, resolver,
                   [](const formula_tree&) { return std::shared_ptr<const specialised_formula>(); });
}

}  // namespace GenICam
