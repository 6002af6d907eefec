#include "propui/number_text.h"

#include "tests/support/decimal_comma.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>

namespace ZELPropUI {
namespace {

using limits = std::numeric_limits<std::int32_t>;
constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(FormatValue, PrintsDecimalsAndUnit) {
    EXPECT_EQ(FormatValue(0.5, 3, L"sec"), L"0.500 sec");
    EXPECT_EQ(FormatValue(0.5, 2, L"sec"), L"0.50 sec");
    EXPECT_EQ(FormatValue(-12.3456, 3, L"dB"), L"-12.346 dB");
    EXPECT_EQ(FormatValue(0, 3, L"\u00B5s"), L"0.000 \u00B5s");
}

TEST(FormatValue, KeepsTheBlankWithoutAUnit) { EXPECT_EQ(FormatValue(1.0, 3, L""), L"1.000 "); }

TEST(FormatValue, RoundsTheExactValue) {
    EXPECT_EQ(FormatValue(0.0625, 3, L""), L"0.062 ");
    EXPECT_EQ(FormatValue(0.1875, 3, L""), L"0.188 ");
    EXPECT_EQ(FormatValue(1.0005, 3, L""), L"1.000 ");
    EXPECT_EQ(FormatValue(-0.0001, 3, L""), L"-0.000 ");
}

TEST(FormatValue, LeavesAUnitWithoutRoomOut) {
    EXPECT_EQ(FormatValue(1.5, 3, L"micrometers a"), L"1.500 micrometers a");
    EXPECT_EQ(FormatValue(1.5, 3, L"micrometers a s"), L"1.500");
    EXPECT_EQ(FormatValue(1234567, 3, L"counts/"), L"1234567.000 counts/");
    EXPECT_EQ(FormatValue(1234567, 3, L"counts/s"), L"1234567.000");
    EXPECT_EQ(FormatValue(123456789012345.0, 3, L"Hz"), L"123456789012345.000");
    EXPECT_EQ(FormatValue(12345678901234.0, 3, L""), L"12345678901234.000 ");
    EXPECT_EQ(FormatValue(123456789012345.0, 3, L""), L"123456789012345.000");
}

TEST(FormatValue, CutsNoDigits) {
    EXPECT_EQ(FormatValue(1.5e20, 3, L"Hz"), L"150000000000000000000.000");
    EXPECT_EQ(FormatValue(-1e300, 3, L"Hz").size(), 306U);
}

TEST(FormatValue, LeavesAUnitOutThatWouldHideTheNumber) {
    EXPECT_EQ(FormatValue(5, 3, L"counts/s"), L"5.000 counts/s");
    EXPECT_EQ(FormatValue(5, 3, L"counts/s "), L"5.000") << "its end would be trimmed, and the slash left";
    EXPECT_EQ(FormatValue(5, 3, L"counts/\ns"), L"5.000") << "an edit holds one line";
    EXPECT_EQ(FormatValue(5, 3, L"dB "), L"5.000 dB ");
}

TEST(FormatValue, NamesWhatIsNoNumber) {
    EXPECT_EQ(FormatValue(infinity, 3, L"sec"), L"inf sec");
    EXPECT_EQ(FormatValue(-infinity, 3, L"sec"), L"-inf sec");
    EXPECT_EQ(FormatValue(std::numeric_limits<double>::quiet_NaN(), 3, L"sec"), L"nan sec");
}

TEST(FormatFraction, PrintsTheDenominator) {
    EXPECT_EQ(FormatFraction(100, L"sec"), L"1/100 sec");
    EXPECT_EQ(FormatFraction(limits::min(), L"sec"), L"1/-2147483648 sec");
    EXPECT_EQ(FormatFraction(limits::max(), L"seconds"), L"1/2147483647");
}

TEST(HasRoomForUnit, CountsTheCharactersOfAnEdit) {
    EXPECT_TRUE(HasRoomForUnit(1.5, L"micrometers a"));
    EXPECT_FALSE(HasRoomForUnit(1.5, L"micrometers a s"));
    EXPECT_FALSE(HasRoomForUnit(-1.5, L"micrometers a")) << "the sign takes room too";
    EXPECT_TRUE(HasRoomForUnit(12345678901234.0, L""));
    EXPECT_FALSE(HasRoomForUnit(1e300, L""));
    EXPECT_TRUE(HasRoomForUnit(infinity, L"sec"));
}

TEST(FormatLimit, PrintsTwoDecimalsCutToTheRoomOfAnEdit) {
    EXPECT_EQ(FormatLimit(0.5, L"sec"), L"0.50 sec");
    EXPECT_EQ(FormatLimit(1, L""), L"1.00 ");
    EXPECT_EQ(FormatLimit(1.5, L"micrometers a second"), L"1.50 micrometers a ");
    EXPECT_EQ(FormatLimit(-std::numeric_limits<double>::max(), L"Hz"), L"-179769313486231570");
}

TEST(FormatInteger, PrintsEveryNumberWhole) {
    EXPECT_EQ(FormatInteger(0), L"0");
    EXPECT_EQ(FormatInteger(-42), L"-42");
    EXPECT_EQ(FormatInteger(1000000000), L"1000000000");
    EXPECT_EQ(FormatInteger(limits::max()), L"2147483647");
    EXPECT_EQ(FormatInteger(limits::min()), L"-2147483648");
}

struct IntegerRow {
    const wchar_t* text;
    std::int32_t value;
};

TEST(ParseInteger, TakesWhatItWouldWrite) {
    constexpr IntegerRow rows[] = {
        {L"5", 5},
        {L"-3", -3},
        {L"0", 0},
        {L" 12\t\r\n", 12},
        {L"2147483647", limits::max()},
        {L"-2147483648", limits::min()},
    };
    for (const IntegerRow& row : rows) {
        std::int32_t value = 77;
        EXPECT_TRUE(ParseInteger(row.text, value)) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
}

TEST(ParseInteger, RefusesEveryOtherSpelling) {
    constexpr const wchar_t* rows[] = {
        L"+5",         L"007",
        L"1.5",        L"",
        L"  ",         L"-0",
        L"- 3",        L"--3",
        L"5 sec",      L"5.",
        L"0x10",       L"1e3",
        L"1 2",        L"1,000",
        L"2147483648", L"-2147483649",
        L"\uFF15",     L"99999999999999999999999",
    };
    for (const wchar_t* row : rows) {
        std::int32_t value = 77;
        EXPECT_FALSE(ParseInteger(row, value)) << row;
        EXPECT_EQ(value, 77) << row;
    }
    std::int32_t value = 77;
    EXPECT_FALSE(ParseInteger(std::wstring_view(L"5\0", 2), value));
}

struct FloatRow {
    const wchar_t* text;
    double value;
};

constexpr FloatRow float_rows[] = {
    {L"0.5", 0.5},  {L"0,5", 0.5},  {L" 3 ", 3.0}, {L"12abc", 12.0}, {L"1e3", 1000.0},
    {L"12e", 12.0}, {L"-.5", -0.5}, {L"+5", 5.0},  {L"1.2.3", 1.2},  {L"1,2,3", 1.2},
    {L"7 8", 7.0},  {L"5.", 5.0},   {L"007", 7.0}, {L"2\u00B5s", 2}, {L"1e999", infinity},
};

void ExpectFloatRows() {
    for (const FloatRow& row : float_rows) {
        double value = 77;
        EXPECT_TRUE(ParseFloat(row.text, value)) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
}

TEST(ParseFloat, ReadsTheNumberInFront) { ExpectFloatRows(); }

TEST(ParseFloat, RefusesATextWithoutOne) {
    for (const wchar_t* row : {L"", L"  ", L"abc", L"-", L".", L",", L"-,", L"e5", L"\uFF15", L"/5"}) {
        double value = 77;
        EXPECT_FALSE(ParseFloat(row, value)) << row;
        EXPECT_EQ(value, 77) << row;
    }
}

struct ValueRow {
    const wchar_t* text;
    const wchar_t* unit;
    double value;
};

TEST(ParseValue, TakesNumbersAndFractionsWithOrWithoutUnit) {
    constexpr ValueRow rows[] = {
        {L"0.25 sec", L"sec", 0.25},
        {L"0.25sec", L"sec", 0.25},
        {L"  0.25 sec  ", L"sec", 0.25},
        {L"0.25", L"sec", 0.25},
        {L"0,5", L"sec", 0.5},
        {L"12abc", L"sec", 12},
        {L"5 sec sec", L"sec", 5},
        {L"5 ms", L"sec", 5},
        {L"5 Sec", L"sec", 5},
        {L"1/1000 sec", L"sec", 0.001},
        {L"1/1000sec", L"sec", 0.001},
        {L" 1 / 4 ", L"sec", 0.25},
        {L"-1/4", L"", -0.25},
        {L"3/-4", L"", -0.75},
        {L"1/2147483647", L"", 1.0 / 2147483647.0},
        {L"5 1/s", L"1/s", 5},
        {L"50%", L"%", 50},
        {L"7", L"a unit longer than the text", 7},
    };
    for (const ValueRow& row : rows) {
        double value = 77;
        EXPECT_TRUE(ParseValue(row.text, row.unit, value)) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
}

TEST(ParseValue, RefusesWhatIsNeither) {
    constexpr const wchar_t* rows[] = {
        L"",       L"sec",   L"abc",     L"1/0",       L"1/2.5", L"1.0/2",        L"1/",
        L"/4",     L"/",     L"1/2/4",   L"1/100 Sec", L"+1/4",  L"1/04",         L"0/0",
        L"1/0sec", L"1,0/2", L"1/2 1/4", L"1/4 s",     L"a/b",   L"1/2147483648",
    };
    for (const wchar_t* row : rows) {
        double value = 77;
        EXPECT_FALSE(ParseValue(row, L"sec", value)) << row;
        EXPECT_EQ(value, 77) << row;
    }
}

TEST(NumberText, DoesNotFollowTheLocale) {
    const test_support::DecimalComma comma;
    if (!comma.Active()) GTEST_SKIP() << "this machine has no locale with a decimal comma";
    char shown[8];
    std::snprintf(shown, sizeof shown, "%.1f", 0.5);
    ASSERT_STREQ(shown, "0,5");

    EXPECT_EQ(FormatValue(1234.5, 3, L"sec"), L"1234.500 sec");
    EXPECT_EQ(FormatFraction(10000, L"sec"), L"1/10000 sec");
    EXPECT_EQ(FormatLimit(1234.5, L"sec"), L"1234.50 sec");
    EXPECT_EQ(FormatInteger(1234567), L"1234567");
    ExpectFloatRows();
}

}  // namespace
}  // namespace ZELPropUI
