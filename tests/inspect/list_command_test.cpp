// selvane_inspect list

#include "tests/inspect/inspection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace inspect_test;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class ListCommandTest : public InspectTest {};

constexpr const char* small_tree =
    "<Category Name=\"Root\"><pFeature>Main</pFeature><pFeature>Level</pFeature></Category>"
    "<Category "
    "Name=\"Main\"><pFeature>Mode</pFeature><pFeature>Gain</pFeature><pFeature>Go</pFeature></Category>"
    "<Enumeration Name=\"Mode\"><Visibility>Expert</Visibility><Value>1</Value>"
    "<EnumEntry Name=\"Off\"><Value>0</Value></EnumEntry><EnumEntry "
    "Name=\"On\"><Value>1</Value></EnumEntry></Enumeration>"
    "<Float "
    "Name=\"Gain\"><Visibility>Guru</Visibility><Value>1.5</Value><Min>0</Min><Max>24</Max><Inc>0.5</Inc>"
    "<Unit>dB</Unit></Float>"
    "<Command Name=\"Go\"><pValue>R</pValue><CommandValue>1</CommandValue></Command>"
    "<Integer Name=\"Level\"><pValue>R</pValue><Min>2</Min><Max>8</Max><Inc>2</Inc></Integer>"
    "<IntReg Name=\"R\"><Address>0</Address><Length>2</Length></IntReg>"
    "<Integer Name=\"Hidden\"><Visibility>Invisible</Visibility><Value>3</Value></Integer>";

TEST_F(ListCommandTest, ShowsTheTree) {
    const Outcome outcome = Call({"list", WriteElements(small_tree), "--register", "0=0004"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(Lines(outcome.out),
                ElementsAre("Root", "  Main", "    enumeration RW Mode = On (1)",
                            "    float       RW Gain = 1.5 dB [0..24 step 0.5]", "    command     RW Go",
                            "  integer     RW Level = 4 [2..8 step 2]"));
}

TEST_F(ListCommandTest, ShowsNodesOutsideTheTreeOnRequest) {
    const Outcome outcome = Call({"list", WriteElements(small_tree), "--all"});
    EXPECT_THAT(outcome.out, HasSubstr("\noutside the tree\n"));
    EXPECT_THAT(Lines(outcome.out), Contains("  integer     RW Hidden = 3"));
    EXPECT_THAT(Lines(outcome.out), Contains("  integer     RW R = 0 [0..65535]"));
    EXPECT_THAT(Lines(outcome.out), Contains("  port        RW Device"));
}

TEST_F(ListCommandTest, LeavesOutWhatIsForOthers) {
    const std::string path = WriteElements(small_tree);
    const Outcome beginner = Call({"list", path, "--visibility", "Beginner"});
    EXPECT_THAT(beginner.out, Not(HasSubstr("Mode")));
    EXPECT_THAT(beginner.out, HasSubstr("Level"));
    const Outcome expert = Call({"list", path, "--visibility", "Expert"});
    EXPECT_THAT(expert.out, HasSubstr("Mode"));
    EXPECT_THAT(expert.out, Not(HasSubstr("Gain")));
    const Outcome guru = Call({"list", path, "--visibility", "Guru", "--all"});
    EXPECT_THAT(guru.out, HasSubstr("Gain"));
    EXPECT_THAT(guru.out, Not(HasSubstr("Hidden")));
    EXPECT_THAT(Call({"list", path, "--all"}).out, HasSubstr("Hidden"));
    EXPECT_EQ(Call({"list", path, "--visibility", "expert"}).out, expert.out);
}

TEST_F(ListCommandTest, TellsWhatIsNotThere) {
    const Outcome outcome = Call(
        {"list", WriteElements(
                     "<Category "
                     "Name=\"Root\"><pFeature>A</pFeature><pFeature>B</pFeature><pFeature>C</pFeature>"
                     "<pFeature>D</pFeature></Category>"
                     "<Integer Name=\"A\"><pIsImplemented>No</pIsImplemented><Value>1</Value></Integer>"
                     "<Integer Name=\"B\"><pIsAvailable>No</pIsAvailable><Value>1</Value></Integer>"
                     "<Integer Name=\"C\"><ImposedAccessMode>RO</ImposedAccessMode><Value>1</Value></Integer>"
                     "<Integer Name=\"D\"><pValue>B</pValue></Integer>"
                     "<Integer Name=\"No\"><Value>0</Value></Integer>")});
    EXPECT_THAT(outcome.out, HasSubstr("  integer     NI A\n"));
    EXPECT_THAT(outcome.out, HasSubstr("  integer     NA B\n"));
    EXPECT_THAT(outcome.out, HasSubstr("integer     RO C = 1"));
    // There itself, and without a value, since what it links to is not.
    EXPECT_THAT(outcome.out, HasSubstr("  integer     RW D (writing failed because node was not available"));
}

TEST_F(ListCommandTest, SurvivesWhatTheEngineWouldNot) {
    const Outcome outcome = Call(
        {"list",
         WriteElements(
             "<Category "
             "Name=\"Root\"><pFeature>A</pFeature><pFeature>K</pFeature><pFeature>Root</pFeature></Category>"
             "<Integer Name=\"A\"><pValue>B</pValue></Integer><Integer "
             "Name=\"B\"><pValue>A</pValue></Integer>"
             "<IntSwissKnife Name=\"K\"><Formula>1/0</Formula></IntSwissKnife>")});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_THAT(outcome.out, HasSubstr("A (a circle: A needs B needs A)"));
    EXPECT_THAT(outcome.out, HasSubstr("K (Formula of K divides integers"));
    EXPECT_THAT(outcome.out, HasSubstr("Root (lists itself"));
}

TEST_F(ListCommandTest, GoesNoDeeperThanAnyoneReads) {
    std::string elements = "<Category Name=\"Root\"><pFeature>C0</pFeature></Category>";
    for (int at = 0; at < 3000; ++at) {
        elements += "<Category Name=\"C" + std::to_string(at) + "\"><pFeature>C" + std::to_string(at + 1) +
                    "</pFeature></Category>";
    }
    const std::string path = WriteElements(elements);
    EXPECT_THAT(Call({"list", path}).out, HasSubstr("too deep to go on"));
    EXPECT_EQ(Call({"list", path, "--json"}).code, 0);
}

TEST_F(ListCommandTest, GoesOnNoLongerThanAnyoneReads) {
    std::string elements = "<Category Name=\"Root\"><pFeature>C0</pFeature></Category>";
    for (int at = 0; at < 60; ++at) {
        const std::string next = "<pFeature>C" + std::to_string(at + 1) + "</pFeature>";
        elements += "<Category Name=\"C" + std::to_string(at) + "\">" + next + next + "</Category>";
    }
    const Outcome outcome = Call({"list", WriteElements(elements)});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_THAT(outcome.out, HasSubstr("(its features stand above)"));
    EXPECT_LT(Lines(outcome.out).size(), 101000U);
}

TEST_F(ListCommandTest, AnEnumerationWithoutEntryTellsItsNumber) {
    const std::string path = WriteElements(
        "<Category "
        "Name=\"Root\"><pFeature>A</pFeature><pFeature>B</pFeature><pFeature>C</pFeature></Category>"
        "<Enumeration Name=\"A\"><pValue>R</pValue><EnumEntry Name=\"X\"><Value>1</Value></EnumEntry>"
        "</Enumeration><IntReg Name=\"R\"><Address>0</Address><Length>1</Length></IntReg>"
        "<Enumeration Name=\"B\"><Value>7</Value></Enumeration>"
        "<Enumeration Name=\"C\"><pValue>W</pValue><EnumEntry Name=\"X\"><Value>1</Value></EnumEntry>"
        "</Enumeration><IntReg Name=\"W\"><Address>0</Address><Length>1</Length><AccessMode>WO</AccessMode>"
        "</IntReg>");
    const Outcome outcome = Call({"list", path, "--register", "0=05"});
    EXPECT_THAT(outcome.out, HasSubstr("RW A (Index out of range: no entry has the value 5)\n"));
    EXPECT_THAT(outcome.out, HasSubstr("RW B (Index out of range: no entry has the value 7)\n"));
    EXPECT_THAT(outcome.out, HasSubstr("RW C (Access denied)\n"));
    const Outcome traced = Call({"get", path, "A", "--trace"});
    EXPECT_EQ(traced.err, "selvane_inspect: A: Index out of range: no entry has the value 0\n");
    EXPECT_THAT(Lines(traced.out), ElementsAre("    read 0x0 1: 00"));
}

TEST_F(ListCommandTest, CutsLongBlocks) {
    const std::string path = WriteElements(
        "<Category Name=\"Root\"><pFeature>B</pFeature><pFeature>S</pFeature></Category>"
        "<Register Name=\"B\"><Address>0</Address><Length>64</Length></Register>"
        "<Register Name=\"S\"><Address>0</Address><Length>16</Length></Register>");
    const std::string sixteen = "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00";
    EXPECT_EQ(Call({"list", path}).out, "Root\n  register    RW B = " + sixteen +
                                            " ... (64 bytes)\n  register    RW S = " + sixteen + "\n");
    EXPECT_THAT(Call({"get", path, "B"}).out, Not(HasSubstr("...")));
}

TEST_F(ListCommandTest, DoesNotReadBlocksWithoutEnd) {
    const std::string path = WriteElements(
        "<Category Name=\"Root\"><pFeature>B</pFeature></Category><Register "
        "Name=\"B\"><Address>0</Address><Length>0x10000000000</Length></Register>");
    EXPECT_THAT(Call({"list", path}).out, HasSubstr("B (a block of 1099511627776 bytes is not read)"));
    EXPECT_EQ(Call({"describe", path, "B"}).code, 0);
}

TEST_F(ListCommandTest, ALineBreakInAUnitBreaksNoLine) {
    const std::string path = WriteElements(
        "<Category Name=\"Root\"><pFeature>A</pFeature></Category><Integer "
        "Name=\"A\"><Value>1</Value><Unit>\n  px\n </Unit></Integer>");
    EXPECT_EQ(Call({"list", path}).out, "Root\n  integer     RW A = 1 px\n");
}

TEST_F(ListCommandTest, ADescriptionWithoutRootHasNoTree) {
    const std::string path = WriteElements("<Integer Name=\"A\"><Value>1</Value></Integer>");
    const Outcome outcome = Call({"list", path});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr("has no feature Root, where the tree begins (--all"));
    EXPECT_EQ(Call({"list", path, "--all"}).out,
              "outside the tree\n  integer     RW A = 1\n  port        RW Device\n");
    EXPECT_TRUE(Call({"list", path, "--json"}).Json()["root"].is_null());
}

TEST_F(ListCommandTest, GivesJson) {
    const nlohmann::json json = Call({"list", WriteElements(small_tree), "--all", "--json"}).Json();
    EXPECT_EQ(json["command"], "list");
    const auto& root = json["root"];
    EXPECT_EQ(root["name"], "Root");
    EXPECT_EQ(root["kind"], "category");
    ASSERT_EQ(root["features"].size(), 2U);
    const auto& mode = root["features"][0]["features"][0];
    EXPECT_EQ(mode["name"], "Mode");
    EXPECT_EQ(mode["kind"], "enumeration");
    EXPECT_EQ(mode["access"], "RW");
    EXPECT_EQ(mode["value"], "On");
    EXPECT_EQ(mode["number"], 1);
    EXPECT_EQ(mode["visibility"], "Expert");
    const auto& gain = root["features"][0]["features"][1];
    EXPECT_EQ(gain["value"], 1.5);
    EXPECT_EQ(gain["unit"], "dB");
    EXPECT_EQ(gain["min"], 0.0);
    EXPECT_EQ(gain["max"], 24.0);
    EXPECT_EQ(gain["inc"], 0.5);
    EXPECT_FALSE(root.contains("value"));
    EXPECT_FALSE(root["features"][0]["features"][2].contains("value"));
    ASSERT_EQ(json["outside"].size(), 3U);
    EXPECT_EQ(json["outside"][1]["name"], "Hidden");
    EXPECT_EQ(json["outside"][1]["visibility"], "Invisible");
}

TEST_F(ListCommandTest, BeginsWithTheDefaultsOnRequest) {
    const Outcome outcome =
        Call({"list", ProjectDescription("simulated_camera"), "--memory", SimulatedMemory(), "--defaults"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("float       RW ExposureTime = 0.01 sec [2e-05..4]"));
    EXPECT_THAT(outcome.out, HasSubstr("float       RW Gamma = 1 [0.25..4]"));
}

// Whoever states a default that cannot be had, or not be written, has none.
TEST_F(ListCommandTest, WritesTheDefaultsThatCanBeWritten) {
    const std::string path = WriteElements(
        "<Category "
        "Name=\"Root\"><pFeature>I</pFeature><pFeature>F</pFeature><pFeature>B</pFeature><pFeature>S"
        "</pFeature><pFeature>Fixed</pFeature><pFeature>Lost</pFeature><pFeature>Round</pFeature></Category>"
        "<Integer Name=\"I\"><Extension><Default>7</Default></Extension><Value>1</Value></Integer>"
        "<Float Name=\"F\"><Extension><Default>2.5</Default></Extension><Value>1</Value></Float>"
        "<Boolean Name=\"B\"><Extension><pDefault>I</pDefault></Extension><Value>false</Value></Boolean>"
        "<String Name=\"S\"><Extension><Default>no</Default></Extension><Value>text</Value></String>"
        "<Integer Name=\"Fixed\"><ImposedAccessMode>RO</ImposedAccessMode><Extension><Default>7</Default>"
        "</Extension><Value>1</Value></Integer>"
        "<Integer Name=\"Lost\"><Extension><pDefault>Broken</pDefault></Extension><Value>3</Value></Integer>"
        "<Integer Name=\"Broken\"><pValue>Nowhere</pValue></Integer>"
        "<Integer Name=\"Round\"><Extension><pDefault>Circle</pDefault></Extension><Value>4</Value></Integer>"
        "<Integer Name=\"Circle\"><pValue>Circle</pValue></Integer>"
        "<Unknown Name=\"None\"><Extension><Default>1</Default></Extension></Unknown>");
    const Outcome outcome = Call({"list", path, "--defaults"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    for (const char* line :
         {"I = 7", "F = 2.5", "B = true", "S = \"text\"", "Fixed = 1", "Lost = 3", "Round = 4"})
        EXPECT_THAT(outcome.out, testing::HasSubstr(line));
}

}  // namespace
