#include "tests/formula/formula_test_support.h"

#include <clocale>

#include <gtest/gtest.h>

using namespace formula_test;

namespace {

class decimal_comma {
public:
    decimal_comma() {
        for (const char* name :
             {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "German_Germany.1252", "de-DE"}) {
            if (std::setlocale(LC_ALL, name) != nullptr && *std::localeconv()->decimal_point == ',') return;
        }
        is_set_ = false;
    }
    ~decimal_comma() { std::setlocale(LC_ALL, "C"); }
    decimal_comma(const decimal_comma&) = delete;
    decimal_comma& operator=(const decimal_comma&) = delete;
    [[nodiscard]] bool is_set() const { return is_set_; }

private:
    bool is_set_ = true;
};

TEST(FormulaLocale, ADecimalCommaChangesNothing) {
    const decimal_comma locale;
    if (!locale.is_set()) GTEST_SKIP() << "no locale with a decimal comma is installed";
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
