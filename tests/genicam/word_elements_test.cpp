// Elements whose text is one of a few words, or a number with a default.

#include "tests/support/node_test.h"

namespace node_test {
namespace {

TestDocument integer_with(const std::string& children) {
    return TestDocument("<Integer Name='n'><Value>1</Value>" + children + "</Integer>");
}

TestDocument float_with(const std::string& children) {
    return TestDocument("<Float Name='n'><Value>1</Value>" + children + "</Float>");
}

TEST(WordElements, IntegerRepresentations) {
    const char* const words[] = {"Linear",    "Logarithmic", "Boolean",   "PureNumber",
                                 "HexNumber", "IPV4Address", "MACAddress"};
    for (int value = 0; value < 7; ++value) {
        TestDocument doc = integer_with(std::string("<Representation>") + words[value] + "</Representation>");
        EXPECT_EQ(static_cast<int>(doc.Integer("n").get_representation()), value);
    }
    for (const char* children : {"", "<Representation/>"}) {
        TestDocument doc = integer_with(children);
        EXPECT_EQ(doc.Integer("n").get_representation(), Representation::PureNumber);
        EXPECT_THAT(doc.log.Take(), IsEmpty());
    }
    TestDocument bad = integer_with("<Representation>linear</Representation>");
    EXPECT_EQ(bad.Integer("n").get_representation(), Representation::PureNumber);
    EXPECT_THAT(bad.log.Take(),
                ElementsAre("Invalid contents (\"linear\") of Integer \"Representation\" xml node.\n"));
}

TEST(WordElements, FloatRepresentations) {
    const char* const words[] = {"Linear", "Logarithmic", "PureNumber"};
    for (int value = 0; value < 3; ++value) {
        TestDocument doc = float_with(std::string("<Representation>") + words[value] + "</Representation>");
        EXPECT_EQ(static_cast<int>(doc.Float("n").get_representation()), value);
    }
    EXPECT_EQ(float_with("").Float("n").get_representation(), FloatRepresentation::PureNumber);
    TestDocument bad = float_with("<Representation>HexNumber</Representation>");
    EXPECT_EQ(bad.Float("n").get_representation(), FloatRepresentation::PureNumber);
    EXPECT_THAT(bad.log.Take(),
                ElementsAre("Invalid contents (\"HexNumber\") of Float \"Representation\" xml node.\n"));
}

TEST(WordElements, DisplayNotations) {
    const char* const words[] = {"Automatic", "Fixed", "Scientific"};
    for (int value = 0; value < 3; ++value) {
        TestDocument doc = float_with(std::string("<DisplayNotation>") + words[value] + "</DisplayNotation>");
        EXPECT_EQ(static_cast<int>(doc.Float("n").get_display_notation()), value);
    }
    EXPECT_EQ(float_with("<DisplayNotation/>").Float("n").get_display_notation(), DisplayNotation::Automatic);
    TestDocument bad = float_with("<DisplayNotation>fixed</DisplayNotation>");
    EXPECT_EQ(bad.Float("n").get_display_notation(), DisplayNotation::Automatic);
    EXPECT_THAT(bad.log.Take(),
                ElementsAre("Invalid contents (\"fixed\") of \"DisplayNotation\" xml node.\n"));
}

TEST(WordElements, DisplayPrecision) {
    EXPECT_EQ(float_with("<DisplayPrecision>3</DisplayPrecision>").Float("n").get_display_precision(), 3);
    EXPECT_EQ(float_with("<DisplayPrecision>-1</DisplayPrecision>").Float("n").get_display_precision(), -1);
    for (const char* children : {"", "<DisplayPrecision/>"}) {
        TestDocument doc = float_with(children);
        EXPECT_EQ(doc.Float("n").get_display_precision(), 6);
        EXPECT_THAT(doc.log.Take(), IsEmpty());
    }
    TestDocument bad = float_with("<DisplayPrecision>x</DisplayPrecision>");
    EXPECT_EQ(bad.Float("n").get_display_precision(), 6);
    EXPECT_THAT(bad.log.Take(), ElementsAre("Invalid contents (\"x\") of \"DisplayPrecision\" xml node.\n"));
}

TEST(WordElements, AccessModesOfRegisters) {
    for (const char* element : {"IntReg", "FloatReg", "MaskedIntReg", "Register", "StringReg"}) {
        const struct {
            const char* text;
            AccessMode mode;
        } rows[] = {
            {"RW", AccessMode::RW}, {"RO", AccessMode::RO}, {"WO", AccessMode::WO}, {"", AccessMode::RW}};
        const std::string start =
            std::string("<") + element + " Name='n'><Address>0</Address><Length>4</Length>";
        const std::string end = std::string("</") + element + ">";
        for (const auto& row : rows) {
            TestDocument doc(start + "<AccessMode>" + row.text + "</AccessMode>" + end);
            EXPECT_EQ(doc.Node("n").get_access_mode(), row.mode) << element << row.text;
            EXPECT_THAT(doc.load_messages, IsEmpty());
        }
        TestDocument bad(start + "<AccessMode>rw</AccessMode>" + end);
        EXPECT_EQ(bad.Node("n").get_access_mode(), AccessMode::RW);
        EXPECT_THAT(bad.load_messages, ElementsAre("Invalid contents of \"AccessMode\" node (\"rw\"\n"))
            << element;
    }
}

TEST(WordElements, PollingTimes) {
    const struct {
        const char* element;
        std::optional<std::int64_t> time;
    } rows[] = {
        {"", std::nullopt},
        {"<PollingTime/>", std::nullopt},
        {"<PollingTime>x</PollingTime>", std::nullopt},
        {"<PollingTime>-1</PollingTime>", std::nullopt},
        {"<PollingTime>0</PollingTime>", 0},
        {"<PollingTime>1000 ms</PollingTime>", 1000},
    };
    for (const auto& row : rows) {
        TestDocument doc(std::string("<Command Name='c'><Value>1</Value><CommandValue>1</CommandValue>") +
                         row.element + "</Command><Enumeration Name='e'><Value>1</Value>" + row.element +
                         "</Enumeration><Register Name='r'><Address>0</Address><Length>4</Length>" +
                         row.element + "</Register>");
        EXPECT_EQ(doc.Command("c").get_polling_time(), row.time) << row.element;
        EXPECT_EQ(doc.Enumeration("e").get_polling_time(), row.time) << row.element;
        EXPECT_EQ(doc.Register("r").get_polling_time(), row.time) << row.element;
        EXPECT_THAT(doc.log.Take(), IsEmpty());
    }
}

TEST(WordElements, Units) {
    EXPECT_EQ(integer_with("<Unit>&#xB5;s</Unit>").Integer("n").get_unit(), "\xC2\xB5s");
    EXPECT_EQ(integer_with("").Integer("n").get_unit(), "");
}

}  // namespace
}  // namespace node_test
