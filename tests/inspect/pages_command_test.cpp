// The preview as a command: text, data, files, and what it refuses.

#include "inspection/description.h"
#include "tests/inspect/inspection.h"

#include <filesystem>
#include <map>
#include <utility>

#include <gmock/gmock.h>

namespace inspect_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr const char* nothing_else = R"(
Selvane Lens Controls (groups Lens)
  nothing to show: the page does not appear

Selvane Color Controls (groups Color)
  nothing to show: the page does not appear
)";

class PagesCommand : public InspectTest {
protected:
    [[nodiscard]] Outcome Pages(const std::string& file, const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments = {"pages", file};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return Call(arguments);
    }

    /// A description with an item in the group Special that lists these features.
    [[nodiscard]] std::string WriteItem(const std::string& features, const std::string& elements) const {
        return WriteElements(
            R"(<Category Name="Root"><DisplayName>Special</DisplayName><pFeature>Item</pFeature></Category>
<Category Name="Item"><Extension><ZELItemGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1000}</ZELItemGUID></Extension>)" +
            features + "</Category>\n" + elements);
    }
    static std::string Mark(char id) {
        return std::string("<Extension><ZELElementGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D200") + id +
               "}</ZELElementGUID></Extension>";
    }

    /// The lines of the feature page.
    [[nodiscard]] std::vector<std::string> FeaturePage(const std::string& file,
                                                       const std::vector<std::string>& options = {}) const {
        std::vector<std::string> page;
        bool inside = false;
        for (const std::string& line : Lines(Pages(file, options).out)) {
            if (inside && line.empty()) break;
            if (inside) page.push_back(line);
            inside = inside || line.find("Selvane Feature Controls") == 0;
        }
        return page;
    }
};

TEST_F(PagesCommand, ShowsThePageOfTheExample) {
    const Outcome outcome = Pages(ProjectDescription("first_page"));
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, std::string(R"(Selvane Exposure Controls (groups Exposure, Image, WDR)
  nothing to show: the page does not appear

Selvane Feature Controls (groups Special, Partial Scan, Partial scan)
  Lamp: slider 0 to 100, edit "0", spin button, button "Flash"
    Mode: combo "Steady" of Steady, Blink
)") + nothing_else);
}

TEST_F(PagesCommand, ReadsTheRegistersThatItIsGiven) {
    EXPECT_THAT(FeaturePage(ProjectDescription("first_page"),
                            {"--register", "0x100=2A 00 00 00", "--register", "0x108=01 00 00 00"}),
                ElementsAre("  Lamp: slider 0 to 100, edit \"42\", spin button, button \"Flash\"",
                            "    Mode: combo \"Blink\" of Steady, Blink"));
}

TEST_F(PagesCommand, TellsUnitsStepsAndWhatIsGrey) {
    const std::string file = WriteItem(
        "<pFeature>A</pFeature><pFeature>B</pFeature><pFeature>C</pFeature><pFeature>D</pFeature>",
        "<Integer Name=\"A\">" + Mark('1') +
            "<pIsLocked>Yes</pIsLocked><Value>3</Value><Min>1</Min><Max>9</Max><Inc>2</Inc></Integer>\n" +
            "<Float Name=\"B\">" + Mark('2') +
            "<pIsLocked>Yes</pIsLocked><Value>2.5</Value><Min>-1</Min><Max>10</Max><Unit>ms</Unit></"
            "Float>\n" +
            "<Boolean Name=\"C\">" + Mark('3') + "<Value>true</Value></Boolean>\n" +
            "<Enumeration Name=\"D\">" + Mark('4') +
            "<Value>7</Value><EnumEntry Name=\"X\"><Value>0</Value></EnumEntry></Enumeration>\n" +
            "<Integer Name=\"Yes\"><Value>1</Value></Integer>");
    EXPECT_THAT(FeaturePage(file),
                ElementsAre("  Item:", "    A: slider 1 to 9 by 2, edit \"3\", spin button",
                            "    B: slider -1 to 10 ms, edit \"2.500 ms\", spin button",
                            "    check box [x] C (grey)", "    D: combo \"\" of X (grey)"));
}

TEST_F(PagesCommand, TellsWhatHasNoRange) {
    const std::string file = WriteItem(
        "<pFeature>A</pFeature>", "<Integer Name=\"A\">" + Mark('1') + "<pValue>Gone</pValue></Integer>");
    EXPECT_THAT(FeaturePage(file),
                ElementsAre("  Item:", "    A: slider without a range (grey), edit \"\", spin button"));
}

TEST_F(PagesCommand, TellsWhatLiesBeyondTheEdge) {
    std::string features;
    std::string elements;
    for (int row = 0; row < 15; ++row) {
        const std::string name = "F" + std::to_string(row);
        features += "<pFeature>" + name + "</pFeature>";
        elements += "<Boolean Name=\"" + name + "\">" + Mark('1') + "<Value>true</Value></Boolean>\n";
    }
    const auto page = FeaturePage(WriteItem(features, elements));
    ASSERT_EQ(page.size(), 16U);
    EXPECT_EQ(page[13], "    check box [x] F12 (grey)");
    EXPECT_EQ(page[14], "    check box [x] F13 (grey) -- beyond the edge of the page");
}

TEST_F(PagesCommand, SaysWhereToBeginWhenNothingIsMarked) {
    const std::string file = WriteElements("<Integer Name=\"A\"><Value>1</Value></Integer>");
    const std::string note =
        file +
        ": nothing is marked for the pages. Begin with an item: a category below Root with "
        "a ZELItemGUID, which lists features with a ZELElementGUID.";
    EXPECT_THAT(Pages(file).out, testing::EndsWith("\n\n" + note + "\n"));
    EXPECT_EQ(Pages(file, {"--json"}).Json()["note"], note);
    // A mark that leads nowhere is another matter, and lint's.
    const std::string lost = WriteElements("<Integer Name=\"A\">" + Mark('1') + "<Value>1</Value></Integer>");
    EXPECT_THAT(Pages(lost).out, Not(HasSubstr("nothing is marked")));
    EXPECT_FALSE(Pages(lost, {"--json"}).Json().contains("note"));
}

TEST_F(PagesCommand, TakesEitherAccessPath) {
    const std::string file = WriteItem(
        "<pFeature>A</pFeature>",
        "<Integer Name=\"A\">" + Mark('1') +
            "<Value>5</Value><Min>1</Min><Max>9</Max><pIsImplemented>No</pIsImplemented></Integer>\n"
            "<Integer Name=\"No\"><Value>0</Value></Integer>");
    EXPECT_THAT(FeaturePage(file), ElementsAre("  nothing to show: the page does not appear"));
    const std::string combo = WriteItem(
        "<pFeature>E</pFeature>", "<Enumeration Name=\"E\">" + Mark('1') +
                                      "<Value>7</Value><EnumEntry Name=\"X\"><Value>3</Value></EnumEntry>"
                                      "<EnumEntry Name=\"Y\"><Value>7</Value></EnumEntry></Enumeration>");
    EXPECT_THAT(FeaturePage(combo, {"--access", "registers"}),
                ElementsAre("  Item:", "    E: combo \"\" of X, Y (grey)"));
    EXPECT_THAT(FeaturePage(combo, {"--access", "named"}),
                ElementsAre("  Item:", HasSubstr("E: combo \"Y\" of X, Y")));
    EXPECT_EQ(Pages(combo, {"--access", "air"}).code, 2);
}

// What authors are told to do with a description that was written for other programs.
TEST_F(PagesCommand, AFormulaTurnsALockRoundAndAConverterNumbersEntries) {
    const std::string file = WriteItem(
        "<pFeature>Width</pFeature><pFeature>TestImage</pFeature>",
        "<Integer Name=\"Width\">" + Mark('1') +
            "<pIsLocked>MayBeChanged</pIsLocked><Value>640</Value><Min>8</Min><Max>16376</Max></Integer>\n"
            "<Enumeration Name=\"TestImage\">" +
            Mark('2') +
            "<pIsLocked>MayBeChanged</pIsLocked><EnumEntry Name=\"Off\"><Value>0</Value></EnumEntry>"
            "<EnumEntry Name=\"Pattern\"><Value>1</Value></EnumEntry><pValue>Number</pValue></Enumeration>\n"
            "<IntConverter Name=\"Number\"><FormulaTo>FROM*2147483648</FormulaTo>"
            "<FormulaFrom>TO/2147483648</FormulaFrom><pValue>Reg</pValue></IntConverter>\n"
            "<IntReg Name=\"Reg\"><Address>0x10</Address><Length>4</Length><AccessMode>RW</AccessMode>"
            "<pPort>Device</pPort></IntReg>\n<IntReg "
            "Name=\"Locked\"><Address>0x14</Address><Length>4</Length>"
            "<AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>\n"
            "<IntSwissKnife Name=\"MayBeChanged\"><pVariable Name=\"LOCKED\">Locked</pVariable>"
            "<Formula>LOCKED=0</Formula></IntSwissKnife>\n<Port Name=\"Device\"/>");
    EXPECT_THAT(FeaturePage(file, {"--register", "0x10=80 00 00 00"}),
                ElementsAre("  Item:", "    Width: slider 8 to 16376, edit \"640\", spin button",
                            "    TestImage: combo \"Pattern\" of Off, Pattern"));
    EXPECT_THAT(FeaturePage(file, {"--register", "0x14=00 00 00 01"}),
                ElementsAre("  Item:", "    Width: slider 8 to 16376 (grey), edit \"640\", spin button",
                            "    TestImage: combo \"Off\" of Off, Pattern (grey)"));
}

// An integer, a float, a boolean, an enumeration and a command, with the same values whoever is asked.
class FiveKindsOfFeatures : public PagesCommand {
protected:
    [[nodiscard]] std::string FiveKinds() const {
        return WriteItem(
            "<pFeature>A</pFeature><pFeature>B</pFeature><pFeature>C</pFeature><pFeature>D</pFeature>"
            "<pFeature>E</pFeature>",
            "<Integer Name=\"A\">" + Mark('1') +
                "<pIsLocked>Yes</pIsLocked><Value>25</Value><Min>-100</Min><Max>400</Max><Inc>5</Inc>"
                "<Unit>dB</Unit></Integer>\n<Float Name=\"B\">" +
                Mark('2') +
                "<pIsLocked>Yes</pIsLocked><Value>2.5</Value><Min>-1</Min><Max>10</Max><Unit>ms</Unit>"
                "</Float>\n<Boolean Name=\"C\">" +
                Mark('3') +
                "<pIsLocked>Yes</pIsLocked><Value>true</Value></Boolean>\n<Enumeration Name=\"D\">" +
                Mark('4') +
                "<pIsLocked>Yes</pIsLocked><Value>1</Value><EnumEntry Name=\"X\"><Value>0</Value></EnumEntry>"
                "<EnumEntry Name=\"Y\"><Value>1</Value></EnumEntry></Enumeration>\n<Command Name=\"E\">" +
                Mark('5') +
                "<pIsLocked>Yes</pIsLocked><Value>0</Value><CommandValue>1</CommandValue></Command>\n"
                "<Integer Name=\"Yes\"><Value>1</Value></Integer>");
    }
};

class EitherAccessPath : public FiveKindsOfFeatures, public testing::WithParamInterface<const char*> {};

INSTANTIATE_TEST_SUITE_P(All, EitherAccessPath, testing::Values("registers", "named"));

TEST_P(EitherAccessPath, ShowsEachOfTheFiveKindsAsText) {
    EXPECT_THAT(FeaturePage(FiveKinds(), {"--access", GetParam()}),
                ElementsAre("  Item:", "    A: slider -100 to 400 by 5, edit \"25\", spin button",
                            "    B: slider -1 to 10 ms, edit \"2.500 ms\", spin button",
                            "    check box [x] C", "    D: combo \"Y\" of X, Y", "    button \"E\""));
}

TEST_P(EitherAccessPath, ShowsEachOfTheFiveKindsAsData) {
    const nlohmann::json json = Pages(FiveKinds(), {"--access", GetParam(), "--json"}).Json();
    std::map<std::string, nlohmann::json> shown;
    for (const nlohmann::json& control : json["pages"][1]["controls"]) {
        if (control.contains("feature")) shown.emplace(control["feature"], control);  // the first of each
    }
    ASSERT_EQ(shown.size(), 5U);
    for (const auto& [feature, control] : shown) EXPECT_EQ(control["enabled"], true) << feature;
    EXPECT_EQ(shown["A"]["min"], -100.0);
    EXPECT_EQ(shown["A"]["max"], 400.0);
    EXPECT_EQ(shown["A"]["step"], 5.0);
    EXPECT_EQ(shown["A"]["position"], 25);
    EXPECT_FALSE(shown["A"].contains("unit")) << "the edit of an integer shows none";
    EXPECT_EQ(shown["B"]["min"], -1.0);
    EXPECT_EQ(shown["B"]["max"], 10.0);
    EXPECT_FALSE(shown["B"].contains("step"));
    EXPECT_EQ(shown["B"]["unit"], "ms");
    EXPECT_EQ(shown["C"]["checked"], true);
    EXPECT_EQ(shown["D"]["text"], "Y");
    EXPECT_EQ(shown["E"]["kind"], "button");
}

TEST_F(FiveKindsOfFeatures, DrawsTheSamePictureOfTheFiveKinds) {
    std::string pictures[2];
    for (const auto& [access_path, picture] :
         {std::pair("registers", &pictures[0]), std::pair("named", &pictures[1])}) {
        const std::string folder = PathOf(access_path);
        EXPECT_EQ(Pages(FiveKinds(), {"--access", access_path, "--svg", folder}).code, 0);
        *picture = selvane_inspect::read_file((std::filesystem::u8path(folder) / "feature.svg").u8string());
    }
    EXPECT_EQ(pictures[0], pictures[1]);
    for (const char* kind : {"slider", "edit", "spin-button", "check-box", "combo", "button"}) {
        EXPECT_THAT(pictures[0], HasSubstr(std::string("<g class=\"") + kind + "\""));
    }
    EXPECT_THAT(pictures[0], HasSubstr(">25</text>"));
}

TEST_F(PagesCommand, Json) {
    const nlohmann::json json = Pages(ProjectDescription("first_page"), {"--json"}).Json();
    EXPECT_EQ(json["command"], "pages");
    EXPECT_EQ(json["file"], ProjectDescription("first_page"));
    EXPECT_EQ(json["access"], "registers");
    EXPECT_EQ(json["pictures"], nlohmann::json::array());
    ASSERT_EQ(json["pages"].size(), 4U);
    const nlohmann::json& exposure = json["pages"][0];
    EXPECT_EQ(exposure, nlohmann::json::parse(R"({"page": "exposure", "title": "Selvane Exposure Controls",
        "groups": ["Exposure", "Image", "WDR"], "offered": false, "width": 428, "height": 457, "controls": []})"));
    const nlohmann::json& controls = json["pages"][1]["controls"];
    ASSERT_EQ(controls.size(), 7U);
    EXPECT_EQ(controls[0],
              nlohmann::json::parse(
                  R"({"kind": "label", "left": 20, "top": 18, "width": 110, "height": 23, "text": "Lamp"})"));
    EXPECT_EQ(controls[1],
              nlohmann::json::parse(
                  R"({"kind": "slider", "left": 135, "top": 18, "width": 140, "height": 23, "text": "",
        "feature": "LampBrightness", "enabled": true, "min": 0.0, "max": 100.0, "step": 1.0,
        "lowest_position": 0, "highest_position": 100, "position": 0})"));
    EXPECT_EQ(controls[2]["kind"], "edit");
    EXPECT_EQ(controls[2]["text"], "0");
    EXPECT_EQ(controls[3]["kind"], "spin button");
    EXPECT_EQ(controls[4]["kind"], "button");
    EXPECT_EQ(controls[4]["text"], "Flash");
    EXPECT_EQ(controls[6]["kind"], "combo");
    EXPECT_EQ(controls[6]["text"], "Steady");
    EXPECT_EQ(controls[6]["strings"], nlohmann::json::parse(R"(["Steady", "Blink"])"));
}

TEST_F(PagesCommand, DrawsAPictureOfEachPageThatAppears) {
    const std::string folder = PathOf("new/pictures");
    const Outcome outcome = Pages(ProjectDescription("first_page"), {"--svg", folder});
    EXPECT_EQ(outcome.code, 0);
    const auto picture = (std::filesystem::u8path(folder) / "feature.svg").u8string();
    EXPECT_THAT(outcome.out, HasSubstr("\npicture " + picture + "\n"));
    EXPECT_THAT(selvane_inspect::read_file(picture), HasSubstr("<title>Selvane Feature Controls</title>"));
    std::size_t files = 0;
    for ([[maybe_unused]] const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::u8path(folder)))
        ++files;
    EXPECT_EQ(files, 1U);

    const nlohmann::json json = Pages(ProjectDescription("first_page"), {"--svg", folder, "--json"}).Json();
    EXPECT_EQ(json["pictures"], nlohmann::json::array({picture}));
}

TEST_F(PagesCommand, RefusesAFolderThatCannotBeMade) {
    const std::string file = Write("in-the-way", "");
    const Outcome outcome = Pages(ProjectDescription("first_page"), {"--svg", file});
    EXPECT_EQ(outcome.code, 2);
    EXPECT_EQ(outcome.err, "selvane_inspect: cannot make the folder " + file + "\n");
}

TEST_F(PagesCommand, RefusesWhatThePagesWouldNotSurvive) {
    const std::string circle =
        WriteItem("<pFeature>A</pFeature>",
                  "<Integer Name=\"A\">" + Mark('1') +
                      "<pValue>B</pValue></Integer>\n<Integer Name=\"B\"><pValue>A</pValue></Integer>");
    const Outcome outcome = Pages(circle);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "selvane_inspect: the pages would not survive A: a circle: A needs B needs A\n");

    const std::string division = WriteItem(
        "<pFeature>A</pFeature>",
        "<Integer Name=\"A\">" + Mark('1') +
            "<pValue>K</pValue></Integer>\n<IntSwissKnife Name=\"K\"><Formula>1/0</Formula></IntSwissKnife>");
    EXPECT_EQ(Pages(division).code, 1);
    EXPECT_THAT(Pages(division).err,
                HasSubstr("the pages would not survive A: Formula of K divides integers"));
}

TEST_F(PagesCommand, HazardsThatNoPageTouchesAreNone) {
    const std::string file =
        WriteItem("<pFeature>A</pFeature>",
                  "<Boolean Name=\"A\">" + Mark('1') +
                      "<Value>true</Value></Boolean>\n<Integer Name=\"B\"><pValue>B</pValue></Integer>");
    EXPECT_THAT(FeaturePage(file), ElementsAre("  Item:", "    check box [x] A (grey)"));
}

TEST_F(PagesCommand, CategoriesThatListEachOtherDoNotKeepItBusy) {
    const std::string file = WriteElements(R"(<Category Name="Root"><pFeature>A</pFeature></Category>
<Category Name="A"><pFeature>Root</pFeature></Category>)");
    EXPECT_EQ(Pages(file).code, 0);
    EXPECT_THAT(Pages(file).out, Not(HasSubstr("slider")));
}

TEST_F(PagesCommand, RefusesWhatCannotBeLoaded) {
    const std::string missing = PathOf("missing.xml");
    EXPECT_EQ(Pages(missing).code, 2);
    EXPECT_THAT(Pages(missing).err, HasSubstr("cannot read " + missing));
    const std::string throwing = WriteElements(
        R"(<IntSwissKnife Name="K"><pVariable Name="E.Entry">E</pVariable><Formula>1</Formula></IntSwissKnife>
<Enumeration Name="E"><Value>0</Value><EnumEntry Name="On"><Value>0</Value></EnumEntry></Enumeration>)");
    EXPECT_EQ(Pages(throwing).code, 2);
    EXPECT_THAT(Pages(throwing).err, HasSubstr("an exception left the load"));
}

TEST_F(PagesCommand, RefusesAnEntryThatTheHostWouldNotSurvive) {
    const std::string file =
        WriteItem("<pFeature>E</pFeature>",
                  "<Enumeration Name=\"E\">" + Mark('1') +
                      "<EnumEntry Name=\"Sound\"><Value>0</Value></EnumEntry><EnumEntry "
                      "Name=\"Round\"><pIsImplemented>A"
                      "</pIsImplemented><Value>1</Value></EnumEntry><Value>0</Value></Enumeration>"
                      "<Integer Name=\"A\"><pValue>A</pValue></Integer>");
    const Outcome outcome = Pages(file);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_THAT(outcome.err, HasSubstr("the pages would not survive Round: a circle: A needs A"));
}

}  // namespace
}  // namespace inspect_test
