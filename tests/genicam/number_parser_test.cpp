#include "genicam/core/number_parser.h"

#include "tests/support/decimal_comma.h"
#ifndef _WIN32
#include "tests/support/plain_number.h"
#endif

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace {

using namespace GenICam;

struct int_case {
    std::string_view text;
    std::size_t consumed;
    std::int64_t number;
};

TEST(ParseInt, ReadsWhatStandsThere) {
    const int_case cases[] = {
        {"0", 1, 0},
        {"5", 1, 5},
        {"12abc", 2, 12},
        {" -5", 3, -5},
        {"--5", 3, 5},
        {" +-7", 4, -7},
        {"- \t\n\v\f\r+-+-8", 12, -8},
        {"0x10", 4, 16},
        {"0X1f", 4, 31},
        {"-0xFf", 5, -255},
        {"0x1g", 3, 1},
        {"0x", 1, 0},  // too short for a prefix, so that the x ends the digits
        {"0x1", 3, 1},
        {"00x1", 2, 0},
        {"1.5", 1, 1},
        {"1e3", 1, 1},
        {"9223372036854775807", 19, std::numeric_limits<std::int64_t>::max()},
        {"-9223372036854775808", 20, std::numeric_limits<std::int64_t>::min()},
        {"18446744073709551615", 20, -1},
        {"99999999999999999999", 20, 7766279631452241919},
        {"0xFFFFFFFFFFFFFFFF", 18, -1},
        {"0x1FFFFFFFFFFFFFFFF", 19, -1},
        {"7 ", 1, 7},
    };
    for (const int_case& one : cases) {
        std::int64_t number = 4711;
        EXPECT_EQ(parse_int(one.text, number), one.consumed) << one.text;
        EXPECT_EQ(number, one.number) << one.text;
    }
}

TEST(ParseInt, FailsWithoutADigitAndLeavesTheNumber) {
    for (const std::string_view text : {"", " ", "-", "+", "abc", "x10", ".5", "0xg", "-0xG1", "#1",
                                        "\xA0"
                                        "1"}) {
        std::int64_t number = 4711;
        EXPECT_EQ(parse_int(text, number), 0U) << text;
        EXPECT_EQ(number, 4711) << text;
    }
}

TEST(ParseHex, ReadsDigitsWithoutPrefix) {
    const struct {
        std::string_view text;
        std::size_t consumed;
        std::uint64_t number;
    } cases[] = {
        {"1A2B", 4, 0x1A2B},
        {"ff", 2, 0xFF},
        {"0x10", 1, 0},
        {"-1", 2, 0xFFFFFFFFFFFFFFFF},
        {" + a", 4, 10},
        {"FFFFFFFFFFFFFFFF", 16, 0xFFFFFFFFFFFFFFFF},
        {"1FFFFFFFFFFFFFFFF", 17, 0xFFFFFFFFFFFFFFFF},
        {"12 34", 2, 0x12},
    };
    for (const auto& one : cases) {
        std::uint64_t number = 4711;
        EXPECT_EQ(parse_hex(one.text, number), one.consumed) << one.text;
        EXPECT_EQ(number, one.number) << one.text;
    }
    for (const std::string_view text : {"", " ", "xyz", "-", "g1"}) {
        std::uint64_t number = 4711;
        EXPECT_EQ(parse_hex(text, number), 0U) << text;
        EXPECT_EQ(number, 4711U);
    }
}

const struct {
    std::string_view text;
    std::size_t consumed;
    double number;
} double_cases[] = {
    {"1.5", 3, 1.5},
    {"  -2.25e2x", 9, -225.0},
    {"+.5", 3, 0.5},
    {"5.", 2, 5.0},
    {"1e", 1, 1.0},
    {"1e+", 1, 1.0},
    {"0x10", 4, 16.0},
    {"0x1.8p1", 7, 3.0},
    {"0xg", 1, 0.0},
    {"0x-5", 1, 0.0},
    {"0xinf", 1, 0.0},
    {"0xnan", 1, 0.0},
    {"-0x-8", 2, -0.0},
    {"0x1.8p+-3", 5, 1.5},
    {"0x.", 1, 0.0},
    {"0x.8", 4, 0.5},
    {"0x1.", 4, 1.0},
    {"0x1p", 3, 1.0},
    {"0x1p-", 3, 1.0},
    {"inf", 3, HUGE_VAL},
    {"-Infinity", 9, -HUGE_VAL},
    {"1e400", 5, HUGE_VAL},
    {"-1e400", 6, -HUGE_VAL},
    {"1e-400", 6, 0.0},
    {"4.9406564584124654e-324", 23, 4.9406564584124654e-324},
    {"1,5", 1, 1.0},
    {"2.2250738585072014e-308", 23, 2.2250738585072014e-308},
    {"1.7976931348623157e308", 22, 1.7976931348623157e308},
    {"0.1", 3, 0.1},
};

void expect_double_cases() {
    for (const auto& one : double_cases) {
        double number = 4711;
        EXPECT_EQ(parse_double(one.text, number), one.consumed) << one.text;
        EXPECT_EQ(number, one.number) << one.text;
    }
}

TEST(ParseDouble, ReadsAsTheCLibraryInTheCLocale) { expect_double_cases(); }

TEST(ParseDouble, DoesNotFollowTheLocaleOfTheProcess) {
    const test_support::DecimalComma comma;
    if (!comma.Active()) GTEST_SKIP() << "no locale with a decimal comma on this machine";
    expect_double_cases();
}

TEST(ParseDouble, ReadsNaNAndSignedZero) {
    double number = 0;
    EXPECT_EQ(parse_double("nan", number), 3U);
    EXPECT_TRUE(std::isnan(number));
    EXPECT_EQ(parse_double("-0.0", number), 4U);
    EXPECT_TRUE(std::signbit(number));
}

// Beyond the range of doubles it counts where the first digit stands, and not the sign of the exponent.
TEST(ParseDouble, TellsTooLargeFromTooSmall) {
    const std::string zeros(400, '0');
    const struct {
        std::string text;
        double number;
    } cases[] = {
        {"1" + zeros, HUGE_VAL},
        {"1" + zeros + "e-5", HUGE_VAL},
        {"1" + zeros + ".5e+5", HUGE_VAL},
        {"-00" + zeros + "1e999", -HUGE_VAL},
        {"1" + zeros + "e-400", 1.0},
        {"0." + zeros + "1", 0.0},
        {"." + zeros + "1e5", 0.0},
        {"0." + zeros + "1e9999", HUGE_VAL},
        {"1e99999999999999999999", HUGE_VAL},
        {"1e-99999999999999999999", 0.0},
        {"0x0." + zeros + "1p9", 0.0},
        {"0x1" + zeros + "p-9", HUGE_VAL},
        {"0x1p-1075", 0.0},
        {"0x0.1p+9999", HUGE_VAL},
    };
    for (const auto& one : cases) {
        double number = 4711;
        EXPECT_EQ(parse_double(one.text, number), one.text.size()) << one.text;
        EXPECT_EQ(number, one.number) << one.text;
    }
}

#ifndef _WIN32  // where the C library takes other texts

std::uint64_t bits_of(double number) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

// Texts of the characters that numbers are made of, most of them behind a prefix.
TEST(ParseDouble, ReadsAMillionTextsAsTheCLibrary) {
    constexpr std::string_view pieces[] = {"0",  "1",  "8",  "f",  "A",  "00",   "10",  ".",   ".",    "p",
                                           "P",  "e",  "+",  "-",  "p+", "p-",   "p+-", "inf", "nan",  "x",
                                           "0x", "0X", "e9", "p9", "99", "1074", "fff", "INF", "nan(", ")"};
    constexpr std::string_view starts[] = {"0x", "0X", "-0x", "+0x", " 0x", "0x.", "0x0.", "", "-", "0x1.8p"};
    std::mt19937 random(20261121);
    std::size_t differences = 0;
    for (int round = 0; round < 1500000 && differences < 20; ++round) {
        std::string text(starts[random() % std::size(starts)]);
        for (auto more = random() % 7; more > 0; --more) text += pieces[random() % std::size(pieces)];
        char* end = nullptr;
        const double expected = test_support::plain_strtod(text.c_str(), &end);
        const auto consumed = static_cast<std::size_t>(end - text.c_str());
        double number = 0;
        const bool is_same = parse_double(text, number) == consumed &&
                             (consumed == 0 || bits_of(number) == bits_of(expected) ||
                              (std::isnan(number) && std::isnan(expected)));
        if (is_same) continue;
        ++differences;
        ADD_FAILURE() << '"' << text << "\" is " << expected << " in " << consumed << " characters";
    }
}

#endif

TEST(ParseDouble, FailsWithoutANumber) {
    for (const std::string_view text : {"", " ", "x", "+-1", "--1", ".", "e5", "-"}) {
        double number = 4711;
        EXPECT_EQ(parse_double(text, number), 0U) << text;
        EXPECT_EQ(number, 4711) << text;
    }
}

TEST(ParseDouble, ReadsAViewThatGoesOnBehindItsEnd) {
    const std::string_view text = "12345";
    double number = 0;
    EXPECT_EQ(parse_double(text.substr(1, 2), number), 2U);
    EXPECT_EQ(number, 23.0);
}

TEST(ParseNumber, ChoosesTheKind) {
    const struct {
        std::string_view text;
        std::size_t consumed;
        bool is_integer;
        double number;
    } cases[] = {
        {"12", 2, true, 12},     {"12x", 2, true, 12}, {"0x10", 4, true, 16},  {"1e3", 3, false, 1000},
        {"1E3", 3, false, 1000}, {"2.", 2, false, 2},  {"1.5", 3, false, 1.5}, {"-1.5", 4, false, -1.5},
        {"1e", 1, false, 1},     {"7 .5", 1, true, 7}, {"0x1e", 4, true, 30},
    };
    for (const auto& one : cases) {
        eval_value number;
        EXPECT_EQ(parse_number(one.text, number), one.consumed) << one.text;
        EXPECT_EQ(number.is_integer, one.is_integer) << one.text;
        EXPECT_EQ(to_double(number), one.number) << one.text;
    }
    for (const std::string_view text : {"", ".5", "x", "0xg"}) {
        eval_value number;
        EXPECT_EQ(parse_number(text, number), 0U) << text;
    }
}

// Two signs are no start of a number for the float parser, although the integer parser takes them.
TEST(ParseNumber, AFloatWithTwoSignsFails) {
    eval_value number;
    EXPECT_EQ(parse_number("--1.5", number), 0U);
}

TEST(EvalValue, RoundsHalfAwayFromZeroAndTruncates) {
    EXPECT_EQ(round_to_int(2.5), 3);
    EXPECT_EQ(round_to_int(-2.5), -3);
    EXPECT_EQ(round_to_int(2.4), 2);
    EXPECT_EQ(truncate_to_int(2.9), 2);
    EXPECT_EQ(truncate_to_int(-2.9), -2);
    constexpr std::int64_t out_of_range = std::numeric_limits<std::int64_t>::min();
    for (const double number : {1e19, -1e19, 9223372036854775808.0, HUGE_VAL, -HUGE_VAL, std::nan("")}) {
        EXPECT_EQ(truncate_to_int(number), out_of_range);
        EXPECT_EQ(round_to_int(number), out_of_range);
    }
    EXPECT_EQ(truncate_to_int(-9223372036854775808.0), out_of_range);
    EXPECT_EQ(truncate_to_int(9223372036854774784.0), 9223372036854774784);
}

TEST(EvalValue, KeepsIntegersExact) {
    constexpr std::int64_t beyond_double = 9007199254740993;
    EXPECT_EQ(to_int(eval_value::of(beyond_double)), beyond_double);
    EXPECT_EQ(to_int(eval_value::of(1.5)), 2);
    EXPECT_EQ(to_double(eval_value::of(std::int64_t{3})), 3.0);
}

}  // namespace
