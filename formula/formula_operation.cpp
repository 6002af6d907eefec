#include "formula/formula_operation.h"

#include "formula/formula_step.h"
#include "platform/math.h"

#include <array>
#include <cmath>
#include <iterator>
#include <type_traits>

namespace GenICam {

namespace {

// Integer arithmetic wraps, so it is done without signs.
constexpr std::uint64_t bits(std::int64_t number) noexcept { return static_cast<std::uint64_t>(number); }
constexpr std::int64_t number(std::uint64_t bits) noexcept { return static_cast<std::int64_t>(bits); }
constexpr unsigned shift_count(std::int64_t count) noexcept {
    return static_cast<unsigned>(bits(count) & 63U);
}

std::int64_t add(std::int64_t l, std::int64_t r) noexcept { return number(bits(l) + bits(r)); }
double add_real(double l, double r) noexcept { return l + r; }
std::int64_t subtract(std::int64_t l, std::int64_t r) noexcept { return number(bits(l) - bits(r)); }
double subtract_real(double l, double r) noexcept { return l - r; }
std::int64_t multiply(std::int64_t l, std::int64_t r) noexcept { return number(bits(l) * bits(r)); }
double multiply_real(double l, double r) noexcept { return l * r; }

// A zero divisor and the one quotient that does not fit must reach the processor's instruction, which ends
// the process. Out of line, so that no compiler draws conclusions about the operands elsewhere.
__attribute__((noinline, no_sanitize("undefined"))) std::int64_t divide(std::int64_t l,
                                                                        std::int64_t r) noexcept {
    return l / r;
}
__attribute__((noinline, no_sanitize("undefined"))) std::int64_t remainder(std::int64_t l,
                                                                           std::int64_t r) noexcept {
    return l % r;
}
double divide_real(double l, double r) noexcept { return l / r; }

double power_real(double l, double r) noexcept { return platform::power(l, r); }
std::int64_t power(std::int64_t l, std::int64_t r) noexcept {
    return truncate_to_int(platform::power(static_cast<double>(l), static_cast<double>(r)));
}

// Both forms of the comparisons and of the logic give an integer. With a NaN all comparisons are false but
// "not equal"; in logic a NaN is true.
template <class T>
std::int64_t greater(T l, T r) noexcept {
    return l > r;
}
template <class T>
std::int64_t greater_equal(T l, T r) noexcept {
    return l >= r;
}
template <class T>
std::int64_t less(T l, T r) noexcept {
    return l < r;
}
template <class T>
std::int64_t less_equal(T l, T r) noexcept {
    return l <= r;
}
template <class T>
std::int64_t equal(T l, T r) noexcept {
    return l == r;
}
template <class T>
std::int64_t not_equal(T l, T r) noexcept {
    return l != r;
}
template <class T>
std::int64_t logical_and(T l, T r) noexcept {
    return (l != T{}) & (r != T{});
}
template <class T>
std::int64_t logical_or(T l, T r) noexcept {
    return (l != T{}) | (r != T{});
}

std::int64_t bit_and(std::int64_t l, std::int64_t r) noexcept { return l & r; }
std::int64_t bit_or(std::int64_t l, std::int64_t r) noexcept { return l | r; }
std::int64_t bit_xor(std::int64_t l, std::int64_t r) noexcept { return l ^ r; }
std::int64_t shift_right(std::int64_t l, std::int64_t r) noexcept { return l >> shift_count(r); }
std::int64_t shift_left(std::int64_t l, std::int64_t r) noexcept { return number(bits(l) << shift_count(r)); }

std::int64_t complement(std::int64_t x) noexcept { return ~x; }
std::int64_t negate(std::int64_t x) noexcept { return number(0 - bits(x)); }
double negate_real(double x) noexcept { return -x; }
std::int64_t sign(std::int64_t x) noexcept { return (x > 0) - (x < 0); }
double sign_real(double x) noexcept {
    if (x == 0.0) return x;
    return x < 0.0 ? -1.0 : 1.0;
}

double arc_tangent(double x) noexcept { return std::atan(x); }
double arc_sine(double x) noexcept { return std::asin(x); }
double arc_cosine(double x) noexcept { return std::acos(x); }
double cosine(double x) noexcept { return std::cos(x); }
double sine(double x) noexcept { return std::sin(x); }
double tangent(double x) noexcept { return std::tan(x); }
double absolute(double x) noexcept { return std::fabs(x); }
double exponential(double x) noexcept { return std::exp(x); }
double natural_logarithm(double x) noexcept { return std::log(x); }
double decimal_logarithm(double x) noexcept { return std::log10(x); }
double square_root(double x) noexcept { return std::sqrt(x); }
double truncate(double x) noexcept { return static_cast<double>(truncate_to_int(x)); }
double floor(double x) noexcept { return std::floor(x); }
double ceiling(double x) noexcept { return std::ceil(x); }

// Halves go up for positive numbers. The test is not mirrored for negative ones, and descriptions count on
// that.
double round_digit(double x) noexcept {
    const double below = std::floor(x);
    const bool is_lower_half = x - below < 0.5;
    if (x < 0.0) return is_lower_half ? std::ceil(x) : below;
    return is_lower_half ? below : std::ceil(x);
}

double round_to_digits(double x, std::int64_t digits) noexcept {
    if (digits == 0) return round_digit(x);
    const double scale = platform::power(10.0, static_cast<double>(digits));
    return round_digit(x * scale) / scale;
}

// From here on the functions above are wrapped so that all have one type, and made into steps.

template <class Number>
constexpr number_kind kind_for =
    std::is_same_v<Number, double> ? number_kind::floating : number_kind::integer;

template <class Number>
Number read(bare_number payload) noexcept {
    if constexpr (kind_for<Number> == number_kind::floating) {
        return payload.real;
    } else {
        return payload.integer;
    }
}

bare_number store(std::int64_t number) noexcept {
    bare_number payload;
    payload.integer = number;
    return payload;
}

bare_number store(double number) noexcept {
    bare_number payload;
    payload.real = number;
    return payload;
}

constexpr bool can_fault(std::int64_t (*function)(std::int64_t, std::int64_t) noexcept) noexcept {
    return function == divide || function == remainder;
}
template <class Function>
constexpr bool can_fault(Function) noexcept {
    return false;
}

// Sums and products of integers are exact modulo 2 to the 64.
constexpr std::int8_t neutral_of(std::int64_t (*function)(std::int64_t, std::int64_t) noexcept) noexcept {
    if (function == add) return 0;
    return function == multiply ? 1 : -1;
}
template <class Function>
constexpr std::int8_t neutral_of(Function) noexcept {
    return -1;
}

/// The steps that compute `Apply` on operands that `Operands` fetches.
template <auto Apply, class Operands, number_kind Kind>
struct steps_of {
    static eval_value store(const formula_step* at, bare_number* frame) {
        frame[at->target] = Operands::template compute<Apply>(at, frame);
        return go_on(at, frame);
    }
    static eval_value finish(const formula_step* at, bare_number* frame) {
        return value_of(Kind, Operands::template compute<Apply>(at, frame));
    }
    static eval_value branch(const formula_step* at, bare_number* frame) {
        return go_on_if(Operands::template compute<Apply>(at, frame).integer != 0, at, frame);
    }
    template <bool IsTest>
    static constexpr step_functions functions() noexcept {
        if constexpr (IsTest) {
            return {store, finish, branch};
        } else {
            return {store, finish, nullptr};
        }
    }
};

struct from_slot {
    template <auto Apply>
    static bare_number compute(const formula_step* at, const bare_number* frame) {
        return Apply(frame[at->left], {});
    }
};
struct from_slots {
    template <auto Apply>
    static bare_number compute(const formula_step* at, const bare_number* frame) {
        return Apply(frame[at->left], frame[at->right]);
    }
};
struct from_slot_and_constant {
    template <auto Apply>
    static bare_number compute(const formula_step* at, const bare_number* frame) {
        return Apply(frame[at->left], at->constant);
    }
};
struct from_constant_and_slot {
    template <auto Apply>
    static bare_number compute(const formula_step* at, const bare_number* frame) {
        return Apply(at->constant, frame[at->right]);
    }
};

template <auto Function, bool IsTest>
struct wrapped;

template <class Result, class Operand, Result (*Function)(Operand) noexcept, bool IsTest>
struct wrapped<Function, IsTest> {
    static constexpr std::size_t arity = 1;
    static bare_number apply(bare_number operand, bare_number) noexcept {
        return store(Function(read<Operand>(operand)));
    }
    static constexpr number_kind kind = kind_for<Result>;
    static constexpr typed_form form = {apply,
                                        steps_of<apply, from_slot, kind>::template functions<IsTest>(),
                                        {},
                                        {},
                                        kind_for<Operand>,
                                        kind_for<Operand>,
                                        kind,
                                        false,
                                        -1};
};

template <class Result, class Left, class Right, Result (*Function)(Left, Right) noexcept, bool IsTest>
struct wrapped<Function, IsTest> {
    static constexpr std::size_t arity = 2;
    static bare_number apply(bare_number left, bare_number right) noexcept {
        return store(Function(read<Left>(left), read<Right>(right)));
    }
    static constexpr number_kind kind = kind_for<Result>;
    static constexpr typed_form form = {
        apply,
        steps_of<apply, from_slots, kind>::template functions<IsTest>(),
        steps_of<apply, from_slot_and_constant, kind>::template functions<IsTest>(),
        steps_of<apply, from_constant_and_slot, kind>::template functions<IsTest>(),
        kind_for<Left>,
        kind_for<Right>,
        kind,
        can_fault(Function),
        neutral_of(Function)};
};

template <auto ForIntegers, auto Otherwise = ForIntegers, bool IsTest = false>
constexpr formula_function function = {wrapped<Otherwise, IsTest>::arity, wrapped<ForIntegers, IsTest>::form,
                                       wrapped<Otherwise, IsTest>::form};

template <std::int64_t (*ForIntegers)(std::int64_t, std::int64_t) noexcept,
          std::int64_t (*Otherwise)(double, double) noexcept>
constexpr const formula_function* comparison = &function<ForIntegers, Otherwise, true>;

using level = operator_level;

// Rows with the same first character stand together, two characters before one: the first match counts.
constexpr formula_operation operations[] = {
    {"**", token_kind::power, level::term, nullptr, &function<power, power_real>},
    {"*", token_kind::multiply, level::term, nullptr, &function<multiply, multiply_real>},
    {">>", token_kind::shift_right, level::bit_term, nullptr, &function<shift_right>},
    {">=", token_kind::greater_equal, level::relation, nullptr, comparison<greater_equal, greater_equal>},
    {">", token_kind::greater, level::relation, nullptr, comparison<greater, greater>},
    {"<<", token_kind::shift_left, level::bit_term, nullptr, &function<shift_left>},
    {"<=", token_kind::less_equal, level::relation, nullptr, comparison<less_equal, less_equal>},
    {"<>", token_kind::not_equal, level::relation, nullptr, comparison<not_equal, not_equal>},
    {"<", token_kind::less, level::relation, nullptr, comparison<less, less>},
    {"&&", token_kind::logical_and, level::relation, nullptr, comparison<logical_and, logical_and>},
    {"&", token_kind::bit_and, level::bit_term, nullptr, &function<bit_and>},
    {"||", token_kind::logical_or, level::relation, nullptr, comparison<logical_or, logical_or>},
    {"|", token_kind::bit_or, level::bit_term, nullptr, &function<bit_or>},
    {"^", token_kind::bit_xor, level::bit_term, nullptr, &function<bit_xor>},
    {"~", token_kind::complement, level::none, &function<complement>},
    {"+", token_kind::plus, level::sum, nullptr, &function<add, add_real>},
    {"-", token_kind::minus, level::sum, &function<negate, negate_real>, &function<subtract, subtract_real>},
    {"/", token_kind::divide, level::term, nullptr, &function<divide, divide_real>},
    {"%", token_kind::remainder, level::term, nullptr, &function<remainder>},
    {"=", token_kind::equal, level::relation, nullptr, comparison<equal, equal>},
    {"(", token_kind::open},
    {")", token_kind::close},
    {"?", token_kind::question},
    {":", token_kind::colon},
    {",", token_kind::comma},
};

struct named_function {
    std::string_view upper;
    std::string_view lower;  // empty: known in upper case only
    const formula_function* function;
};

constexpr named_function functions[] = {
    {"ATAN", "atan", &function<arc_tangent>},
    {"COS", "cos", &function<cosine>},
    {"SIN", "sin", &function<sine>},
    {"TAN", "tan", &function<tangent>},
    {"ABS", "abs", &function<absolute>},
    {"EXP", "exp", &function<exponential>},
    {"LN", "ln", &function<natural_logarithm>},
    {"LG", "lg", &function<decimal_logarithm>},
    {"SQRT", "sqrt", &function<square_root>},
    {"TRUNC", "trunc", &function<truncate>},
    {"FLOOR", "floor", &function<floor>},
    {"CEIL", "ceil", &function<ceiling>},
    {"ASIN", "asin", &function<arc_sine>},
    {"ACOS", "acos", &function<arc_cosine>},
    {"SGN", "sgn", &function<sign, sign_real>},
    {"NEG", "neg", &function<negate, negate_real>},
    {"ROUND", "", &function<round_to_digits>},
};

struct named_constant {
    std::string_view name;
    double value;
};

constexpr named_constant constants[] = {
    {"PI", 3.141592653589793},
    {"E", 2.718281828459045},
};

constexpr std::uint8_t operation_count = std::size(operations);

// Where the rows of a first character begin; `operation_count` for characters that begin none.
constexpr std::array<std::uint8_t, 256> make_first_rows() noexcept {
    std::array<std::uint8_t, 256> rows{};
    for (std::uint8_t& row : rows) row = operation_count;
    for (std::uint8_t at = operation_count; at-- > 0;) {
        rows[static_cast<unsigned char>(operations[at].text[0])] = at;
    }
    return rows;
}

constexpr std::array<std::uint8_t, 256> first_rows = make_first_rows();

constexpr std::size_t kind_count = static_cast<std::size_t>(token_kind::end) + 1;

constexpr std::array<const formula_operation*, kind_count> make_rows_by_kind() noexcept {
    std::array<const formula_operation*, kind_count> rows{};
    for (const formula_operation& row : operations) rows[static_cast<std::size_t>(row.kind)] = &row;
    return rows;
}

constexpr std::array<const formula_operation*, kind_count> rows_by_kind = make_rows_by_kind();

}  // namespace

const formula_operation* match_operation(std::string_view text) noexcept {
    if (text.empty()) return nullptr;
    for (std::size_t at = first_rows[static_cast<unsigned char>(text[0])]; at < operation_count; ++at) {
        const std::string_view candidate = operations[at].text;
        if (candidate[0] != text[0]) return nullptr;
        if (candidate.size() == 1 || (text.size() > 1 && candidate[1] == text[1])) return &operations[at];
    }
    return nullptr;
}

const formula_operation* operation_of(token_kind kind) noexcept {
    return rows_by_kind[static_cast<std::size_t>(kind)];
}

const formula_function* find_function(std::string_view name, std::size_t arguments) noexcept {
    for (const named_function& row : functions) {
        const bool is_named = name == row.upper || (!row.lower.empty() && name == row.lower);
        if (is_named && row.function->arity == arguments) return row.function;
    }
    return nullptr;
}

std::string_view text_of(const formula_function& function) noexcept {
    for (const formula_operation& row : operations) {
        if (row.unary == &function || row.binary == &function) return row.text;
    }
    for (const named_function& row : functions) {
        if (row.function == &function) return row.upper;
    }
    return {};
}

const double* find_named_constant(std::string_view name) noexcept {
    constexpr std::size_t longest = 2;
    if (name.size() > longest) return nullptr;
    for (const named_constant& row : constants) {
        if (name == row.name) return &row.value;
    }
    return nullptr;
}

}  // namespace GenICam
