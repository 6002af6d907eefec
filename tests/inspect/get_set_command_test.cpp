// selvane_inspect get and set

#include "tests/inspect/inspection.h"

#include "inspection/description.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace inspect_test;
using selvane_inspect::read_file;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class GetSetCommandTest : public InspectTest {
protected:
    /// One feature of each kind over registers.
    [[nodiscard]] std::string EachKind() const {
        return WriteElements(
            "<Integer Name=\"Int\"><pValue>IntReg</pValue><Max>100</Max><Unit>px</Unit></Integer>"
            "<IntReg Name=\"IntReg\"><Address>0x10</Address><Length>4</Length></IntReg>"
            "<FloatReg Name=\"Real\"><Address>0x20</Address><Length>8</Length></FloatReg>"
            "<Boolean Name=\"Truth\"><pValue>TruthReg</pValue><OnValue>7</OnValue></Boolean>"
            "<IntReg Name=\"TruthReg\"><Address>0x30</Address><Length>1</Length></IntReg>"
            "<Enumeration Name=\"Mode\"><pValue>ModeReg</pValue><EnumEntry "
            "Name=\"Slow\"><Value>3</Value></EnumEntry>"
            "<EnumEntry Name=\"Fast\"><Value>5</Value></EnumEntry></Enumeration>"
            "<IntReg Name=\"ModeReg\"><Address>0x31</Address><Length>1</Length></IntReg>"
            "<StringReg Name=\"Text\"><Address>0x40</Address><Length>8</Length></StringReg>"
            "<Command Name=\"Go\"><pValue>GoReg</pValue><CommandValue>9</CommandValue></Command>"
            "<IntReg Name=\"GoReg\"><Address>0x50</Address><Length>1</Length></IntReg>"
            "<Register Name=\"Block\"><Address>0x60</Address><Length>3</Length></Register>"
            "<Category Name=\"Cat\"/>");
    }
    void ExpectSet(const std::string& assignment, const std::string& shown,
                   const std::vector<std::string>& trace) const {
        const Outcome outcome = Call({"set", EachKind(), assignment, "--trace"});
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        std::string lines = shown + "\n";
        for (const std::string& line : trace) lines += "    " + line + "\n";
        EXPECT_EQ(outcome.out, lines);
    }
    void ExpectRefused(const std::string& assignment, int code, const std::string& words) const {
        const Outcome outcome = Call({"set", EachKind(), assignment});
        EXPECT_EQ(outcome.code, code) << assignment;
        EXPECT_THAT(outcome.out, IsEmpty());
        EXPECT_EQ(Lines(outcome.err).size(), 1U) << outcome.err;
        EXPECT_THAT(outcome.err, HasSubstr(words));
    }
};

TEST_F(GetSetCommandTest, GetsEachKind) {
    const Outcome outcome = Call({"get",        EachKind(),
                                  "Int",        "Real",
                                  "Truth",      "Mode",
                                  "Text",       "Block",
                                  "Go",         "Cat",
                                  "--register", "0x13=2A",
                                  "--register", "0x20=3FF8000000000000",
                                  "--register", "0x30=07",
                                  "--register", "0x31=05",
                                  "--register", "0x40=4869",
                                  "--register", "0x60=010203"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(Lines(outcome.out),
                ElementsAre("Int = 42 px", "Real = 1.5", "Truth = true", "Mode = Fast (5)", "Text = \"Hi\"",
                            "Block = 01 02 03", "Go", "Cat"));
}

TEST_F(GetSetCommandTest, ShowsTheAccessesOfARead) {
    const Outcome outcome = Call({"get", EachKind(), "Int", "--trace"});
    EXPECT_THAT(Lines(outcome.out), ElementsAre("Int = 0 px", "    read 0x10 4: 00 00 00 00"));
}

TEST_F(GetSetCommandTest, ACachedRegisterIsReadOnce) {
    const std::string path = WriteElements(
        "<IntReg Name=\"R\"><Address>0</Address><Length>1</Length><Cachable>WriteThrough</Cachable></IntReg>"
        "<IntSwissKnife Name=\"K\"><pVariable "
        "Name=\"X\">R</pVariable><Formula>X+1</Formula></IntSwissKnife>");
    const Outcome outcome = Call({"get", path, "K", "R", "--trace"});
    EXPECT_THAT(Lines(outcome.out), ElementsAre("K = 1", "    read 0x0 1: 00", "R = 0"));
}

TEST_F(GetSetCommandTest, AValueThatCannotBeReadIsARefusal) {
    const std::string path = WriteElements(
        "<IntReg Name=\"W\"><Address>0</Address><Length>1</Length><AccessMode>WO</AccessMode></IntReg>"
        "<Integer Name=\"A\"><Value>3</Value></Integer>");
    const Outcome outcome = Call({"get", path, "W", "A"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.out, "A = 3\n");
    EXPECT_EQ(outcome.err, "selvane_inspect: W: Access denied\n");
    const nlohmann::json json = Call({"get", path, "W", "A", "--json"}).Json();
    EXPECT_EQ(json["features"][0]["error"]["code"], "0x80008006");
    EXPECT_EQ(json["features"][0]["error"]["message"], "Access denied");
    EXPECT_EQ(json["features"][1]["value"], 3);
}

TEST_F(GetSetCommandTest, AnUnknownFeatureIsWrongUse) {
    const Outcome outcome = Call({"get", EachKind(), "Modee"});
    EXPECT_EQ(outcome.code, 2);
    EXPECT_THAT(outcome.err, HasSubstr("has no feature Modee (did you mean Mode?)"));
}

TEST_F(GetSetCommandTest, WhatWouldEndTheProcessIsARefusal) {
    const std::string path = WriteElements(
        "<IntSwissKnife Name=\"K\"><Formula>1/0</Formula></IntSwissKnife>"
        "<Float Name=\"F\"><pValue>C</pValue></Float>"
        "<IntConverter "
        "Name=\"C\"><FormulaTo>8/FROM</FormulaTo><FormulaFrom>TO</FormulaFrom><pValue>R</pValue></"
        "IntConverter>"
        "<IntReg Name=\"R\"><Address>0</Address><Length>1</Length></IntReg>");
    EXPECT_EQ(Call({"get", path, "K"}).code, 1);
    const Outcome outcome = Call({"set", path, "C=0"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_THAT(outcome.err, HasSubstr("C: FormulaTo of C divides"));
    EXPECT_EQ(Call({"set", path, "C=4"}).out, "C = 2\n");
    EXPECT_THAT(Call({"set", path, "F=0.6"}).err, HasSubstr("F: FormulaTo of C divides"));
}

TEST_F(GetSetCommandTest, ACommandWritesWhatItsLinkHolds) {
    const std::string path = WriteElements(
        "<Command Name=\"Go\"><pValue>C</pValue><pCommandValue>V</pCommandValue></Command>"
        "<Command Name=\"Half\"><pValue>C</pValue><CommandValue>1.5</CommandValue></Command>"
        "<Integer Name=\"V\"><Value>5</Value></Integer>"
        "<IntConverter Name=\"C\"><FormulaTo>100/FROM</FormulaTo><FormulaFrom>TO</FormulaFrom>"
        "<pValue>R</pValue></IntConverter><IntReg "
        "Name=\"R\"><Address>0</Address><Length>1</Length></IntReg>");
    EXPECT_EQ(Call({"set", path, "Go=1", "--trace"}).out, "Go executed\n    write 0x0 1: 14\n");
    EXPECT_EQ(Call({"set", path, "Half=1", "--trace"}).out, "Half executed\n    write 0x0 1: 32\n");
    const Outcome zero = Call({"set", path, "V=0", "Go=1"});
    EXPECT_EQ(zero.code, 1);
    EXPECT_THAT(zero.err, HasSubstr("Go: FormulaTo of C divides"));
}

TEST_F(GetSetCommandTest, ACircleIsRefusedBeforeItsCommandValueIsRead) {
    const std::string path = WriteElements(
        "<Command Name=\"Go\"><Value>0</Value><pCommandValue>A</pCommandValue></Command>"
        "<Integer Name=\"A\"><pValue>B</pValue></Integer><Integer Name=\"B\"><pValue>A</pValue></Integer>");
    const Outcome outcome = Call({"set", path, "Go=1"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.err, "selvane_inspect: Go: a circle: A needs B needs A\n");
}

TEST_F(GetSetCommandTest, WhatCannotBeReadAgainIsWrittenAllTheSame) {
    const std::string path = WriteElements(
        "<IntReg Name=\"W\"><Address>0</Address><Length>1</Length><AccessMode>WO</AccessMode></IntReg>");
    const Outcome outcome = Call({"set", path, "W=3", "--trace"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.out, "W written (it cannot be read: Access denied)\n    write 0x0 1: 03\n");
}

TEST_F(GetSetCommandTest, ReadsDescriptionsOfEveryEncoding) {
    const std::string text = AroundElements("<Integer Name=\"A\"><Value>4</Value></Integer>");
    std::string little = "\xFF\xFE";
    std::string big = "\xFE\xFF";
    for (const char c : text) {
        little += {c, '\0'};
        big += {'\0', c};
    }
    const std::string latin = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><!-- \xB0 -->" + text;
    for (const std::string& contents :
         {text, little, big, little.substr(2), "\xEF\xBB\xBF" + text, latin, "A line of a tool\n" + text}) {
        const std::string path = Write("encoded.xml", contents);
        EXPECT_EQ(Call({"get", path, "A"}).out, "A = 4\n");
        EXPECT_EQ(Call({"set", path, "A=6"}).out, "A = 6\n");
        EXPECT_EQ(Call({"describe", path, "A"}).code, 0);
    }
}

TEST_F(GetSetCommandTest, SurvivesTheDeepestChainsThatItLetsThrough) {
    std::string elements;
    const int depth = 990;
    for (int at = 0; at < depth; ++at) {
        const std::string next = std::to_string(at + 1);
        elements += "<IntConverter Name=\"N" + std::to_string(at) +
                    "\"><FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom><pValue>N" + next +
                    "</pValue></IntConverter>";
    }
    elements +=
        "<IntReg Name=\"N" + std::to_string(depth) + "\"><Address>0</Address><Length>4</Length></IntReg>";
    const std::string path = WriteElements(elements);
    EXPECT_EQ(Call({"set", path, "N0=7"}).out, "N0 = 7\n");
    EXPECT_EQ(Call({"get", path, "N0"}).out, "N0 = 0\n");
}

TEST_F(GetSetCommandTest, SetsEachKind) {
    ExpectSet("Int=0x2A", "Int = 42 px", {"write 0x10 4: 00 00 00 2A"});
    ExpectSet("Real=-2.5", "Real = -2.5", {"write 0x20 8: C0 04 00 00 00 00 00 00"});
    ExpectSet("Truth=true", "Truth = true", {"write 0x30 1: 07"});
    ExpectSet("Truth=0", "Truth = false", {"write 0x30 1: 00"});
    ExpectSet("Mode=Slow", "Mode = Slow (3)", {"write 0x31 1: 03"});
    ExpectSet("Mode=5", "Mode = Fast (5)", {"write 0x31 1: 05"});
    ExpectSet("Text=a=b", "Text = \"a=b\"", {"write 0x40 3: 61 3D 62"});
    ExpectSet("Go=1", "Go executed", {"write 0x50 1: 09"});
    ExpectSet("Block=0A 0b", "Block = 0A 0B 00", {"write 0x60 2: 0A 0B"});
    ExpectSet("IntReg=-1", "IntReg = 4294967295", {"write 0x10 4: FF FF FF FF"});
}

TEST_F(GetSetCommandTest, RefusesValuesThatAreNone) {
    ExpectRefused("Int=ten", 2, "Int: ten is no integer");
    ExpectRefused("Int=9223372036854775808", 2, "is no integer");
    ExpectRefused("Int=1.5", 2, "is no integer");
    ExpectRefused("Real=1,5", 2, "Real: 1,5 is no number");
    ExpectRefused("Truth=yes", 2, "neither true nor false");
    ExpectRefused("Mode=Fastt", 2, "no entry Fastt (did you mean Fast?)");
    ExpectRefused("Mode=4", 2, "no entry 4");
    ExpectRefused("Go=2", 2, "executed by the value 1");
    ExpectRefused("Block=0", 2, "bytes in hexadecimal");
    ExpectRefused("Cat=1", 2, "a category has no value");
    ExpectRefused("Int", 2, "FEATURE=VALUE");
    ExpectRefused("=1", 2, "FEATURE=VALUE");
    ExpectRefused("Inn=1", 2, "has no feature Inn");
}

TEST_F(GetSetCommandTest, WhatTheEngineRefusesIsARefusal) {
    ExpectRefused("Int=101", 1, "Int: Passed in value is out of range of Min/Max");
    ExpectRefused("Block=01020304", 1, "Block: Invalid parameter");
}

TEST_F(GetSetCommandTest, WritesInTheOrderGivenAndStopsAtARefusal) {
    const Outcome outcome = Call({"set", EachKind(), "Int=1", "Int=101", "Int=3"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.out, "Int = 1 px\n");
    const Outcome unknown = Call({"set", EachKind(), "Int=1", "Nobody=3"});
    EXPECT_EQ(unknown.code, 2);
    EXPECT_THAT(unknown.out, IsEmpty());
}

TEST_F(GetSetCommandTest, ALaterWriteSeesAnEarlierOne) {
    const std::string path = WriteElements(
        "<Integer Name=\"Limit\"><Value>5</Value></Integer>"
        "<Integer Name=\"A\"><Value>0</Value><pMax>Limit</pMax></Integer>"
        "<IntConverter Name=\"C\"><pVariable Name=\"L\">Limit</pVariable><FormulaTo>100/L</FormulaTo>"
        "<FormulaFrom>TO</FormulaFrom><pValue>R</pValue></IntConverter>"
        "<IntReg Name=\"R\"><Address>0</Address><Length>1</Length></IntReg>");
    EXPECT_EQ(Call({"set", path, "A=9"}).code, 1);
    EXPECT_EQ(Call({"set", path, "Limit=9", "A=9"}).out, "Limit = 9\nA = 9\n");
    EXPECT_EQ(Call({"set", path, "C=1"}).out, "C = 20\n");
    EXPECT_THAT(Call({"set", path, "Limit=0", "C=1"}).err, HasSubstr("FormulaTo of C divides"));
}

TEST_F(GetSetCommandTest, SavesTheChangedMemory) {
    const std::string path = EachKind();
    const std::string lines = PathOf("saved.memory");
    ASSERT_EQ(Call({"set", path, "Int=42", "--save", lines}).code, 0);
    EXPECT_EQ(Call({"get", path, "Int", "--memory", lines}).out, "Int = 42 px\n");
    const std::string image = Write("image.bin", std::string(16, '\0'));
    ASSERT_EQ(Call({"set", path, "Int=7", "--memory", image + "@0x10", "--save", image + "@0x10"}).code, 0);
    EXPECT_EQ(read_file(image), std::string("\0\0\0\x07\0\0\0\0\0\0\0\0\0\0\0\0", 16));
}

TEST_F(GetSetCommandTest, SavesNothingAfterARefusal) {
    const std::string lines = PathOf("saved.memory");
    EXPECT_EQ(Call({"set", EachKind(), "Int=1", "Int=101", "--save", lines}).code, 1);
    EXPECT_THROW(static_cast<void>(read_file(lines)), std::exception);
}

TEST_F(GetSetCommandTest, GivesJson) {
    const nlohmann::json json = Call({"set", EachKind(), "Mode=Fast", "Int=2", "--trace", "--json"}).Json();
    EXPECT_EQ(json["command"], "set");
    ASSERT_EQ(json["features"].size(), 2U);
    EXPECT_EQ(json["features"][0]["name"], "Mode");
    EXPECT_EQ(json["features"][0]["value"], "Fast");
    EXPECT_EQ(json["features"][0]["number"], 5);
    EXPECT_EQ(json["features"][1]["trace"],
              nlohmann::json::parse(R"([{"access":"write","address":"0x10","bytes":"00 00 00 02"}])"));
    const nlohmann::json read = Call({"get", EachKind(), "Real", "--trace", "--json"}).Json();
    EXPECT_EQ(read["command"], "get");
    EXPECT_EQ(read["features"][0]["kind"], "float");
    EXPECT_EQ(read["features"][0]["trace"][0]["access"], "read");
}

TEST_F(GetSetCommandTest, WorksOnTheSimulatedCamera) {
    const std::vector<std::string> camera = {ProjectDescription("simulated_camera"), "--memory",
                                             SimulatedMemory()};
    std::vector<std::string> get = {"get"};
    get.insert(get.end(), camera.begin(), camera.end());
    get.insert(get.end(), {"DeviceModelName", "DeviceTemperature", "Unlocked"});
    EXPECT_EQ(Call(get).out,
              "DeviceModelName = \"SIM1203C\"\nDeviceTemperature = 37 \xC2\xB0"
              "C\nUnlocked = 1\n");
    std::vector<std::string> set = {"set"};
    set.insert(set.end(), camera.begin(), camera.end());
    set.insert(set.end(), {"ExposureTime=0.002", "--trace"});
    const Outcome outcome = Call(set);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(Lines(outcome.out).front(), HasSubstr("ExposureTime = 0.002 sec"));
    EXPECT_THAT(outcome.out, HasSubstr("write 0x1000 4: 00 00 4E 20"));
}

TEST_F(GetSetCommandTest, RefusesTextsThatAreNotWhollyAValue) {
    ExpectRefused("Real=1.5x", 2, "1.5x is no number");
    ExpectRefused("Real=x", 2, "x is no number");
    ExpectRefused("Truth=maybe", 2, "maybe is neither true nor false");
    ExpectSet("Truth=1", "Truth = true", {"write 0x30 1: 07"});
    ExpectSet("Truth=0", "Truth = false", {"write 0x30 1: 00"});
    ExpectSet("Truth=false", "Truth = false", {"write 0x30 1: 00"});
}

}  // namespace
