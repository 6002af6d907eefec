#include "platform/ascii.h"

#include <gtest/gtest.h>

namespace {

using platform::lower;
using platform::trimmed;

TEST(Trimmed, TakesAllWhiteSpaceAtBothEnds) {
    EXPECT_EQ(trimmed(std::wstring_view(L" \t\r\n\v\f a b \t\r\n\v\f")), L"a b");
    EXPECT_EQ(trimmed(std::string_view(" \t\r\n\v\f a b \t\r\n\v\f")), "a b");
    EXPECT_EQ(trimmed(std::string_view("a")), "a");
    EXPECT_EQ(trimmed(std::string_view(" \t ")), "");
    EXPECT_EQ(trimmed(std::string_view("")), "");
}

TEST(Trimmed, TakesTheGivenCharactersAlone) {
    using namespace std::string_view_literals;
    EXPECT_EQ(trimmed(" \n a \r"sv, " \r"sv), "\n a");
    EXPECT_EQ(trimmed("\r\r"sv, " \r"sv), "");
}

TEST(Lower, KnowsTheLettersOfEnglish) {
    EXPECT_EQ(lower("Az[@`{_09\xC3\x84"), "az[@`{_09\xC3\x84");
    EXPECT_EQ(lower(""), "");
}

}  // namespace
