#include "platform/visible_text.h"

#include "platform/utf8.h"

#include <initializer_list>
#include <string>

#include <gtest/gtest.h>

namespace {

using platform::quoted_text;
using platform::visible_json;
using platform::visible_text;

std::string Utf8(char32_t character) {
    std::string text;
    platform::append_utf8(text, character);
    return text;
}

TEST(VisibleText, KeepsWhatIsMeantToBeRead) {
    for (const char* text : {"", "Gain", "a b", "\xC2\xB5s", "\xC2\xA0", "\xE2\x82\xAC", "\xF0\x9F\x93\xB7",
                             "\\x1B", "\"'", "\xD8\xA7\xD9\x84", "\xEF\xBF\xBD"}) {
        EXPECT_EQ(visible_text(text), text);
    }
}

TEST(VisibleText, EscapesEveryCharacterThatIsObeyed) {
    EXPECT_EQ(visible_text("\x1B[31mred\a"), "\\x1B[31mred\\x07");
    EXPECT_EQ(visible_text("one\r\ntwo\t\x7F"), "one\\x0D\\x0Atwo\\x09\\x7F");
    EXPECT_EQ(visible_text(std::string_view("a\0b", 3)), "a\\x00b");
    EXPECT_EQ(visible_text(Utf8(0x9B) + "31m" + Utf8(0x85)), "\\u009B31m\\u0085");
    EXPECT_EQ(visible_text(Utf8(0x2028) + Utf8(0x2029)), "\\u2028\\u2029");
    for (const char32_t mark :
         std::initializer_list<char32_t>{0x061C, 0x200E, 0x200F, 0x202A, 0x202B, 0x202C, 0x202D, 0x202E,
                                         0x2066, 0x2067, 0x2068, 0x2069}) {
        EXPECT_EQ(visible_text(Utf8(mark)).substr(0, 2), "\\u") << mark;
    }
    for (char32_t code = 0; code < 0x20; ++code) EXPECT_EQ(visible_text(Utf8(code)).size(), 4U) << code;
    for (char32_t code = 0x80; code < 0xA0; ++code) EXPECT_EQ(visible_text(Utf8(code)).size(), 6U) << code;
}

TEST(VisibleText, LeavesTheNeighboursAlone) {
    for (const char32_t code : std::initializer_list<char32_t>{0x20, 0x7E, 0xA0, 0x061B, 0x061D, 0x200D,
                                                               0x2010, 0x2027, 0x202F, 0x2065, 0x206A}) {
        EXPECT_EQ(visible_text(Utf8(code)), Utf8(code)) << code;
    }
}

TEST(VisibleText, ShowsBytesThatAreNoText) {
    EXPECT_EQ(visible_text("\x9B"
                           "a\xFF"),
              "\\x9B"
              "a\\xFF");
    EXPECT_EQ(visible_text("\xC2"), "\\xC2");
    EXPECT_EQ(visible_text("\xC0\x9B"), "\\xC0\\x9B");
    EXPECT_EQ(visible_text("\xED\xA0\x80"), "\\xED\\xA0\\x80");
}

TEST(VisibleText, StaysAsItIsTheSecondTime) {
    const std::string once = visible_text("a\n\x1B" + Utf8(0x202E) + "\xFF");
    EXPECT_EQ(visible_text(once), once);
}

TEST(QuotedText, MarksItsOwnEnds) {
    EXPECT_EQ(quoted_text(""), "\"\"");
    EXPECT_EQ(quoted_text("a\"b\\c\n"), "\"a\\\"b\\\\c\\x0A\"");
}

TEST(VisibleJson, LeavesBytesThatAreNoTextAsTheyAre) { EXPECT_EQ(visible_json("\"\xFF\""), "\"\xFF\""); }

TEST(VisibleJson, EscapesAsJsonDoes) {
    EXPECT_EQ(visible_json("{\n  \"a\": \"\x7F" + Utf8(0x9B) + Utf8(0x202E) + Utf8(0xB5) + "\"\n}"),
              "{\n  \"a\": \"\\u007F\\u009B\\u202E" + Utf8(0xB5) + "\"\n}");
}

}  // namespace
