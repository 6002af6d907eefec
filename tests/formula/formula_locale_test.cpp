#include "tests/formula/formula_test_support.h"
#include "tests/support/decimal_comma.h"

#include <clocale>

#include <gtest/gtest.h>

using namespace formula_test;

namespace {

TEST(FormulaLocale, ADecimalCommaChangesNothing) {
    const test_support::DecimalComma locale;
    if (!locale.Active()) GTEST_SKIP() << "no locale with a decimal comma is installed";
    EXPECT_EQ(outcome("1.5 + 1"), "2.5f");
    EXPECT_EQ(outcome("1e-3"), "0.001f");
    EXPECT_EQ(outcome("ROUND(1.25, 1)"), "1.3f");
    EXPECT_EQ(outcome("ROUND(1,25, 1)"), "parse: Failed to map a function identifier to a actual function.");
    EXPECT_EQ(instructions("2,5"), "2");
}

TEST(FormulaLocale, WhiteSpaceAndLettersAreThoseOfTheCLocale) {
    const char* set = std::setlocale(LC_ALL, "de_DE.ISO-8859-1");
    if (set == nullptr) set = std::setlocale(LC_ALL, "German_Germany.1252");
    if (set == nullptr) GTEST_SKIP() << "no locale with 8-bit letters is installed";
    EXPECT_EQ(outcome("\xE4"), "parse: Invalid token found.");
    EXPECT_EQ(outcome("\xA0\x31"), "parse: Invalid token found.");
    std::setlocale(LC_ALL, "C");
}

}  // namespace
