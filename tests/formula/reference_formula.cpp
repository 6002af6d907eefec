#include "tests/formula/reference_formula.h"

#include "platform/math.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace formula_test {
namespace {

__extension__ typedef __int128 wide;

constexpr wide two_to_64 = wide{1} << 64;
constexpr wide two_to_63 = wide{1} << 63;

number of_integer(std::int64_t value) { return {true, value, 0}; }
number of_real(double value) { return {false, 0, value}; }
number of_truth(bool value) { return of_integer(value ? 1 : 0); }

// The low 64 bits as a number with a sign.
std::int64_t wrap(wide value) {
    wide low = value % two_to_64;
    if (low < 0) low += two_to_64;
    if (low >= two_to_63) low -= two_to_64;
    return static_cast<std::int64_t>(low);
}

std::int64_t cut(double value) {
    if (std::isnan(value) || value >= 0x1p63 || value < -0x1p63)
        return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(value);
}

double real_of(const number& value) {
    return value.is_integer ? static_cast<double>(value.integer) : value.real;
}

// Halves go away from zero. Above 2^52 every double is an integer already.
std::int64_t integer_of(const number& value) {
    if (value.is_integer) return value.integer;
    if (!(std::fabs(value.real) < 0x1p52)) return cut(value.real);
    const double whole = std::trunc(value.real);
    const double fraction = value.real - whole;
    if (fraction >= 0.5) return cut(whole) + 1;
    if (fraction <= -0.5) return cut(whole) - 1;
    return cut(whole);
}

bool truth_of(const number& value) {
    if (value.is_integer) return value.integer != 0;
    return std::isnan(value.real) || value.real < 0 || value.real > 0;
}

enum class order { less, equal, greater, none };

order compare(const number& l, const number& r) {
    if (l.is_integer && r.is_integer) {
        if (l.integer == r.integer) return order::equal;
        return l.integer < r.integer ? order::less : order::greater;
    }
    const double left = real_of(l);
    const double right = real_of(r);
    if (std::isnan(left) || std::isnan(right)) return order::none;
    if (left < right) return order::less;
    return left > right ? order::greater : order::equal;
}

number arithmetic(operation applied, const number& l, const number& r) {
    if (l.is_integer && r.is_integer) {
        const wide left = l.integer;
        const wide right = r.integer;
        switch (applied) {
            case operation::add:
                return of_integer(wrap(left + right));
            case operation::subtract:
                return of_integer(wrap(left - right));
            case operation::multiply:
                return of_integer(wrap(left * right));
            default:
                return of_integer(wrap(left / right));
        }
    }
    switch (applied) {
        case operation::add:
            return of_real(real_of(l) + real_of(r));
        case operation::subtract:
            return of_real(real_of(l) - real_of(r));
        case operation::multiply:
            return of_real(real_of(l) * real_of(r));
        default:
            return of_real(real_of(l) / real_of(r));
    }
}

number bitwise(operation applied, std::int64_t l, std::int64_t r) {
    wide result = 0;
    for (int bit = 0; bit < 64; ++bit) {
        const bool left = ((wide{l} >> bit) & 1) != 0;
        const bool right = ((wide{r} >> bit) & 1) != 0;
        const bool both = applied == operation::bit_and  ? (left && right)
                          : applied == operation::bit_or ? (left || right)
                                                         : (left != right);
        if (both) result += wide{1} << bit;
    }
    return of_integer(wrap(result));
}

number shift(operation applied, std::int64_t l, std::int64_t r) {
    wide count = wide{r} % 64;
    if (count < 0) count += 64;
    wide factor = 1;
    for (wide at = 0; at < count; ++at) factor *= 2;
    if (applied == operation::shift_left) return of_integer(wrap(wide{l} * factor));
    wide quotient = wide{l} / factor;
    if (l < 0 && quotient * factor != wide{l}) --quotient;  // toward negative infinity
    return of_integer(wrap(quotient));
}

number binary(operation applied, const number& l, const number& r) {
    const order ordered = compare(l, r);
    switch (applied) {
        case operation::remainder: {
            const wide left = integer_of(l);
            const wide right = integer_of(r);
            return of_integer(wrap(left - left / right * right));
        }
        case operation::power: {
            const double result = platform::power(real_of(l), real_of(r));
            return l.is_integer && r.is_integer ? of_integer(cut(result)) : of_real(result);
        }
        case operation::greater:
            return of_truth(ordered == order::greater);
        case operation::greater_equal:
            return of_truth(ordered == order::greater || ordered == order::equal);
        case operation::less:
            return of_truth(ordered == order::less);
        case operation::less_equal:
            return of_truth(ordered == order::less || ordered == order::equal);
        case operation::equal:
            return of_truth(ordered == order::equal);
        case operation::not_equal:
            return of_truth(ordered != order::equal);
        case operation::logical_and:
            return of_truth(truth_of(l) && truth_of(r));
        case operation::logical_or:
            return of_truth(truth_of(l) || truth_of(r));
        case operation::bit_and:
        case operation::bit_or:
        case operation::bit_xor:
            return bitwise(applied, integer_of(l), integer_of(r));
        case operation::shift_right:
        case operation::shift_left:
            return shift(applied, integer_of(l), integer_of(r));
        default:
            return arithmetic(applied, l, r);
    }
}

double round_one(double x) {
    const double below = std::floor(x);
    const double above = std::ceil(x);
    const bool first_half = x - below < 0.5;
    const bool goes_up = x < 0.0 ? first_half : !first_half;
    return goes_up ? above : below;
}

number rounded(const number& x, const number& digits) {
    const std::int64_t places = integer_of(digits);
    if (places == 0) return of_real(round_one(real_of(x)));
    const double scale = platform::power(10.0, static_cast<double>(places));
    return of_real(round_one(real_of(x) * scale) / scale);
}

number negated(const number& x) {
    if (x.is_integer) return of_integer(wrap(-wide{x.integer}));
    std::uint64_t bits = 0;
    std::memcpy(&bits, &x.real, sizeof bits);
    bits ^= std::uint64_t{1} << 63;
    number result = x;
    std::memcpy(&result.real, &bits, sizeof bits);
    return result;
}

number sign(const number& x) {
    if (x.is_integer) return of_integer(x.integer < 0 ? -1 : x.integer > 0 ? 1 : 0);
    if (x.real == 0.0) return x;
    return of_real(x.real < 0.0 ? -1.0 : 1.0);
}

number library_function(operation applied, double x) {
    switch (applied) {
        case operation::atan:
            return of_real(std::atan(x));
        case operation::cos:
            return of_real(std::cos(x));
        case operation::sin:
            return of_real(std::sin(x));
        case operation::tan:
            return of_real(std::tan(x));
        case operation::abs:
            return of_real(std::signbit(x) ? -x : x);
        case operation::exp:
            return of_real(std::exp(x));
        case operation::ln:
            return of_real(std::log(x));
        case operation::lg:
            return of_real(std::log10(x));
        case operation::sqrt:
            return of_real(std::sqrt(x));
        case operation::trunc:
            return of_real(static_cast<double>(cut(x)));
        case operation::floor:
            return of_real(std::floor(x));
        case operation::ceil:
            return of_real(std::ceil(x));
        case operation::asin:
            return of_real(std::asin(x));
        default:
            return of_real(std::acos(x));
    }
}

struct spelling {
    const char* text;
    int level;  // 0 relation, 1 bit-term, 2 sum, 3 term, 4 unary, 5 function, -1 the ternary
};

// In the order of `operation`.
constexpr spelling spellings[operation_count] = {
    {"+", 2},     {"-", 2},    {"*", 3},    {"/", 3},    {"%", 3},   {"**", 3},  {">", 0},     {">=", 0},
    {"<", 0},     {"<=", 0},   {"=", 0},    {"<>", 0},   {"&&", 0},  {"||", 0},  {"&", 1},     {"|", 1},
    {"^", 1},     {">>", 1},   {"<<", 1},   {"+", 4},    {"-", 4},   {"~", 4},   {"ATAN", 5},  {"COS", 5},
    {"SIN", 5},   {"TAN", 5},  {"ABS", 5},  {"EXP", 5},  {"LN", 5},  {"LG", 5},  {"SQRT", 5},  {"TRUNC", 5},
    {"FLOOR", 5}, {"CEIL", 5}, {"ASIN", 5}, {"ACOS", 5}, {"SGN", 5}, {"NEG", 5}, {"ROUND", 5}, {"?", -1},
};

constexpr int ternary_level = -1;
constexpr int unary_level = 4;
constexpr int function_level = 5;

int level_of(const tree& node) {
    return node.is_leaf ? function_level : spellings[static_cast<int>(node.applied)].level;
}

class writer {
public:
    explicit writer(std::mt19937_64& random) : random_(random) {}

    void write(const tree& node) {
        const spelling& spelled = spellings[static_cast<int>(node.applied)];
        if (node.is_leaf) {
            text += node.text;
        } else if (spelled.level == ternary_level) {
            write_ternary(node);
        } else if (spelled.level == function_level) {
            write_function(node, spelled);
        } else if (spelled.level == unary_level) {
            text += spelled.text;
            blank();
            write_at(*node.operands[0], unary_level);
        } else {
            write_at(*node.operands[0], spelled.level);
            blank();
            text += spelled.text;
            blank();
            write_at(*node.operands[1], spelled.level + 1);
        }
    }

    std::string text;

private:
    // The operand of a construct that takes nothing from an outer level without parentheses.
    void write_at(const tree& node, int least_level) {
        const bool enclosed = level_of(node) < least_level || random_() % 16 == 0;
        if (enclosed) text += '(';
        write(node);
        if (enclosed) text += ')';
    }

    void write_ternary(const tree& node) {
        write_at(*node.operands[0], 0);
        blank();
        text += '?';
        write_at(*node.operands[1], ternary_level);
        text += ':';
        blank();
        write_at(*node.operands[2], ternary_level);
    }

    void write_function(const tree& node, const spelling& spelled) {
        const bool in_lower_case = node.operands.size() == 1 && random_() % 2 == 0;
        for (const char* c = spelled.text; *c != '\0'; ++c) {
            text += in_lower_case ? static_cast<char>(*c - 'A' + 'a') : *c;
        }
        blank();
        text += '(';
        for (std::size_t at = 0; at < node.operands.size(); ++at) {
            if (at > 0) text += ',';
            write_at(*node.operands[at], ternary_level);
        }
        text += ')';
    }

    void blank() {
        constexpr char blanks[] = " \t\n\r";
        if (random_() % 8 == 0) text += blanks[random_() % 4];
    }

    std::mt19937_64& random_;
};

}  // namespace

int arity_of(operation applied) {
    if (applied == operation::select) return 3;
    if (applied == operation::round) return 2;
    return applied <= operation::shift_left ? 2 : 1;
}

bool is_harmless(operation applied, const std::vector<number>& operands) {
    std::int64_t dividend = 0;
    std::int64_t divisor = 1;
    if (applied == operation::remainder) {
        dividend = integer_of(operands[0]);
        divisor = integer_of(operands[1]);
    } else if (applied == operation::divide && operands[0].is_integer && operands[1].is_integer) {
        dividend = operands[0].integer;
        divisor = operands[1].integer;
    }
    return divisor != 0 && !(divisor == -1 && dividend == std::numeric_limits<std::int64_t>::min());
}

number compute(operation applied, const std::vector<number>& operands) {
    switch (applied) {
        case operation::select:
            return truth_of(operands[0]) ? operands[1] : operands[2];
        case operation::round:
            return rounded(operands[0], operands[1]);
        case operation::plus:
            return operands[0];
        case operation::minus:
        case operation::neg:
            return negated(operands[0]);
        case operation::complement:
            return of_integer(wrap(-wide{integer_of(operands[0])} - 1));
        case operation::sgn:
            return sign(operands[0]);
        default:
            break;
    }
    if (arity_of(applied) == 2) return binary(applied, operands[0], operands[1]);
    return library_function(applied, real_of(operands[0]));
}

std::string write(const tree& node, std::mt19937_64& random) {
    writer text_writer(random);
    text_writer.write(node);
    return std::move(text_writer.text);
}

}  // namespace formula_test
