#include "apps/inspect/lint/formula_outline.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

using GenICam::formula_token;
using GenICam::token_kind;

struct expected_order {
    token_kind kind;
    int binds;  // the higher the tighter
};

// What people expect who have learnt mathematics and one of the common languages.
constexpr int power_binds = 10;
constexpr expected_order expected_orders[] = {
    {token_kind::power, power_binds}, {token_kind::multiply, 9},    {token_kind::divide, 9},
    {token_kind::remainder, 9},       {token_kind::plus, 8},        {token_kind::minus, 8},
    {token_kind::shift_left, 7},      {token_kind::shift_right, 7}, {token_kind::bit_and, 6},
    {token_kind::bit_xor, 5},         {token_kind::bit_or, 4},      {token_kind::greater, 3},
    {token_kind::greater_equal, 3},   {token_kind::less, 3},        {token_kind::less_equal, 3},
    {token_kind::equal, 3},           {token_kind::not_equal, 3},   {token_kind::logical_and, 2},
    {token_kind::logical_or, 1},
};

int expected_binding(token_kind kind) {
    const auto* found = std::find_if(std::begin(expected_orders), std::end(expected_orders),
                                     [&](const expected_order& order) { return order.kind == kind; });
    return found != std::end(expected_orders) ? found->binds : 0;
}

int actual_binding(token_kind kind) { return static_cast<int>(GenICam::operation_of(kind)->level); }

bool is_binary(token_kind kind) {
    const GenICam::formula_operation* operation = GenICam::operation_of(kind);
    return operation != nullptr && operation->binary != nullptr;
}

bool expects_left_first(token_kind left, token_kind right) {
    if (left == token_kind::power && right == token_kind::power) return false;
    return expected_binding(left) >= expected_binding(right);
}

bool computes_left_first(token_kind left, token_kind right) {
    return actual_binding(left) >= actual_binding(right);
}

constexpr std::string_view blanks = " \t\n\v\f\r";

std::string_view trimmed_front(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

std::string_view trimmed(std::string_view text) {
    const std::string_view rest = trimmed_front(text);
    return rest.substr(0, rest.find_last_not_of(blanks) + 1);
}

std::string shortened(std::string_view text) {
    constexpr std::size_t longest = 40;
    const std::string_view inner = trimmed(text);
    return inner.size() <= longest ? std::string(inner) : std::string(inner.substr(0, longest - 3)) + "...";
}

struct placed_operator {
    token_kind kind;
    std::size_t start;
    std::size_t end;
};

/// Operands with operators between them, without parentheses around a part of them.
struct operator_chain {
    std::size_t start = 0;
    std::vector<placed_operator> operators;
    std::vector<std::size_t> negated_powers;  // operators ** whose left operand has a minus before it
};

/// Parentheses, the arguments of a function, or the whole.
struct open_group {
    std::string_view function;
    std::size_t start = 0;
    std::size_t arguments = 1;
    std::size_t questions = 0;  // without their colon so far
    bool negated = false;       // a minus stands before it
    operator_chain chain;
};

class outline_reader {
public:
    explicit outline_reader(std::string_view text) : text_(text) { groups_.emplace_back(); }

    [[nodiscard]] formula_outline read();

private:
    void take(const formula_token& token, std::size_t start, std::size_t end);
    void take_operand_start(const formula_token& token);
    void take_follower(const formula_token& token, std::size_t start, std::size_t end);
    void open(const formula_token& token, std::size_t start, std::size_t end);
    void close(std::size_t end);
    void end_chain(std::size_t end, std::size_t next);
    void judge(const operator_chain& chain, std::size_t end);
    void judge_from(const operator_chain& chain, std::size_t first, std::size_t end);
    void finish();

    [[nodiscard]] open_group& group() { return groups_.back(); }
    [[nodiscard]] std::string piece(std::size_t start, std::size_t end) const {
        return shortened(text_.substr(start, end - start));
    }

    std::string_view text_;
    std::vector<open_group> groups_;
    bool wants_operand_ = true;
    bool negated_ = false;  // a minus stands before the operand at hand
    std::size_t last_ = 0;  // where the last token starts
    formula_outline outline_;
};

formula_outline outline_reader::read() {
    for (std::string_view rest = text_;;) {
        const formula_token token = GenICam::next_token(rest);
        if (token.kind == token_kind::end) break;
        const std::size_t end = text_.size() - token.rest.size();
        const std::size_t start = text_.size() - trimmed_front(rest).size();
        take(token, start, end);
        last_ = start;
        rest = token.rest;
    }
    finish();
    return std::move(outline_);
}

void outline_reader::take(const formula_token& token, std::size_t start, std::size_t end) {
    if (token.kind == token_kind::open || token.kind == token_kind::function) {
        open(token, start, end);
    } else if (wants_operand_) {
        take_operand_start(token);
    } else {
        take_follower(token, start, end);
    }
}

void outline_reader::take_operand_start(const formula_token& token) {
    if (token.kind == token_kind::minus) negated_ = true;
    const bool is_operand = token.kind == token_kind::number || token.kind == token_kind::identifier;
    if (is_operand) wants_operand_ = false;
}

void outline_reader::take_follower(const formula_token& token, std::size_t start, std::size_t end) {
    if (is_binary(token.kind)) {
        operator_chain& chain = group().chain;
        if (token.kind == token_kind::power && negated_)
            chain.negated_powers.push_back(chain.operators.size());
        chain.operators.push_back({token.kind, start, end});
        wants_operand_ = true;
        negated_ = false;
        return;
    }
    if (token.kind == token_kind::close) return close(start);
    if (token.kind == token_kind::question) ++group().questions;
    if (token.kind == token_kind::colon && group().questions > 0) --group().questions;
    if (token.kind == token_kind::comma) ++group().arguments;
    end_chain(start, end);
}

void outline_reader::open(const formula_token& token, std::size_t start, std::size_t end) {
    open_group& opened = groups_.emplace_back();
    opened.function = token.kind == token_kind::function ? token.name : std::string_view();
    opened.start = start;
    opened.chain.start = end;
    opened.negated = negated_;
    wants_operand_ = true;
    negated_ = false;
}

void outline_reader::close(std::size_t end) {
    judge(group().chain, end);
    if (groups_.size() == 1) return;  // one too many: what follows is ignored
    const open_group closed = std::move(groups_.back());
    groups_.pop_back();
    const bool is_round = closed.function == "ROUND" || closed.function == "round";
    if (is_round && closed.arguments == 1) {
        outline_.short_rounds.push_back({closed.start, piece(closed.start, end + 1)});
    }
    wants_operand_ = false;
    negated_ = closed.negated;
}

void outline_reader::end_chain(std::size_t end, std::size_t next) {
    judge(group().chain, end);
    group().chain = {};
    group().chain.start = next;
    wants_operand_ = true;
    negated_ = false;
}

void outline_reader::judge(const operator_chain& chain, std::size_t end) {
    for (std::size_t first = 0; first + 1 < chain.operators.size(); ++first) judge_from(chain, first, end);
    for (const std::size_t power : chain.negated_powers) {
        const placed_operator& at = chain.operators[power];
        const std::size_t start = power == 0 ? chain.start : chain.operators[power - 1].end;
        const std::string base = piece(start, at.start);
        outline_.surprises.push_back({start, fmt::format("{} ** is computed as ({}) **", base, base)});
    }
}

// Where the left operand of an operator starts, with everything that is computed before it.
std::size_t operand_start(const operator_chain& chain, std::size_t which) {
    const std::vector<placed_operator>& operators = chain.operators;
    std::size_t at = which;
    while (at > 0 && computes_left_first(operators[at - 1].kind, operators[which].kind)) --at;
    return at == 0 ? chain.start : operators[at - 1].end;
}

std::size_t operand_end(const operator_chain& chain, std::size_t which, std::size_t end) {
    const std::vector<placed_operator>& operators = chain.operators;
    std::size_t next = which + 1;
    while (next < operators.size() && !computes_left_first(operators[which].kind, operators[next].kind))
        ++next;
    return next == operators.size() ? end : operators[next].start;
}

// Looks at an operator and each behind it that competes for the operand between them.
void outline_reader::judge_from(const operator_chain& chain, std::size_t first, std::size_t end) {
    const std::vector<placed_operator>& operators = chain.operators;
    const placed_operator& left = operators[first];
    for (std::size_t second = first + 1; second < operators.size(); ++second) {
        const placed_operator& right = operators[second];
        const bool left_first = computes_left_first(left.kind, right.kind);
        if (left_first != expects_left_first(left.kind, right.kind)) {
            const std::size_t start = operand_start(chain, first);
            const std::size_t stop = operand_end(chain, second, end);
            const auto sign = [&](const placed_operator& one) {
                return text_.substr(one.start, one.end - one.start);
            };
            const char* const order = left_first ? "({} {} {}) {} {}" : "{} {} ({} {} {})";
            outline_.surprises.push_back(
                {left.start, "computed as " + fmt::format(fmt::runtime(order), piece(start, left.start),
                                                          sign(left), piece(left.end, right.start),
                                                          sign(right), piece(right.end, stop))});
        }
        if (left_first) return;  // those further behind get the result of both
    }
}

void outline_reader::finish() {
    if (wants_operand_ && last_ < text_.size() && !trimmed(text_).empty()) {
        outline_.breaks.push_back(
            {last_, "ends behind \"" + piece(last_, text_.size()) + "\", which is dropped"});
    }
    for (; !groups_.empty(); groups_.pop_back()) {
        judge(group().chain, text_.size());
        if (group().questions > 0) outline_.breaks.push_back({group().start, "a ? has no :"});
        if (groups_.size() > 1)
            outline_.breaks.push_back({group().start, piece(group().start, text_.size()) + " is not closed"});
    }
}

}  // namespace

formula_outline outline_formula(std::string_view text) { return outline_reader(text).read(); }

std::string refusal_text(std::string_view formula, const GenICam::parse_end& end) {
    const std::size_t read = formula.size() - end.rest.size();
    const std::string_view why = status_text(end.status);
    constexpr std::size_t shown = 30;
    const std::string_view before = formula.substr(read > shown ? read - shown : 0, std::min(read, shown));
    return fmt::format("refused at character {}, behind \"{}\": {}", read + 1, trimmed(before),
                       why.empty() ? "too deep or too long" : why);
}

std::string_view ignored_text(const GenICam::parse_end& end) {
    return end.status == GenICam::parse_status::none ? trimmed(end.rest) : std::string_view();
}

std::vector<std::string> formula_notes(std::string_view formula) {
    GenICam::parse_end end;
    const auto anything = [](std::string_view) -> GenICam::resolved_name { return GenICam::eval_value(); };
    if (!GenICam::parse_formula(formula, anything, end)) return {};
    std::vector<std::string> notes;
    const std::string_view ignored = ignored_text(end);
    if (!ignored.empty()) notes.push_back("ends before \"" + shortened(ignored) + "\", which is ignored");
    const formula_outline outline = outline_formula(formula.substr(0, formula.size() - ignored.size()));
    for (const auto* remarks : {&outline.breaks, &outline.surprises}) {
        for (const formula_remark& remark : *remarks) notes.push_back(remark.text);
    }
    return notes;
}

}  // namespace selvane_inspect
