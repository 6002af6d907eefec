// Formulas made at random, with a fixed seed, against a tree walk that shares no code with the product.

#include "formula/formula_specialiser.h"
#include "tests/formula/formula_test_support.h"
#include "tests/formula/reference_formula.h"
#include "tests/support/sweep.h"

#include <array>
#include <cmath>
#include <cstring>
#include <limits>

#include <fmt/format.h>
#include <gtest/gtest.h>

using namespace formula_test;
using GenICam::eval_value;

namespace {

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

constexpr std::int64_t special_integers[] = {0,
                                             1,
                                             -1,
                                             2,
                                             -2,
                                             3,
                                             7,
                                             10,
                                             63,
                                             64,
                                             65,
                                             -64,
                                             255,
                                             lowest,
                                             lowest + 1,
                                             highest,
                                             highest - 1,
                                             (std::int64_t{1} << 53) + 1,
                                             -(std::int64_t{1} << 53) - 1,
                                             std::int64_t{1} << 62,
                                             std::int64_t{1} << 32,
                                             0x5555555555555555};
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double special_reals[] = {0.0,
                                    -0.0,
                                    1.0,
                                    -1.0,
                                    0.5,
                                    -0.5,
                                    1.5,
                                    -1.5,
                                    2.5,
                                    -2.5,
                                    0.4,
                                    0.6,
                                    1e-3,
                                    1e300,
                                    -1e300,
                                    1e-300,
                                    0x1p52,
                                    0x1p53,
                                    0x1p62,
                                    0x1p63,
                                    -0x1p63,
                                    0x1p64,
                                    infinity,
                                    -infinity,
                                    4503599627370495.5,
                                    0.49999999999999994,
                                    std::numeric_limits<double>::quiet_NaN(),
                                    3.14159,
                                    12.75,
                                    100.0};

eval_value to_product(const number& value) {
    return value.is_integer ? eval_value::of(value.integer) : eval_value::of(value.real);
}

bool is_same(const eval_value& computed, const number& expected) {
    if (computed.is_integer != expected.is_integer) return false;
    if (computed.is_integer) return computed.value.integer == expected.integer;
    if (std::isnan(expected.real)) return std::isnan(computed.value.real);
    return std::memcmp(&computed.value.real, &expected.real, sizeof(double)) == 0;
}

// How often each operation met each pair of kinds and each extreme.
struct coverage {
    std::array<std::array<long, 4>, operation_count> kinds{};
    std::array<std::array<long, 2>, operation_count> extremes{};

    void count(operation applied, const std::vector<number>& operands) {
        const auto row = static_cast<std::size_t>(applied);
        const std::size_t last = operands.size() - 1;
        const std::size_t first = last == 2 ? 1 : 0;  // of a selection the two branches
        ++kinds[row][(operands[first].is_integer ? 0U : 2U) + (operands[last].is_integer ? 0U : 1U)];
        for (const number& operand : operands) {
            if (operand.is_integer && operand.integer == lowest) ++extremes[row][0];
            if (operand.is_integer && operand.integer == highest) ++extremes[row][1];
        }
    }
};

class generator {
public:
    explicit generator(std::uint64_t seed) : random_(seed) {}

    // The same names with new values; a tree uses the values of its time.
    void renew_names() {
        names_ = formula_names();
        for (std::size_t at = 0; at < name_count; ++at) {
            values_[at] = make_number();
            const std::string name = name_of(at);
            if (at % 3 == 0) {
                names_.add_constant(name, to_product(values_[at]));
            } else {
                names_.add_variable(name, to_product(values_[at]));
            }
        }
    }

    std::unique_ptr<tree> make_tree(int depth) {
        if (depth == 0 || random_() % 8 == 0) return make_leaf();
        auto node = std::make_unique<tree>();
        node->is_leaf = false;
        std::vector<number> values;
        const auto applied = static_cast<operation>(random_() % operation_count);
        for (int at = 0; at < arity_of(applied); ++at) {
            node->operands.push_back(make_tree(depth - 1));
            values.push_back(node->operands.back()->value);
        }
        node->applied = is_harmless(applied, values) ? applied : operation::subtract;
        node->value = compute(node->applied, values);
        covered.count(node->applied, values);
        return node;
    }

    [[nodiscard]] const formula_names& names() const { return names_; }
    std::mt19937_64& random() { return random_; }

    coverage covered;

private:
    static constexpr std::size_t name_count = 12;

    static std::string name_of(std::size_t at) { return std::string(1, static_cast<char>('a' + at)) + "_.1"; }

    number make_number() {
        number made;
        made.is_integer = random_() % 2 == 0;
        switch (random_() % 4) {
            case 0:
                made.integer = static_cast<std::int64_t>(random_());
                made.real =
                    std::ldexp(static_cast<double>(made.integer), static_cast<int>(random_() % 100) - 90);
                break;
            case 1:
                made.integer = static_cast<std::int64_t>(random_() % 200) - 100;
                made.real = static_cast<double>(made.integer) / 8;
                break;
            default:
                made.integer = special_integers[random_() % std::size(special_integers)];
                made.real = special_reals[random_() % std::size(special_reals)];
                break;
        }
        if (made.is_integer) {
            made.real = 0;
        } else {
            made.integer = 0;
        }
        return made;
    }

    std::unique_ptr<tree> make_leaf() {
        auto leaf = std::make_unique<tree>();
        const std::uint64_t kind = random_() % 4;
        if (kind < 2) {
            const std::size_t at = random_() % name_count;
            leaf->text = name_of(at);
            leaf->value = values_[at];
            return leaf;
        }
        leaf->value = make_number();
        write_literal(*leaf);
        return leaf;
    }

    // A literal has no sign; integers wrap, so that hexadecimal digits reach every value.
    void write_literal(tree& leaf) {
        number& value = leaf.value;
        if (value.is_integer) {
            if (random_() % 3 == 0) {
                leaf.text = fmt::format("0x{:X}", static_cast<std::uint64_t>(value.integer));
            } else {
                leaf.text = fmt::format("{}", static_cast<std::uint64_t>(value.integer));
            }
            return;
        }
        if (!std::isfinite(value.real)) value.real = 1e308;
        value.real = std::fabs(value.real);
        leaf.text = fmt::format("{:.17e}", value.real);
    }

    std::mt19937_64 random_;
    formula_names names_;
    std::array<number, name_count> values_{};
};

/// Answers a formula's questions out of `names`, but a chosen one not at all or otherwise, and keeps what was
/// asked.
class witness {
public:
    enum class fault { none, lost, changed };

    witness(const formula_names& names, fault kind, std::size_t at) : names_(names), kind_(kind), at_(at) {}

    std::optional<eval_value> operator()(GenICam::identifier_id id) {
        asked.push_back(id);
        const eval_value value = *names_(id);
        if (kind_ == fault::none || asked.size() != at_ + 1) return value;
        if (kind_ == fault::lost) return std::nullopt;
        return value.is_integer ? eval_value::of(2.5) : eval_value::of(std::int64_t{3});
    }

    std::vector<GenICam::identifier_id> asked;

private:
    const formula_names& names_;
    fault kind_;
    std::size_t at_;
};

bool may_fault(const GenICam::formula_program& program) {
    for (const GenICam::formula_instruction& instruction : program.instructions) {
        if (instruction.code == GenICam::op_code::op_binary && instruction.function->for_integers.can_fault)
            return true;
    }
    return false;
}

bool is_same(const GenICam::result<eval_value>& left, const GenICam::result<eval_value>& right) {
    if (!left || !right) return !left && !right && left.error() == right.error();
    if (left.value().is_integer != right.value().is_integer) return false;
    if (!left.value().is_integer && std::isnan(left.value().value.real))
        return std::isnan(right.value().value.real);
    return left.value().value.integer == right.value().value.integer;
}

// A formula in all the ways there are to compute it.
struct formula_in_all_ways {
    GenICam::formula_program plain;
    GenICam::formula_program typed;
    GenICam::formula_program untyped;

    formula_in_all_ways(const std::string& text, const formula_names& names)
        : plain(GenICam::parse_instructions(text, names).value()),
          typed(GenICam::parse_formula(text, names,
                                       [&names](GenICam::identifier_id id) { return names.kind_of(id); })
                    .value()),
          untyped(GenICam::parse_formula(text, names).value()) {}
};

void expect_value(const GenICam::formula_program& program, const std::string& text,
                  const formula_names& names, const number& expected) {
    const auto computed = GenICam::evaluate_formula(program, names);
    ASSERT_TRUE(computed) << text;
    ASSERT_TRUE(is_same(computed.value(), expected))
        << text << " gives " << show(computed.value()) << ", expected " << show(to_product(expected));
}

void expect_same_questions(const formula_in_all_ways& formula, const std::string& text,
                           const formula_names& names, witness::fault fault, std::size_t at) {
    witness of_plain(names, fault, at);
    const auto expected = GenICam::evaluate_formula(formula.plain, of_plain);
    for (const GenICam::formula_program* program : {&formula.typed, &formula.untyped}) {
        witness of_this(names, fault, at);
        ASSERT_TRUE(is_same(GenICam::evaluate_formula(*program, of_this), expected)) << text << " at " << at;
        ASSERT_EQ(of_this.asked, of_plain.asked) << text << " at " << at;
    }
}

long typed_count = 0;
long untyped_count = 0;

// `chance` chooses the question that goes wrong.
void check(const std::string& text, const formula_names& names, const number& expected,
           std::uint64_t chance) {
    const formula_in_all_ways formula(text, names);
    for (const GenICam::formula_program* program : {&formula.plain, &formula.typed, &formula.untyped}) {
        expect_value(*program, text, names, expected);
    }
    if (formula.typed.specialised != nullptr) ++typed_count;
    if (formula.untyped.specialised != nullptr) ++untyped_count;
    expect_same_questions(formula, text, names, witness::fault::none, 0);
    expect_same_questions(formula, text, names, witness::fault::lost, chance % 4);
    if (!may_fault(formula.plain))
        expect_same_questions(formula, text, names, witness::fault::changed, chance % 4);
}

#ifdef SELVANE_SANITIZED
const long formula_count = test_support::by_sweep(100000L, 200000L, 1000000L);
#else
constexpr long formula_count = 1000000;
#endif

TEST(FormulaGenerator, AgreesWithAnIndependentEvaluator) {
    generator made(4711);
    for (long at = 0; at < formula_count && !HasFatalFailure(); ++at) {
        if (at % 50 == 0) made.renew_names();
        const auto root = made.make_tree(1 + static_cast<int>(made.random()() % 3));
        check(write(*root, made.random()), made.names(), root->value, made.random()());
    }
    EXPECT_GT(typed_count, formula_count / 10 * 8);
    EXPECT_GT(untyped_count, formula_count / 10 * 8);
    for (int applied = 0; applied < operation_count; ++applied) {
        const auto row = static_cast<std::size_t>(applied);
        const bool is_unary = arity_of(static_cast<operation>(applied)) == 1;
        for (const std::size_t kinds : {0U, 1U, 2U, 3U}) {
            if (is_unary && (kinds == 1 || kinds == 2)) continue;
            EXPECT_GT(made.covered.kinds[row][kinds], formula_count / 1000)
                << "operation " << applied << " kinds " << kinds;
        }
        EXPECT_GT(made.covered.extremes[row][0], formula_count / 10000) << "operation " << applied;
        EXPECT_GT(made.covered.extremes[row][1], formula_count / 10000) << "operation " << applied;
    }
}

std::vector<number> special_numbers() {
    std::vector<number> numbers;
    for (const std::int64_t value : special_integers) numbers.push_back({true, value, 0});
    for (const double value : special_reals) numbers.push_back({false, 0, value});
    return numbers;
}

// One formula over the variables x, y and z for each operation.
std::string formula_of(operation applied, std::mt19937_64& random) {
    tree root;
    root.is_leaf = false;
    root.applied = applied;
    for (int at = 0; at < arity_of(applied); ++at) {
        root.operands.push_back(std::make_unique<tree>());
        root.operands.back()->text = std::string(1, static_cast<char>('x' + at));
    }
    return write(root, random);
}

TEST(FormulaGenerator, EveryOperationOnEveryPairOfSpecialNumbers) {
    const std::vector<number> numbers = special_numbers();
    std::mt19937_64 random(1);
    for (int at = 0; at < operation_count && !HasFatalFailure(); ++at) {
        const auto applied = static_cast<operation>(at);
        const std::string text = formula_of(applied, random);
        for (std::size_t pair = 0; pair < numbers.size() * numbers.size(); ++pair) {
            const number& left = numbers[pair / numbers.size()];
            const number& right = numbers[pair % numbers.size()];
            std::vector<number> operands = {left, right, numbers[pair % 7]};
            operands.resize(static_cast<std::size_t>(arity_of(applied)));
            if (!is_harmless(applied, operands)) continue;
            formula_names names;
            names.add_variable("x", to_product(left));
            names.add_variable("y", to_product(right));
            names.add_variable("z", to_product(numbers[pair % 7]));
            check(text, names, compute(applied, operands), pair);
        }
    }
}

}  // namespace
