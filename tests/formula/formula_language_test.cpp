// What docs/formula-language.md says of formulas is so.

#include "data_paths.h"
#include "tests/formula/formula_test_support.h"

#include <fstream>
#include <iterator>
#include <regex>

#include <gtest/gtest.h>

using namespace GenICam;
using namespace formula_test;

namespace {

std::string read_page() {
    std::ifstream in(SELVANE_SOURCE_DIR "/docs/formula-language.md", std::ios::binary);
    return std::regex_replace(std::string{std::istreambuf_iterator<char>(in), {}}, std::regex("\\\\\\|"),
                              "|");
}

std::vector<std::smatch> find_all(const std::string& text, const char* pattern) {
    const std::regex expression(pattern);
    return {std::sregex_iterator(text.begin(), text.end(), expression), std::sregex_iterator()};
}

// The page shows floats without a mark of their kind. Its FROM is an integer that holds 5.
std::string value_of_formula(const std::string& text) {
    formula_names names;
    names.add_variable("FROM", eval_value::of(std::int64_t{5}));
    std::string value = outcome(text, names);
    if (value.back() == 'f') value.pop_back();
    return value;
}

TEST(FormulaLanguagePage, ExamplesGiveWhatTheyAreSaidToGive) {
    const std::string page = read_page();
    const std::vector<std::smatch> examples = find_all(page, "`([^`]+)` is (-?[0-9]+(\\.[0-9]+)?)");
    EXPECT_GE(examples.size(), 11U);
    for (const std::smatch& example : examples)
        EXPECT_EQ(value_of_formula(example[1]), example[2]) << example[1];
}

TEST(FormulaLanguagePage, SurprisingFormulasAreReadAsToldThere) {
    formula_names names;
    for (const char* name : {"a", "b", "c"}) names.add_variable(name, eval_value::of(std::int64_t{1}));
    const std::string page = read_page();
    const std::vector<std::smatch> rows = find_all(page, "\n\\| `([^`]+)` \\| `([^`]+)` \\| ([-0-9]*) *\\|");
    EXPECT_EQ(rows.size(), 5U);
    for (const std::smatch& row : rows) {
        EXPECT_EQ(instructions(row.str(1), names), instructions(row.str(2), names)) << row.str(1);
        if (row.length(3) != 0) {
            EXPECT_EQ(outcome(row.str(1)), row.str(3)) << row.str(1);
        }
    }
}

TEST(FormulaLanguagePage, NamesEveryFunctionAndOperator) {
    const std::string page = read_page();
    for (const char* name : {"ATAN", "COS", "SIN", "TAN", "ABS", "EXP", "LN", "LG", "SQRT", "TRUNC", "FLOOR",
                             "CEIL", "ASIN", "ACOS", "SGN", "NEG"}) {
        EXPECT_NE(page.find(std::string("`") + name + "`"), std::string::npos) << name;
    }
    for (int kind = 0; kind < static_cast<int>(token_kind::number); ++kind) {
        const formula_operation* operation = operation_of(static_cast<token_kind>(kind));
        if (operation == nullptr) continue;
        EXPECT_NE(page.find("`" + std::string(operation->text) + "`"), std::string::npos) << operation->text;
    }
}

}  // namespace
