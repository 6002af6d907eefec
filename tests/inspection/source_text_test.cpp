// The text of a file and where its characters are, whatever its encoding and line ends.

#include "inspection/source_text.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace {

using namespace std::string_view_literals;
using selvane_inspect::source_text;
using selvane_inspect::text_position;
using selvane_inspect::to_utf8;

void ExpectAt(const source_text& source, std::size_t offset, std::size_t line, std::size_t column) {
    const text_position at = source.position_of(offset);
    EXPECT_EQ(at.line, line) << "offset " << offset;
    EXPECT_EQ(at.column, column) << "offset " << offset;
}

TEST(SourceText, CountsLinesAndColumnsFromOne) {
    const source_text source("ab\ncd\n\ne");
    ExpectAt(source, 0, 1, 1);
    ExpectAt(source, 1, 1, 2);
    ExpectAt(source, 2, 1, 3);
    ExpectAt(source, 3, 2, 1);
    ExpectAt(source, 6, 3, 1);
    ExpectAt(source, 7, 4, 1);
}

TEST(SourceText, TakesAllKindsOfLineEnds) {
    const source_text windows("a\r\nb\r\nc");
    ExpectAt(windows, 3, 2, 1);
    ExpectAt(windows, 6, 3, 1);
    const source_text old("a\rb\rc");
    ExpectAt(old, 2, 2, 1);
    ExpectAt(old, 4, 3, 1);
    const source_text mixed("a\r\r\nb");
    ExpectAt(mixed, 4, 3, 1);
}

TEST(SourceText, CountsCharactersAndNotBytes) {
    const source_text source("\xC2\xB0\xE2\x82\xAC\xF0\x9F\x98\x80x");
    ExpectAt(source, 2, 1, 2);
    ExpectAt(source, 5, 1, 3);
    ExpectAt(source, 9, 1, 4);
}

TEST(SourceText, CountsInLinesOfAnyLength) {
    std::string text = "x\n";
    for (int at = 0; at < 2000; ++at) text += at % 3 == 0 ? "\xC2\xB0" : "a";
    text.resize(2048, 'b');
    const source_text source(text);
    std::size_t column = 1;
    for (std::size_t at = 2; at < text.size(); ++at) {
        if (text[at] == '\xB0') continue;
        ExpectAt(source, at, 2, column++);
    }
    ExpectAt(source, text.size(), 2, column);
    ExpectAt(source, text.size() + 100, 2, column);
}

TEST(SourceText, AByteOrderMarkIsNoCharacter) {
    const source_text source("\xEF\xBB\xBF<a/>\n<b/>");
    ExpectAt(source, 3, 1, 1);
    ExpectAt(source, 4, 1, 2);
    ExpectAt(source, 8, 2, 1);
    EXPECT_EQ(source.bytes().size(), source.utf8().size());
}

TEST(TextEncoding, LeavesUtf8Alone) {
    EXPECT_EQ(to_utf8(""), "");
    EXPECT_EQ(to_utf8("<a"), "<a");
    EXPECT_EQ(to_utf8("<a>\xC2\xB0</a>"), "<a>\xC2\xB0</a>");
    EXPECT_EQ(to_utf8("\xEF\xBB\xBF<a/>"), "\xEF\xBB\xBF<a/>");
}

TEST(TextEncoding, ReadsUtf16WithAndWithoutMark) {
    EXPECT_EQ(to_utf8("\xFF\xFE<\0a\0>\0"sv), "\xEF\xBB\xBF<a>");
    EXPECT_EQ(to_utf8("\xFE\xFF\0<\0a\0>"sv), "\xEF\xBB\xBF<a>");
    EXPECT_EQ(to_utf8("<\0?\0x\0"sv), "<?x");
    EXPECT_EQ(to_utf8("\0<\0?\0x"sv), "<?x");
}

TEST(TextEncoding, TakesFourBytesToBeTold) {
    EXPECT_EQ(to_utf8("\xFF\xFE<\0"sv), "\xEF\xBB\xBF<");
    EXPECT_EQ(to_utf8("\xFF\xFE<"sv), "\xFF\xFE<");
}

TEST(TextEncoding, ReadsPairsOfUtf16AndDropsHalfOnes) {
    EXPECT_EQ(to_utf8("<\0\x3D\xD8\x00\xDE>\0"sv), "<\xF0\x9F\x98\x80>");
    EXPECT_EQ(to_utf8("<\0\x3D\xD8>\0"sv), "<>");
    EXPECT_EQ(to_utf8("<\0\x00\xDE>\0"sv), "<>");
    EXPECT_EQ(to_utf8("<\0>\0\x3D\xD8"sv), "<>");
}

TEST(TextEncoding, ReadsUtf32) {
    EXPECT_EQ(to_utf8("\xFF\xFE\0\0<\0\0\0\xB0\0\0\0"sv), "\xEF\xBB\xBF<\xC2\xB0");
    EXPECT_EQ(to_utf8("\0\0\xFE\xFF\0\0\0<\0\0\0\xB0"sv), "\xEF\xBB\xBF<\xC2\xB0");
    EXPECT_EQ(to_utf8("<\0\0\0a\0\0\0"sv), "<a");
    EXPECT_EQ(to_utf8("\0\0\0<\0\0\0a"sv), "<a");
}

TEST(TextEncoding, ReadsLatin1WhereTheDeclarationSaysSo) {
    EXPECT_EQ(to_utf8("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xB0</a>"),
              "<?xml version='1.0' encoding='ISO-8859-1'?><a>\xC2\xB0</a>");
    EXPECT_EQ(to_utf8("<?xml encoding=\"latin1\"?>\xE9"), "<?xml encoding=\"latin1\"?>\xC3\xA9");
    EXPECT_EQ(to_utf8("<?xml encoding=\"utf-8\"?>\xE9"), "<?xml encoding=\"utf-8\"?>\xE9");
    EXPECT_EQ(to_utf8("<?xml encoding=latin1?>\xE9"), "<?xml encoding=latin1?>\xE9");
}

}  // namespace
