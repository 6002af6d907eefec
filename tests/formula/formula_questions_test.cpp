// How a formula asks for its variables: whoever answers cannot tell in which way it is computed.

#include "tests/formula/formula_test_support.h"
#include "tests/support/not_empty.h"

#include <stdexcept>
#include <utility>

#include <gtest/gtest.h>

using namespace GenICam;
using namespace formula_test;

namespace {

/// Gives answers one after the other, whatever is asked for, and keeps the questions.
class interview {
public:
    explicit interview(std::vector<std::optional<eval_value>> answers) : answers_(std::move(answers)) {}

    std::optional<eval_value> operator()(identifier_id id) {
        asked.push_back(id);
        return asked.size() <= answers_.size() ? answers_[asked.size() - 1] : std::nullopt;
    }

    std::vector<identifier_id> asked;

private:
    std::vector<std::optional<eval_value>> answers_;
};

constexpr auto letter = [](std::string_view name) -> resolved_name {
    return identifier_id{static_cast<unsigned char>(name.front())};
};

struct outcome_of_interview {
    std::string value;
    std::string asked;
};

outcome_of_interview hold(const formula_program& program,
                          const std::vector<std::optional<eval_value>>& answers) {
    interview held(answers);
    const auto value = evaluate_formula(program, held);
    outcome_of_interview outcome{value ? show(value.value()) : value.error().message(), {}};
    for (const identifier_id id : held.asked) outcome.asked += static_cast<char>(id);
    return outcome;
}

/// Every way to prepare a formula.
std::vector<formula_program> all_ways(std::string_view text) {
    std::vector<formula_program> ways;
    ways.push_back(parse_instructions(text, letter).value());
    ways.push_back(parse_formula(text, letter).value());
    for (const known_kind kind : {known_kind::integer, known_kind::floating}) {
        ways.push_back(parse_formula(text, letter, [kind](identifier_id) { return kind; }).value());
    }
    return ways;
}

std::optional<eval_value> answer(std::int64_t number) { return eval_value::of(number); }
std::optional<eval_value> answer(double number) { return eval_value::of(number); }

void expect_interview(const char* text, const std::vector<std::optional<eval_value>>& answers,
                      const char* value, const char* asked) {
    std::size_t way = 0;
    for (const formula_program& program : test_support::NotEmpty(all_ways(text))) {
        const outcome_of_interview outcome = hold(program, answers);
        EXPECT_EQ(outcome.value, value) << text << ", way " << way;
        EXPECT_EQ(outcome.asked, asked) << text << ", way " << way;
        ++way;
    }
}

constexpr const char* failed = "Failed to parse formula";

TEST(FormulaQuestions, StandInTheOrderOfTheProgram) {
    for (const auto& one : {answer(std::int64_t{2}), answer(2.0)}) {
        const std::vector<std::optional<eval_value>> answers(9, one);
        for (const auto& [text, asked] :
             std::initializer_list<std::pair<const char*, const char*>>{{"a", "a"},
                                                                        {"1", ""},
                                                                        {"a+b*c", "abc"},
                                                                        {"a*b+c", "abc"},
                                                                        {"3+a", "a"},
                                                                        {"(1+a)+2+b", "ab"},
                                                                        {"b-a", "ba"},
                                                                        {"a?b:c", "abc"},
                                                                        {"1?b:c", "bc"},
                                                                        {"0*a", "a"},
                                                                        {"b&&a||c", "bac"},
                                                                        {"ROUND(b,a)", "ba"},
                                                                        {"a+a", "aa"},
                                                                        {"a*b+a*b", "abab"},
                                                                        {"a+SIN(a)+(a&a)", "aaaa"},
                                                                        {"a?a:a", "aaa"},
                                                                        {"a=1?0:a=2?c:a=3?b:c", "aacabc"}}) {
            for (const formula_program& program : test_support::NotEmpty(all_ways(text))) {
                EXPECT_EQ(hold(program, answers).asked, asked) << text;
            }
        }
    }
}

TEST(FormulaQuestions, EndWithTheFirstThatHasNoAnswer) {
    expect_interview("a+b+c", {answer(std::int64_t{1}), std::nullopt}, failed, "ab");
    expect_interview("a+b+c", {std::nullopt}, failed, "a");
    expect_interview("a+a+c", {answer(1.0), std::nullopt}, failed, "aa");
    expect_interview("1?a:b", {answer(std::int64_t{1}), std::nullopt}, failed, "ab");
    expect_interview("0&&a", {std::nullopt}, failed, "a");
}

TEST(FormulaQuestions, EachHasItsOwnAnswer) {
    expect_interview("a-10*a", {answer(std::int64_t{1}), answer(std::int64_t{2})}, "-19", "aa");
    expect_interview("a-10*a", {answer(1.0), answer(2.0)}, "-19f", "aa");
    expect_interview("a-10*a", {answer(std::int64_t{1}), answer(2.5)}, "-24f", "aa");
    expect_interview("a-10*a", {answer(2.5), answer(std::int64_t{1})}, "-7.5f", "aa");
    expect_interview("SQRT(a)+(a&7)+a", {answer(4.0), answer(4.0), answer(5.0)}, "11f", "aaa");
    expect_interview("a?b:c", {answer(0.0), answer(std::int64_t{1}), answer(std::int64_t{2})}, "2", "abc");
    // The same as doubles, and as bits.
    expect_interview("a-a", {answer(std::int64_t{9007199254740993}), answer(std::int64_t{9007199254740992})},
                     "1", "aa");
    expect_interview("1/(a*a)", {answer(0.0), answer(-0.0)}, "-inff", "aa");
    expect_interview("a|a", {answer(1.0), answer(std::int64_t{4607182418800017408})}, "4607182418800017409",
                     "aa");
}

TEST(FormulaQuestions, AreAskedOnceWhereTheKindsOfTheAnswersFitNoForm) {
    expect_interview("a/b/c", {answer(std::int64_t{7}), answer(std::int64_t{2}), answer(2.0)}, "1.5f", "abc");
    expect_interview("a/b/c", {answer(7.0), answer(std::int64_t{2}), answer(std::int64_t{2})}, "1.75f",
                     "abc");
    expect_interview("a/b*a", {answer(7.0), answer(std::int64_t{2}), answer(7.0)}, "24.5f", "aba");
}

TEST(FormulaQuestions, OfLargeFormulas) {
    for (const int count : {20, 21, 63, 64, 65, 200}) {
        std::string text = "a";
        for (int at = 1; at < count; ++at) text += at % 2 == 0 ? "+a" : "+b";
        const std::vector<std::optional<eval_value>> same(static_cast<std::size_t>(count),
                                                          answer(std::int64_t{1}));
        std::vector<std::optional<eval_value>> different = same;
        different.back() = answer(0.5);
        for (const formula_program& program : test_support::NotEmpty(all_ways(text))) {
            EXPECT_EQ(hold(program, same).value, std::to_string(count));
            EXPECT_EQ(hold(program, same).asked.size(), same.size());
            EXPECT_EQ(hold(program, different).value, std::to_string(count - 1) + ".5f");
            EXPECT_EQ(hold(program, different).asked.size(), same.size());
        }
    }
}

TEST(FormulaQuestions, MayEndInAnException) {
    for (const formula_program& program : test_support::NotEmpty(all_ways("a+b"))) {
        const auto refuse = [](identifier_id id) -> std::optional<eval_value> {
            if (id == 'b') throw std::runtime_error("no");
            return eval_value::of(1.0);
        };
        EXPECT_THROW(static_cast<void>(evaluate_formula(program, refuse)), std::runtime_error);
    }
}

TEST(FormulaProgram, CanBeCopied) {
    for (const formula_program& program : test_support::NotEmpty(all_ways("a*2+1"))) {
        const formula_program copy = program;  // NOLINT(performance-unnecessary-copy-initialization)
        EXPECT_EQ(hold(copy, {answer(std::int64_t{3})}).value, "7");
        EXPECT_EQ(hold(program, {answer(3.5)}).value, "8f");
        EXPECT_EQ(copy.specialised, program.specialised);
    }
}

}  // namespace
