// Any text is parsed and, where it divides no integers, computed in every way there is; all must agree.

#include "formula/formula_evaluator.h"
#include "formula/formula_parser.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

using namespace GenICam;

namespace {

constexpr identifier_id first_id = 1000;

const eval_value values[] = {eval_value::of(std::int64_t{7}), eval_value::of(-2.5),
                             eval_value::of(std::int64_t{-9223372036854775807 - 1}), eval_value::of(1e300)};

// "a" to "d" are variables, "x" to "z" constants, everything else is unknown.
constexpr auto resolve = [](std::string_view name) -> resolved_name {
    if (name.size() != 1) return {};
    const char c = name.front();
    if (c >= 'a' && c <= 'd') return identifier_id{first_id + static_cast<unsigned>(c - 'a')};
    if (c >= 'x' && c <= 'z') return values[c - 'x'];
    return {};
};

constexpr auto find = [](identifier_id id) { return &values[id - first_id]; };
constexpr auto answer = [](identifier_id id) { return std::optional<eval_value>(*find(id)); };

// An integer division by zero ends the process, and there is nothing to learn from that.
bool may_divide(const formula_program& program) {
    for (const formula_instruction& instruction : program.instructions) {
        if (instruction.code == op_code::op_binary && instruction.function->for_integers.can_fault)
            return true;
    }
    return false;
}

bool is_same(const eval_value& left, const eval_value& right) {
    if (left.is_integer != right.is_integer) return false;
    if (!left.is_integer && std::isnan(left.value.real)) return std::isnan(right.value.real);
    return std::memcmp(&left.value, &right.value, sizeof left.value) == 0;
}

void require_same(const result<eval_value>& left, const result<eval_value>& right) {
    if (left.has_value() != right.has_value()) std::abort();
    if (left && !is_same(left.value(), right.value())) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto plain = parse_instructions(text, resolve);
    const auto untyped = parse_formula(text, resolve);
    if (plain.has_value() != untyped.has_value()) std::abort();
    if (!plain || may_divide(plain.value())) return 0;
    const auto stepwise = evaluate_formula(plain.value(), find);
    require_same(stepwise, evaluate_formula(untyped.value(), find));
    require_same(stepwise, evaluate_formula(untyped.value(), answer));
    const auto typed =
        parse_formula(text, resolve, [](identifier_id id) { return known(kind_of(*find(id))); });
    require_same(stepwise, evaluate_formula(typed.value(), find));
    require_same(stepwise, evaluate_formula(typed.value(), answer));
    return 0;
}
