// selvane_inspect describe

#include "tests/inspect/inspection.h"
#include "tests/support/small_stack.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace inspect_test;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class DescribeCommandTest : public InspectTest {};

constexpr const char* gain =
    "<Float Name=\"Gain\"><DisplayName>Analog gain</DisplayName><ToolTip>Tip</ToolTip>\n"
    "  <Visibility>Expert</Visibility><pValue>Conv</pValue><Min>0</Min><Max>24</Max><Unit>dB</Unit></Float>\n"
    "<Converter Name=\"Conv\"><Constant Name=\"TEN\">10</Constant><pVariable Name=\"OFF\">Offset</pVariable>"
    "<Expression "
    "Name=\"SUM\">FROM+OFF</Expression><FormulaTo>FROM*TEN</FormulaTo><FormulaFrom>SUM/TEN</FormulaFrom>"
    "<pValue>Field</pValue></Converter>\n"
    "<MaskedIntReg "
    "Name=\"Field\"><Address>0x100</Address><Length>2</Length><LSB>15</LSB><MSB>8</MSB></MaskedIntReg>\n"
    "<IntReg Name=\"Offset\"><pAddress>Base</pAddress><Length>1</Length></IntReg>\n"
    "<Integer Name=\"Base\"><Value>0x200</Value></Integer>\n"
    "<Category Name=\"Main\"><pFeature>Gain</pFeature></Category>";

TEST_F(DescribeCommandTest, TellsEverything) {
    const Outcome outcome =
        Call({"describe", WriteElements(gain), "Gain", "--register", "0x100=002A", "--register", "0x200=08"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    const auto lines = Lines(outcome.out);
    EXPECT_THAT(lines.front(), HasSubstr("Gain (Float, class float_pValue_type), "));
    EXPECT_THAT(lines.front(), HasSubstr("description.xml:2:1"));
    for (const char* line : {"  display name  Analog gain",
                             "  tool tip      Tip",
                             "  visibility    Expert",
                             "  access        RW",
                             "  implemented   yes",
                             "  available     yes",
                             "  locked        no",
                             "  value         5 dB",
                             "  range         [0..24]",
                             "         2  DisplayName: Analog gain",
                             "         3  pValue: Conv",
                             "  Float Gain = 5",
                             "    pValue: Converter Conv = 5",
                             "      FormulaFrom: SUM/TEN",
                             "      FormulaTo: FROM*TEN",
                             "      Expression SUM: FROM+OFF",
                             "        FROM = 42 (integer) from Field",
                             "        TEN = 10.0 (float)",
                             "        OFF = 8.0 (float) from Offset",
                             "      pVariable OFF: IntReg Offset = 8",
                             "        register 0x200, 1 byte: 08",
                             "        pAddress: Integer Base = 512",
                             "      pValue: MaskedIntReg Field = 42",
                             "        register 0x100, 2 bytes BigEndian: 00 2A, mask 0x00FF",
                             "    Main (pFeature)"}) {
        EXPECT_THAT(lines, Contains(line));
    }
}

TEST_F(DescribeCommandTest, TellsWhatAWriteMakesStale) {
    const Outcome outcome = Call({"describe", WriteElements(gain), "Base"});
    EXPECT_THAT(outcome.out, HasSubstr("  what names it\n    Offset (pAddress)\n"));
    EXPECT_THAT(outcome.out, HasSubstr("  what a write makes stale\n    Conv, Gain, Offset\n"));
}

// To look at a formula changes nothing of the nodes that it reads.
TEST_F(DescribeCommandTest, TellsTheSameWhateverWasDescribedBefore) {
    const std::string path = WriteElements(
        "<Integer Name=\"Value\"><Value>1</Value></Integer><Integer "
        "Name=\"Link\"><pValue>Value</pValue></Integer>"
        "<IntSwissKnife Name=\"Swissknife\"><pVariable Name=\"A\">Link</pVariable><Formula>A+1</Formula>"
        "</IntSwissKnife><IntConverter Name=\"Both\"><pVariable Name=\"B\">Swissknife</pVariable>"
        "<FormulaTo>FROM-B</FormulaTo><FormulaFrom>TO+B</FormulaFrom><pValue>Link</pValue></IntConverter>"
        "<Float Name=\"Top\"><pValue>Both</pValue><pMin>Swissknife</pMin></Float>");
    const std::vector<std::string> names = {"Value", "Link", "Swissknife", "Both", "Top"};
    for (const std::string& name : names) {
        const Outcome alone = Call({"describe", path, name});
        const auto alone_json = Call({"describe", path, name, "--json"}).Json()["features"][0];
        for (const std::string& before : names) {
            if (before == name) continue;
            EXPECT_THAT(Call({"describe", path, before, name}).out, testing::EndsWith("\n\n" + alone.out));
            EXPECT_EQ(Call({"describe", path, before, name, "--json"}).Json()["features"][1], alone_json);
        }
    }
}

// Four thousand links read well on the stack of a host's window, eight thousand do not.
TEST_F(DescribeCommandTest, NamesAChainThatNoReaderMayFollow) {
    constexpr int links = 8000;
    std::string elements = "<Integer Name=\"N0\"><Value>1</Value></Integer>";
    for (int at = 1; at <= links; ++at) {
        elements += "<Integer Name=\"N" + std::to_string(at) + "\"><pValue>N" + std::to_string(at - 1) +
                    "</pValue></Integer>";
    }
    const std::string path = WriteElements(elements);
    test_support::RunOnSmallStack([&] {
        const std::string top = "N" + std::to_string(links);
        const Outcome outcome = Call({"describe", path, top});
        EXPECT_THAT(outcome.out,
                    HasSubstr("  value         more than 1000 nodes depend on one another below N100"));
    });
}

TEST_F(DescribeCommandTest, TellsAHundredNodesBehindANode) {
    std::string elements = "<Integer Name=\"N0\"><Value>7</Value></Integer>";
    for (int i = 1; i <= 101; ++i) {
        elements += "<Integer Name=\"N" + std::to_string(i) + "\"><pValue>N" + std::to_string(i - 1) +
                    "</pValue></Integer>";
    }
    const std::string path = WriteElements(elements);
    EXPECT_THAT(Lines(Call({"describe", path, "N100"}).out), Contains(EndsWith("pValue: Integer N0 = 7")));
    EXPECT_THAT(Lines(Call({"describe", path, "N101"}).out),
                Contains(EndsWith("pValue: Integer N0 = 7 (too deep to go on)")));
    const std::string json = Call({"describe", path, "N101", "--json"}).out;
    EXPECT_THAT(json, HasSubstr("\"too_deep\": true"));
    EXPECT_THAT(json, Not(HasSubstr("told_above")));
}

TEST_F(DescribeCommandTest, TellsATwiceUsedNodeOnce) {
    const Outcome outcome = Call({"describe",
                                  WriteElements("<IntSwissKnife Name=\"K\"><pVariable "
                                                "Name=\"A\">R</pVariable><pVariable Name=\"B\">R</pVariable>"
                                                "<Formula>A+B</Formula></IntSwissKnife><IntReg "
                                                "Name=\"R\"><Address>0</Address><Length>1</Length></IntReg>"),
                                  "K"});
    EXPECT_THAT(outcome.out, HasSubstr("pVariable B: IntReg R = 0 (told above)"));
}

TEST_F(DescribeCommandTest, SurvivesCirclesAndRefusedFormulas) {
    const Outcome outcome =
        Call({"describe",
              WriteElements("<Integer Name=\"A\"><pValue>B</pValue></Integer><Integer "
                            "Name=\"B\"><pValue>A</pValue></Integer>"
                            "<IntSwissKnife Name=\"K\"><Formula>(1</Formula></IntSwissKnife>"),
              "A", "K"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_THAT(outcome.out, HasSubstr("value         a circle: A needs B needs A"));
    EXPECT_THAT(outcome.out, HasSubstr("Integer A (a circle: A needs B needs A) (told above)"));
    EXPECT_THAT(
        outcome.out,
        HasSubstr("    Formula: (1\n      refused at character 3, behind \"(1\": Failed to find a ')'.\n"));
}

TEST_F(DescribeCommandTest, FindsTheBitsOfAStructure) {
    const Outcome outcome =
        Call({"describe",
              WriteElements(
                  "<StructReg><Address>0x10</Address><Length>4</Length><Endianess>LittleEndian</Endianess>"
                  "<StructEntry Name=\"E\"><LSB>4</LSB><MSB>7</MSB></StructEntry></StructReg>"),
              "E", "--register", "0x10=A5000000"});
    EXPECT_THAT(
        outcome.out,
        HasSubstr(
            "StructEntry E = 10\n    register 0x10, 4 bytes LittleEndian: A5 00 00 00, mask 0x000000F0"));
}

TEST_F(DescribeCommandTest, FindsRegistersOfEveryKind) {
    const std::string path = WriteElements(
        "<IntReg Name=\"I\"><Address>0x10</Address><Length>2</Length><AccessMode>WO</AccessMode></IntReg>"
        "<FloatReg Name=\"F\"><Address>0x20</Address><Length>4</Length></FloatReg>"
        "<StringReg Name=\"S\"><Address>0x30</Address><Length>3</Length></StringReg>"
        "<Register Name=\"B\"><Address>0x40</Address><Length>2</Length></Register>");
    const Outcome outcome = Call({"describe", path, "I", "F", "S", "B"});
    EXPECT_THAT(outcome.out, HasSubstr("register 0x10, 2 bytes BigEndian: 00 00\n"));
    EXPECT_THAT(outcome.out, HasSubstr("register 0x20, 4 bytes BigEndian: 00 00 00 00\n"));
    EXPECT_THAT(outcome.out, HasSubstr("register 0x30, 3 bytes: 00 00 00\n"));
    EXPECT_THAT(outcome.out, HasSubstr("register 0x40, 2 bytes: 00 00\n"));
}

TEST_F(DescribeCommandTest, ShowsTheFrameOfAnEntry) {
    const std::string path = WriteElements(
        "<StructReg Comment=\"Two bits\">\n<Address>0x10</Address>\n<Length>4</Length>\n"
        "<StructEntry Name=\"E\">\n<Bit>4</Bit></StructEntry>\n"
        "<StructEntry Name=\"F\"><Bit>5</Bit></StructEntry><pPort>Device</pPort></StructReg>");
    EXPECT_THAT(Call({"describe", path, "E"}).out, HasSubstr("  elements\n"
                                                             "         6  Bit: 4\n"
                                                             "         2  StructReg Comment=\"Two bits\"\n"
                                                             "         3    Address: 0x10\n"
                                                             "         4    Length: 4\n"
                                                             "         7    pPort: Device\n"
                                                             "  where"));
    const nlohmann::json elements = Call({"describe", path, "E", "--json"}).Json()["features"][0]["elements"];
    ASSERT_EQ(elements.size(), 5U);
    EXPECT_EQ(elements[1]["attributes"], nlohmann::json::parse(R"({"Comment": "Two bits"})"));
    EXPECT_EQ(elements[2]["depth"], 1);
    EXPECT_FALSE(elements[0].contains("attributes"));
}

TEST_F(DescribeCommandTest, ShowsTheEntriesOfAnEnumeration) {
    const std::string path = WriteElements(
        "<Enumeration Name=\"E\"><Value>0</Value><EnumEntry Name=\"A\"><Value>0</Value></EnumEntry>"
        "<EnumEntry Name=\"B\"><DisplayName>Big</DisplayName><Value>7</Value><NumericValue>0.5</NumericValue>"
        "<pIsAvailable>No</pIsAvailable></EnumEntry><EnumEntry Name=\"C\"><Value>8</Value>"
        "<pIsImplemented>No</pIsImplemented></EnumEntry></Enumeration>"
        "<Integer Name=\"No\"><Value>0</Value></Integer>");
    const Outcome outcome = Call({"describe", path, "E", "No"});
    EXPECT_THAT(outcome.out,
                HasSubstr("  entries\n    A = 0\n    B = 7, as a float 0.5 (NA)\n    C = 8 (NI)\n"));
    EXPECT_THAT(outcome.out, HasSubstr("  what names it\n    E entry B (pIsAvailable)\n"
                                       "    E entry C (pIsImplemented)\n"));
    const nlohmann::json features = Call({"describe", path, "E", "No", "--json"}).Json()["features"];
    EXPECT_EQ(features[0]["entries"], nlohmann::json::parse(R"([
        {"name": "A", "display_name": "A", "value": 0, "access": "RW"},
        {"name": "B", "display_name": "Big", "value": 7, "numeric_value": 0.5, "access": "NA"},
        {"name": "C", "display_name": "C", "value": 8, "access": "NI"}])"));
    EXPECT_EQ(features[1]["named_by"][0],
              nlohmann::json::parse(R"({"name": "B", "enumeration": "E", "role": "pIsAvailable"})"));
}

TEST_F(DescribeCommandTest, TakesAChildForALinkByItsFirstTwoLetters) {
    const std::string path = WriteElements(
        "<Integer Name=\"A\"><Value>0</Value></Integer>"
        "<Integer "
        "Name=\"B\"><Value>0</Value><pOther>A</pOther><p2Other>A</p2Other><pother>A</pother></Integer>");
    EXPECT_THAT(Call({"describe", path, "A"}).out, EndsWith("  what names it\n    B (pOther)\n"));
}

TEST_F(DescribeCommandTest, KeepsTextsOnTheirLines) {
    const std::string path = WriteElements(
        "<IntSwissKnife Name=\"K\"><Description>One\n  two</Description><Formula>\n 1 +\n\t2 </Formula>"
        "</IntSwissKnife>");
    const Outcome outcome = Call({"describe", path, "K"});
    EXPECT_THAT(outcome.out, HasSubstr("  description   One two\n"));
    EXPECT_THAT(outcome.out, HasSubstr("  Formula: 1 + 2\n"));
    EXPECT_THAT(outcome.out, HasSubstr("    Formula: 1 + 2\n  what names it\n    nothing\n"));
    const nlohmann::json feature = Call({"describe", path, "K", "--json"}).Json()["features"][0];
    EXPECT_EQ(feature["sources"]["formulas"][0]["text"], "\n 1 +\n\t2 ");
}

TEST_F(DescribeCommandTest, TellsWhereARegisterLeadsNowhere) {
    const std::string path = WriteElements(
        "<IntReg Name=\"A\"><Address>0</Address><Length>4</Length><pPort>Chunk</pPort></IntReg>"
        "<IntReg Name=\"B\"><Address>0</Address><Length>4</Length><pPort>Nobody</pPort></IntReg>"
        "<IntReg Name=\"C\"><Address>0</Address><Length>4</Length></IntReg>"
        "<Port Name=\"Chunk\"><ChunkID>1</ChunkID></Port>");
    EXPECT_THAT(Call({"describe", path, "A"}).out, HasSubstr("    port Chunk: nothing is behind it here\n"));
    EXPECT_THAT(Call({"describe", path, "B"}).out, HasSubstr("    port Nobody: there is none\n"));
    EXPECT_THAT(Call({"describe", path, "C"}).out, testing::Not(HasSubstr("    port ")));
    const nlohmann::json sources = Call({"describe", path, "A", "--json"}).Json()["features"][0]["sources"];
    EXPECT_EQ(sources["port"], "port Chunk: nothing is behind it here");
}

TEST_F(DescribeCommandTest, ACategoryComesFromNowhere) {
    const Outcome outcome = Call({"describe", WriteElements(gain), "Main"});
    EXPECT_THAT(outcome.out, testing::Not(HasSubstr("where it comes from")));
}

TEST_F(DescribeCommandTest, AnUnknownNameHasNoValue) {
    const std::string path = WriteElements(
        "<SwissKnife Name=\"K\"><pVariable Name=\"A\">Absent</pVariable><pVariable Name=\"B\">V</pVariable>"
        "<Formula>B</Formula></SwissKnife><Float Name=\"V\"><Value>2.5</Value></Float>");
    EXPECT_THAT(Call({"describe", path, "K"}).out,
                HasSubstr("      A = unknown from Absent\n      B = 2.5 (float) from V\n"));
    const nlohmann::json sources = Call({"describe", path, "K", "--json"}).Json()["features"][0]["sources"];
    EXPECT_EQ(sources["variables"], nlohmann::json::parse(R"([
        {"name": "A", "node": "Absent", "value": null},
        {"name": "B", "node": "V", "value": 2.5, "kind": "float"}])"));
}

TEST_F(DescribeCommandTest, ShowsWhatADivisionByZeroIsMadeOf) {
    const std::string path = WriteElements(
        "<IntSwissKnife Name=\"K\"><pVariable "
        "Name=\"D\">V</pVariable><Formula>100/(D-5)</Formula></IntSwissKnife>"
        "<Integer Name=\"V\"><Value>5</Value></Integer>");
    const Outcome outcome = Call({"describe", path, "K"});
    EXPECT_THAT(outcome.out, HasSubstr("Formula of K divides integers"));
    EXPECT_THAT(outcome.out, HasSubstr("      D = 5 (integer) from V\n"));
}

TEST_F(DescribeCommandTest, GivesJson) {
    const Outcome outcome =
        Call({"describe", WriteElements(gain), "Gain", "--register", "0x100=002A", "--json"});
    const nlohmann::json feature = outcome.Json()["features"][0];
    EXPECT_EQ(outcome.Json()["command"], "describe");
    EXPECT_EQ(feature["name"], "Gain");
    EXPECT_EQ(feature["element"], "Float");
    EXPECT_EQ(feature["class"], "float_pValue_type");
    EXPECT_EQ(feature["line"], 2);
    EXPECT_EQ(feature["column"], 1);
    EXPECT_EQ(feature["display_name"], "Analog gain");
    EXPECT_EQ(feature["implemented"], true);
    EXPECT_EQ(feature["locked"], false);
    EXPECT_EQ(feature["elements"][0]["name"], "DisplayName");
    EXPECT_EQ(feature["elements"][0]["text"], "Analog gain");
    const auto& converter = feature["sources"]["sources"][0];
    EXPECT_EQ(converter["role"], "pValue");
    EXPECT_EQ(converter["name"], "Conv");
    EXPECT_EQ(converter["formulas"].size(), 3U);
    EXPECT_EQ(converter["variables"][0],
              nlohmann::json::parse(R"({"name": "FROM", "node": "Field", "value": 42, "kind": "integer"})"));
    EXPECT_EQ(converter["formulas"][0]["refusal"], "");
    EXPECT_EQ(converter["sources"][1]["register"]["byte_order"], "BigEndian");
    EXPECT_EQ(converter["sources"][1]["register"]["mask"], "0xFF");
    EXPECT_EQ(feature["named_by"], nlohmann::json::parse(R"([{"name":"Main","role":"pFeature"}])"));
    EXPECT_TRUE(feature["invalidates"].is_array());
}

TEST_F(DescribeCommandTest, WorksOnTheSimulatedCamera) {
    const Outcome outcome = Call(
        {"describe", ProjectDescription("simulated_camera"), "ExposureTime", "--memory", SimulatedMemory()});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("pValue: Converter ExposureTimeConv"));
    EXPECT_THAT(outcome.out, HasSubstr("TICK = 100.0 (float) from ExposureTickReg"));
    EXPECT_THAT(outcome.out, HasSubstr("register 0x1004, 4 bytes BigEndian: 00 00 00 64"));
}

TEST_F(DescribeCommandTest, ALengthThatCannotBeReadLeavesNoBytesToShow) {
    const std::string path = WriteElements(
        "<Register Name=\"B\"><Address>0x40</Address><pLength>Broken</pLength></Register>"
        "<Integer Name=\"Broken\"><pValue>Nowhere</pValue></Integer>");
    const Outcome outcome = Call({"describe", path, "B"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(outcome.out, testing::Not(HasSubstr("register 0x40")));
    EXPECT_THAT(outcome.out, HasSubstr("Feature not implemented"));
}

TEST_F(DescribeCommandTest, PassesCommentsAndTextsBy) {
    const std::string path = WriteElements(
        "<Enumeration Name=\"E\"><!-- c -->text<EnumEntry Name=\"A\"><Value>0</Value></EnumEntry>"
        "<Value>0</Value></Enumeration>");
    const Outcome outcome = Call({"describe", path, "E"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(outcome.out, testing::Not(HasSubstr("text")));
}

}  // namespace
