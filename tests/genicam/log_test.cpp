#include "genicam/core/log.h"

#include "platform/debug_output.h"
#include "tests/support/test_document.h"

#include <gtest/gtest.h>

namespace {

using namespace GenICam;
using test_support::LogCapture;

class Log : public testing::Test {
protected:
    ~Log() override {
        log_threshold = 0;
        log_category_mask = 0;
    }

    LogCapture capture;
};

TEST(LogDefault, EverythingIsSilent) {
    EXPECT_EQ(log_threshold, 0U);
    EXPECT_EQ(log_category_mask, 0U);
    EXPECT_FALSE(log_enabled(1));
    EXPECT_FALSE(log_enabled(2));
}

TEST_F(Log, LevelIsComparedWithTheThreshold) {
    log_threshold = 1;
    EXPECT_TRUE(log_enabled(0));
    EXPECT_TRUE(log_enabled(1));
    EXPECT_FALSE(log_enabled(2));
    EXPECT_FALSE(log_enabled(0xFF));
}

TEST_F(Log, CategoriesMustShareABitWithTheMask) {
    log_threshold = 1;
    EXPECT_FALSE(log_enabled(0x00010001));
    log_category_mask = 0x00030000;
    EXPECT_TRUE(log_enabled(0x00010001));
    EXPECT_TRUE(log_enabled(0x00820001));
    EXPECT_FALSE(log_enabled(0x00800001));
    EXPECT_FALSE(log_enabled(0x00010002));
    EXPECT_TRUE(log_enabled(0x01000001)) << "the time stamp is no category";
}

TEST_F(Log, SixtyFourBitConversionsPrintSixtyFourBits) {
    log_message(1, "%lld %llu %I64d %I64u|", -9007199254740993LL, 18446744073709551615ULL,
                -9007199254740993LL, 18446744073709551615ULL);
    log_message(1, "%-5d%5I64d%%I64d\n", 1, 2LL);
    EXPECT_EQ(capture.Take(),
              (std::vector<std::string>{
                  "-9007199254740993 18446744073709551615 -9007199254740993 18446744073709551615|",
                  "1        2%I64d\n"}));
}

TEST_F(Log, ConversionsOfTheMessages) {
    log_message(1, "%s (\"%.*s\") %td\n", "Integer", 3, "Gain", std::ptrdiff_t{-12});
    const std::vector<std::string> messages = capture.Take();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0], "Integer (\"Gai\") -12\n");
}

TEST_F(Log, LongTextIsCut) {
    const std::string exact(511, 'a');
    const std::string longer(512, 'b');
    const std::string much_longer(100000, 'c');
    for (const std::string& text : {exact, longer, much_longer}) log_message(1, "%s", text.c_str());
    EXPECT_EQ(capture.Take(),
              (std::vector<std::string>{exact, longer.substr(0, 511), much_longer.substr(0, 511)}));
}

TEST_F(Log, AnEmptyResultPrintsNothing) {
    log_message(1, "%s", "");
    EXPECT_TRUE(capture.Take().empty());
    log_message(1 | log_time_stamp, "%s", "");
    EXPECT_TRUE(capture.Take().empty()) << "nor a time stamp";
}

TEST_F(Log, TimeStampStandsBeforeTheText) {
    log_message(1 | log_time_stamp, "%s", "text");
    const std::vector<std::string> messages = capture.Take();
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0].front(), '{');
    EXPECT_EQ(messages[0].substr(messages[0].size() - 4), "us} ");
    EXPECT_EQ(messages[0].find_first_not_of("0123456789", 1), messages[0].size() - 4);
    EXPECT_EQ(messages[1], "text");
}

}  // namespace
