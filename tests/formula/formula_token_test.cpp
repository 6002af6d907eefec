#include "formula/formula_token.h"

#include "tests/formula/formula_test_support.h"

#include <gtest/gtest.h>

using namespace GenICam;
using formula_test::show;

namespace {

struct fixed_token {
    const char* text;
    int kind;
};

// Stated apart from the product's table: these numbers and texts must not move.
constexpr fixed_token fixed_tokens[] = {
    {"~", 0},   {"+", 2},   {"-", 3},  {"*", 4},   {"/", 5},   {"%", 6},   {"**", 7}, {">", 8},  {">=", 9},
    {"<", 10},  {"<=", 11}, {"=", 12}, {"<>", 13}, {"&&", 14}, {"||", 15}, {"&", 16}, {"|", 17}, {"^", 18},
    {">>", 19}, {"<<", 20}, {"(", 24}, {")", 25},  {"?", 26},  {":", 27},  {",", 28},
};

TEST(FormulaToken, EveryFixedTextHasItsKind) {
    for (const fixed_token& expected : fixed_tokens) {
        const std::string text = std::string(" \t") + expected.text + " rest";
        const formula_token token = next_token(text);
        EXPECT_EQ(static_cast<int>(token.kind), expected.kind) << expected.text;
        EXPECT_EQ(token.rest, " rest") << expected.text;
        EXPECT_EQ(token.status, parse_status::none) << expected.text;
    }
}

TEST(FormulaToken, FixedTextAtTheVeryEnd) {
    for (const fixed_token& expected : fixed_tokens) {
        const formula_token token = next_token(expected.text);
        EXPECT_EQ(static_cast<int>(token.kind), expected.kind) << expected.text;
        EXPECT_EQ(token.rest, "") << expected.text;
    }
}

TEST(FormulaToken, TwoCharactersGoBeforeOne) {
    EXPECT_EQ(next_token("***").rest, "*");
    EXPECT_EQ(next_token("*****").kind, token_kind::power);
    EXPECT_EQ(next_token("<<=").rest, "=");
    EXPECT_EQ(next_token("<=>").kind, token_kind::less_equal);
    EXPECT_EQ(next_token("> =").kind, token_kind::greater);
    EXPECT_EQ(next_token("==").kind, token_kind::equal);
    EXPECT_EQ(next_token("==").rest, "=");
    EXPECT_EQ(next_token("&&&").rest, "&");
}

TEST(FormulaToken, NoTextHasNoOperation) { EXPECT_EQ(match_operation({}), nullptr); }

TEST(FormulaToken, EndOfText) {
    for (const char* text : {"", " ", "\t\n\v\f\r "}) {
        const formula_token token = next_token(text);
        EXPECT_EQ(token.kind, token_kind::end);
        EXPECT_EQ(token.status, parse_status::end_of_text);
        EXPECT_EQ(token.rest, "");
    }
}

TEST(FormulaToken, CharactersThatBeginNothing) {
    for (const char* text :
         {"!", "!=1", "$", "@x", "\"", "'", "[", "]", "{", "}", ";", "\\", "#", "`", "\x01", "\x7F"}) {
        const formula_token token = next_token(std::string("  ") + text);
        EXPECT_EQ(token.kind, token_kind::end) << text;
        EXPECT_EQ(token.status, parse_status::invalid_token) << text;
    }
    EXPECT_EQ(next_token("  $ 1").rest, "$ 1");
}

TEST(FormulaToken, NonAsciiBytesBeginNothing) {
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        const char text[] = {static_cast<char>(byte), 'a'};
        const formula_token token = next_token({text, 2});
        EXPECT_EQ(token.status, parse_status::invalid_token) << byte;
        const char name[] = {'a', static_cast<char>(byte)};
        EXPECT_EQ(next_token({name, 2}).text, "a") << byte;
    }
}

TEST(FormulaToken, NulIsACharacterLikeAnyOther) {
    const std::string_view text("\0 1", 3);
    EXPECT_EQ(next_token(text).status, parse_status::invalid_token);
    EXPECT_EQ(next_token(text).rest.size(), 3U);
}

struct number_case {
    const char* text;
    const char* number;
    const char* rest;
};

TEST(FormulaToken, Numbers) {
    constexpr number_case cases[] = {
        {"12", "12", ""},
        {"0", "0", ""},
        {"007", "7", ""},
        {"0x1F", "31", ""},
        {"0X1f+", "31", "+"},
        {"0xFFFFFFFFFFFFFFFF", "-1", ""},
        {"0x8000000000000000", "-9223372036854775808", ""},
        {"0x10000000000000001", "1", ""},
        {"9223372036854775807", "9223372036854775807", ""},
        {"9223372036854775808", "-9223372036854775808", ""},
        {"18446744073709551617", "1", ""},
        {"1e3", "1000f", ""},
        {"1E3", "1000f", ""},
        {"2.", "2f", ""},
        {"2.5", "2.5f", ""},
        {"2.5.5", "2.5f", ".5"},
        {"1e-3x", "0.001f", "x"},
        {"1e+3", "1000f", ""},
        {"1e", "1f", "e"},
        {"1e+", "1f", "e+"},
        {"3.E2", "300f", ""},
        {"1e999", "inff", ""},
        {"12abc", "12", "abc"},
        {"1 2", "1", " 2"},
        {"0x", "0", "x"},
        {"0x1.8", "1.5f", ""},
        {"0x1.8p+1 ", "3f", " "},
        {"1,5", "1", ",5"},
        {"9007199254740993", "9007199254740993", ""},
    };
    for (const number_case& expected : cases) {
        const formula_token token = next_token(expected.text);
        ASSERT_EQ(token.kind, token_kind::number) << expected.text;
        EXPECT_EQ(show(token.number), expected.number) << expected.text;
        EXPECT_EQ(token.rest, expected.rest) << expected.text;
    }
}

TEST(FormulaToken, AHexadecimalPrefixWithoutDigitsIsNoNumber) {
    for (const char* text : {"0xG", "0x ", "0x)", "0x+1", "0X.5"}) {
        const formula_token token = next_token(text);
        EXPECT_EQ(token.kind, token_kind::end) << text;
        EXPECT_EQ(token.status, parse_status::invalid_token) << text;
        EXPECT_EQ(token.rest, text);
    }
}

TEST(FormulaToken, Names) {
    const formula_token plain = next_token(" Gain.Min + 1");
    EXPECT_EQ(plain.kind, token_kind::identifier);
    EXPECT_EQ(plain.text, "Gain.Min");
    EXPECT_EQ(plain.rest, "+ 1");

    EXPECT_EQ(next_token(".5").kind, token_kind::identifier);
    EXPECT_EQ(next_token(".5").text, ".5");
    EXPECT_EQ(next_token("..").text, "..");
    EXPECT_EQ(next_token("_a1.b_").text, "_a1.b_");
    EXPECT_EQ(next_token("a$").text, "a");
    EXPECT_EQ(next_token("a").rest, "");
    EXPECT_EQ(next_token(std::string_view("abc", 2)).text, "ab") << "and nothing behind the text";
    EXPECT_EQ(next_token(std::string_view("abc", 2)).rest, "");
}

TEST(FormulaToken, Functions) {
    for (const char* text : {"SIN(1)", "SIN (1)", "SIN\t\n (1)"}) {
        const formula_token token = next_token(text);
        EXPECT_EQ(token.kind, token_kind::function) << text;
        EXPECT_EQ(token.text, "SIN") << text;
        EXPECT_EQ(token.rest, "1)") << text;
    }
    EXPECT_EQ(next_token("x.y(").kind, token_kind::function);
    EXPECT_EQ(next_token("SIN)").kind, token_kind::identifier);
}

TEST(FormulaToken, StatusTexts) {
    constexpr const char* texts[] = {
        "",
        "End of file",
        "Invalid token found.",
        "Failed to map a variable name to a identifier_id",
        "Failed to map a function identifier to a actual function.",
        "",
        "Failed to find closing ')' or ','",
        "expected colon for tri-nary operator.",
        "Failed to find a ')'.",
        "Failed to find token after unary operator.",
        "Failed to find terminal symbol for factor.",
    };
    for (std::size_t status = 0; status < std::size(texts); ++status) {
        EXPECT_EQ(status_text(static_cast<parse_status>(status)), texts[status]) << status;
    }
    EXPECT_FALSE(status_text(parse_status::beyond_limits).empty());
}

}  // namespace
