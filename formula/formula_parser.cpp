#include "formula/formula_parser.h"

#include "formula/formula_specialiser.h"
#include "formula/formula_token.h"
#include "genicam/core/log.h"

#include <array>
#include <cstddef>
#include <string>
#include <utility>

#include <fmt/format.h>
#include <boost/container/small_vector.hpp>

namespace GenICam {
namespace {

constexpr std::size_t max_nesting = 4096;
constexpr std::size_t max_expanded_instructions = 65536;

// Recursive descent without recursion: what the levels of the grammar would keep on the processor's stack
// stands in a sequence of its own, so that no text can exhaust that stack.
class math_parser {
public:
    math_parser(std::string_view text, name_resolver resolver) : rest_(text), resolver_(resolver) {}

    parse_status parse();
    /// What was emitted, in no more room than it takes.
    [[nodiscard]] formula_program take_program() const;
    /// What is left of the text behind the expression or at the point of failure.
    [[nodiscard]] std::string_view rest() const noexcept { return rest_; }

private:
    /// Who waits for the end of an expression, or of a factor in the case of a unary operator.
    enum class waiting : std::uint8_t { whole, parenthesis, argument, then_part, else_part, unary };

    struct open_part {
        explicit open_part(waiting who) : owner(who) {}

        waiting owner;
        std::size_t arguments = 1;                // of a function so far
        std::string_view name;                    // of a function
        const formula_function* unary = nullptr;  // null for the plus, which does nothing
        // The operators of this expression that wait for their right operand, one on each level.
        std::array<const formula_function*, operator_level_count> pending{};
    };

    /// What comes next. A step works on the token read last, on the text behind it and on the status of the
    /// part that ended last, and names its successor.
    enum class step : std::uint8_t { expression, factor, end_factor, end_expression, done };

    step take(step next);
    step open(open_part part, step next);
    step begin_expression();
    step begin_factor();
    step begin_unary();
    step end_factor();
    step end_unary();
    step end_relation(const formula_token& follower);
    step end_expression();
    step end_parenthesis();
    step end_argument();
    step end_then_part();
    step end_else_part();
    step end_with(parse_status status, step next);
    step close_with(parse_status status, step next);

    bool resume_level(std::size_t level, const formula_token& follower);
    parse_status map_name(std::string_view name);
    parse_status add_identifier_token(std::string_view name);
    parse_status append(const formula_program& expression);
    void emit(op_code code, const formula_function* function);
    void emit_number(const eval_value& number);

    std::string_view rest_;
    name_resolver resolver_;
    formula_token token_;
    parse_status status_ = parse_status::none;
    boost::container::small_vector<open_part, 16> open_;
    boost::container::small_vector<formula_instruction, 64> emitted_;
};

parse_status math_parser::parse() {
    step next = open(open_part(waiting::whole), step::expression);
    while (next != step::done) next = take(next);
    return status_;
}

formula_program math_parser::take_program() const {
    formula_program program;
    program.instructions.assign(emitted_.begin(), emitted_.end());
    return program;
}

math_parser::step math_parser::take(step next) {
    switch (next) {
        case step::expression:
            return begin_expression();
        case step::factor:
            return begin_factor();
        case step::end_factor:
            return end_factor();
        case step::end_expression:
            return end_expression();
        case step::done:
            break;
    }
    return step::done;
}

math_parser::step math_parser::open(open_part part, step next) {
    if (open_.size() == max_nesting) return end_with(parse_status::beyond_limits, step::done);
    open_.push_back(part);
    return next;
}

math_parser::step math_parser::end_with(parse_status status, step next) {
    status_ = status;
    return next;
}

math_parser::step math_parser::close_with(parse_status status, step next) {
    open_.pop_back();
    return end_with(status, next);
}

math_parser::step math_parser::begin_expression() {
    token_ = next_token(rest_);
    rest_ = token_.rest;
    if (token_.kind == token_kind::end) return end_with(token_.status, step::end_expression);
    return step::factor;
}

math_parser::step math_parser::begin_factor() {
    switch (token_.kind) {
        case token_kind::number:
            emit_number(token_.number);
            return end_with(parse_status::none, step::end_factor);
        case token_kind::identifier:
            return end_with(map_name(token_.name), step::end_factor);
        case token_kind::open:
            return open(open_part(waiting::parenthesis), step::expression);
        case token_kind::function: {
            open_part call(waiting::argument);
            call.name = token_.name;
            return open(call, step::expression);
        }
        default:
            return begin_unary();
    }
}

// The token behind the operator is read first: a text that ends here says so whatever the operator is.
math_parser::step math_parser::begin_unary() {
    const formula_token operand = next_token(rest_);
    if (operand.kind == token_kind::end) {
        rest_ = operand.rest;
        return end_with(parse_status::nothing_after_unary, step::end_factor);
    }
    open_part sign(waiting::unary);
    sign.unary = operation_of(token_.kind)->unary;
    if (sign.unary == nullptr && token_.kind != token_kind::plus) {
        return end_with(parse_status::no_factor, step::end_factor);
    }
    token_ = operand;
    rest_ = operand.rest;
    return open(sign, step::factor);
}

math_parser::step math_parser::end_unary() {
    if (const formula_function* function = open_.back().unary) emit(op_code::op_unary, function);
    return close_with(status_, step::end_factor);
}

// A factor has ended, and with it perhaps the operands of all levels above it, from the innermost out.
math_parser::step math_parser::end_factor() {
    if (open_.back().owner == waiting::unary) return end_unary();
    formula_token follower;
    if (status_ == parse_status::none) {
        follower = next_token(rest_);
        if (follower.kind == token_kind::end) rest_ = follower.rest;
    }
    for (std::size_t level = operator_level_count; level-- > 0;) {
        if (resume_level(level, follower)) return step::factor;
    }
    return end_relation(follower);
}

// Goes on behind an operand of this level. True if the follower is an operator of this level and has an
// operand. The instruction of a waiting operator is emitted before the status is looked at: a text that ends
// leaves none of them out.
bool math_parser::resume_level(std::size_t level, const formula_token& follower) {
    const formula_function*& pending = open_.back().pending[level];
    if (pending != nullptr) emit(op_code::op_binary, std::exchange(pending, nullptr));
    if (status_ != parse_status::none) return false;
    if (follower.kind == token_kind::end) {
        status_ = follower.status;
        return false;
    }
    const formula_operation* operation = operation_of(follower.kind);
    if (operation == nullptr || static_cast<std::size_t>(operation->level) != level) return false;

    token_ = next_token(follower.rest);
    rest_ = token_.rest;
    if (token_.kind == token_kind::end) {
        status_ = token_.status;
        return false;
    }
    pending = operation->binary;
    return true;
}

math_parser::step math_parser::end_relation(const formula_token& follower) {
    if (status_ != parse_status::none || follower.kind != token_kind::question) return step::end_expression;
    rest_ = follower.rest;
    return open(open_part(waiting::then_part), step::expression);
}

math_parser::step math_parser::end_expression() {
    switch (open_.back().owner) {
        case waiting::parenthesis:
            return end_parenthesis();
        case waiting::argument:
            return end_argument();
        case waiting::then_part:
            return end_then_part();
        case waiting::else_part:
            return end_else_part();
        case waiting::whole:
        case waiting::unary:
            break;
    }
    return step::done;
}

math_parser::step math_parser::end_parenthesis() {
    if (status_ == parse_status::end_of_text) {
        return close_with(parse_status::no_closing_parenthesis, step::end_factor);
    }
    if (status_ != parse_status::none) return close_with(status_, step::end_factor);
    const formula_token token = next_token(rest_);
    if (token.kind != token_kind::close) {
        return close_with(parse_status::no_closing_parenthesis, step::end_factor);
    }
    rest_ = token.rest;
    return close_with(parse_status::none, step::end_factor);
}

math_parser::step math_parser::end_argument() {
    if (status_ != parse_status::none) return close_with(status_, step::end_factor);
    const formula_token token = next_token(rest_);
    if (token.kind != token_kind::close && token.kind != token_kind::comma) {
        return close_with(parse_status::no_end_of_arguments, step::end_factor);
    }
    rest_ = token.rest;
    open_part& call = open_.back();
    if (token.kind == token_kind::comma) {
        ++call.arguments;
        return step::expression;
    }
    const formula_function* function = find_function(call.name, call.arguments);
    if (function == nullptr) return close_with(parse_status::unknown_function, step::end_factor);
    emit(call.arguments == 1 ? op_code::op_unary : op_code::op_binary, function);
    return close_with(parse_status::none, step::end_factor);
}

math_parser::step math_parser::end_then_part() {
    if (status_ != parse_status::none) return close_with(status_, step::end_expression);
    const formula_token token = next_token(rest_);
    if (token.kind != token_kind::colon) return close_with(parse_status::no_colon, step::end_expression);
    rest_ = token.rest;
    open_.back().owner = waiting::else_part;
    return step::expression;
}

math_parser::step math_parser::end_else_part() {
    emit(op_code::op_select, nullptr);
    return close_with(status_, step::end_expression);
}

parse_status math_parser::map_name(std::string_view name) {
    const double* constant = find_named_constant(name);
    if (constant == nullptr) return add_identifier_token(name);
    emit_number(eval_value::of(*constant));
    return parse_status::none;
}

parse_status math_parser::add_identifier_token(std::string_view name) {
    const resolved_name resolved = resolver_(name);
    if (std::holds_alternative<std::monostate>(resolved)) {
        if (log_enabled(log_failure)) {
            log_message(log_failure,
                        "math_parser::add_identifier_token, failed to map variable \"%.*s\" to either a "
                        "constant or a "
                        "pValue.\n",
                        static_cast<int>(name.size()), name.data());
        }
        return parse_status::unknown_name;
    }
    if (std::holds_alternative<exhausted_expression>(resolved)) return parse_status::beyond_limits;
    if (const auto* expression = std::get_if<const formula_program*>(&resolved)) return append(**expression);
    if (const auto* constant = std::get_if<eval_value>(&resolved)) {
        emit_number(*constant);
        return parse_status::none;
    }
    formula_instruction& instruction = emitted_.emplace_back();
    instruction.code = op_code::op_variable;
    instruction.variable = std::get<identifier_id>(resolved);
    return parse_status::none;
}

// Expressions that use one another can double in length with each step.
parse_status math_parser::append(const formula_program& expression) {
    const auto& copied = expression.instructions;
    if (emitted_.size() + copied.size() > max_expanded_instructions) return parse_status::beyond_limits;
    emitted_.insert(emitted_.end(), copied.begin(), copied.end());
    return parse_status::none;
}

void math_parser::emit(op_code code, const formula_function* function) {
    formula_instruction& instruction = emitted_.emplace_back();
    instruction.code = code;
    instruction.function = function;
}

void math_parser::emit_number(const eval_value& number) {
    formula_instruction& instruction = emitted_.emplace_back();
    instruction.code = number.is_integer ? op_code::op_push_int : op_code::op_push_float;
    instruction.number = number.value;
}

// The text becomes a format, and what it quotes of the description must not act as one.
void log_failed_parse(parse_status status, std::string_view rest) {
    const std::string text = fmt::format("km_parse_tree failed with result={}. Last token view:\n{}.\n",
                                         status_text(status), rest);
    std::string format;
    for (const char c : text) format.append(c == '%' ? 2 : 1, c);
    log_message(log_failure, format.c_str());
}

result<formula_program> parse(std::string_view text, name_resolver resolver, parse_end& end) {
    math_parser parser(text, resolver);
    end.status = parser.parse();
    end.rest = parser.rest();
    if (end.status == parse_status::none || end.status == parse_status::end_of_text)
        return parser.take_program();
    if (log_enabled(log_failure)) log_failed_parse(end.status, end.rest);
    return make_error_code(formula_parse_failed);
}

}  // namespace

result<formula_program> parse_formula(std::string_view text, name_resolver resolver) {
    parse_end end;
    return parse_formula(text, resolver, end);
}

result<formula_program> parse_formula(std::string_view text, name_resolver resolver, parse_end& end) {
    result<formula_program> program = parse(text, resolver, end);
    if (program) specialise_formula(program.assume_value());
    return program;
}

result<formula_program> parse_instructions(std::string_view text, name_resolver resolver) {
    parse_end end;
    return parse(text, resolver, end);
}

}  // namespace GenICam
