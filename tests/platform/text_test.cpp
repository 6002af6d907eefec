#include "platform/text.h"

#include <gtest/gtest.h>

namespace {

using platform::format_guid;
using platform::narrow;
using platform::parse_guid;
using platform::widen;

TEST(Widen, TextOfEveryLength) {
    EXPECT_EQ(widen(""), L"");
    EXPECT_EQ(widen("Gain"), L"Gain");
    EXPECT_EQ(widen("\xC2\xB5s"), L"\u00B5s");
    EXPECT_EQ(widen("\xE2\x82\xAC"), L"\u20AC");
    EXPECT_EQ(widen("\xF0\x9F\x93\xB7"), L"\U0001F4F7");
    EXPECT_EQ(widen(std::string_view("a\0b", 3)), std::wstring(L"a\0b", 3));
}

TEST(Widen, BadSequencesAreReplaced) {
    for (const char* text :
         {"\x80", "a\xFF", "\xC2", "\xC0\x80", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\xE2\x82"}) {
        EXPECT_NE(widen(text).find(L'\xFFFD'), std::wstring::npos) << text;
    }
    EXPECT_EQ(widen("\xC2"
                    "A")
                  .back(),
              L'A')
        << "what follows a bad sequence is kept";
}

TEST(Narrow, IsTheWayBack) {
    for (const char* text : {"", "Gain", "\xC2\xB5s", "\xE2\x82\xAC", "\xF0\x9F\x93\xB7", "\xF1\x80\x80\x80",
                             // The first and the last character of each length.
                             "\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xEF\xBF\xBF",
                             "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_EQ(narrow(widen(text)), text);
    }
}

TEST(Guid, ReadsTheBracedFormOnly) {
    constexpr GUID expected = {0x90D5702E, 0xE43B, 0x4366, {0xAA, 0xEB, 0x7A, 0x7A, 0x10, 0xB4, 0x48, 0xB4}};
    GUID guid{};
    EXPECT_TRUE(parse_guid(L"{90D5702E-E43B-4366-AAEB-7A7A10B448B4}", guid));
    EXPECT_TRUE(guid == expected);
    EXPECT_TRUE(parse_guid(L"{90d5702e-e43b-4366-aaeb-7a7a10b448b4}", guid));
    EXPECT_TRUE(guid == expected);
    EXPECT_EQ(format_guid(expected), L"{90D5702E-E43B-4366-AAEB-7A7A10B448B4}");
}

TEST(Guid, EverythingElseIsTheZeroGuid) {
    const wchar_t* const texts[] = {L"",
                                    L"90D5702E-E43B-4366-AAEB-7A7A10B448B4",
                                    L"{90D5702E-E43B-4366-AAEB-7A7A10B448B4",
                                    L"{90D5702E-E43B-4366-AAEB-7A7A10B448B4} ",
                                    L" {90D5702E-E43B-4366-AAEB-7A7A10B448B4}",
                                    L"{90D5702EE43B-4366-AAEB-7A7A10B448B4-}",
                                    L"{90D5702G-E43B-4366-AAEB-7A7A10B448B4}",
                                    L"(90D5702E-E43B-4366-AAEB-7A7A10B448B4)",
                                    L"{90D5702E-E43B-4366-AAEB-7A7A10B448B}"};
    for (const wchar_t* text : texts) {
        GUID guid = {1, 2, 3, {4}};
        EXPECT_FALSE(parse_guid(text, guid));
        EXPECT_TRUE(guid == GUID{});
    }
    for (const wchar_t behind : {L'\0', L'0', L'}'}) {
        GUID guid{};
        EXPECT_FALSE(parse_guid(std::wstring(L"{90D5702E-E43B-4366-AAEB-7A7A10B448B4}") + behind, guid));
    }
    for (const wchar_t near_digits : {L'/', L':', L'@', L'G', L'`', L'g', L'\x130'}) {
        GUID guid{};
        std::wstring text = L"{90D5702E-E43B-4366-AAEB-7A7A10B448B4}";
        text[36] = near_digits;
        EXPECT_FALSE(parse_guid(text, guid)) << static_cast<int>(near_digits);
    }
}

}  // namespace
