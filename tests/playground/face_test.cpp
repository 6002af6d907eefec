#include "tests/playground/playground_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace playground_test {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

using Lines = std::vector<std::string>;

Lines CallsOf(const json& answer) { return answer.at("calls").get<Lines>(); }

// Only the accesses of the pages to their features.
Lines WritesOf(const json& answer) {
    Lines writes;
    for (const std::string& line : CallsOf(answer)) {
        if (line.rfind("Set ", 0) == 0) writes.push_back(line);
    }
    return writes;
}

/// The example of the README on its page.
class FirstPage : public PlaygroundTest {
protected:
    FirstPage() {
        opened_ = Open(Bundled("first_page"));
        shown_ = Show("feature");
    }
    [[nodiscard]] std::size_t The(const char* kind) const { return NumberOf(shown_.at("layout"), kind); }
    json Do(const char* kind, const json& deed) { return Act("feature", The(kind), deed); }
    [[nodiscard]] const json& StateOf(const json& answer, const char* kind) const {
        return answer.at("state").at(The(kind));
    }

    json opened_;
    json shown_;
};

TEST_F(FirstPage, IsOfferedAlone) {
    ASSERT_EQ(opened_.at("pages").size(), 4U);
    for (const json& page : opened_.at("pages")) {
        EXPECT_EQ(page.at("offered"), page.at("page") == "feature") << page;
    }
    EXPECT_EQ(opened_.at("pages")[1].at("title"), "Selvane Feature Controls");
    EXPECT_EQ(opened_.at("edit_characters"), ",-./0123456789");
    EXPECT_FALSE(Show("lens").contains("layout"));
}

TEST_F(FirstPage, TellsTheNamesBehindItsControls) {
    const json& slider = shown_.at("layout").at(The("slider"));
    EXPECT_EQ(slider.at("item"), "Lamp");
    EXPECT_EQ(slider.at("element"), "");
    EXPECT_EQ(slider.at("feature"), "LampBrightness");
    const json& combo = shown_.at("layout").at(The("combo"));
    EXPECT_EQ(combo.at("element"), "Mode");
    EXPECT_EQ(combo.at("entries"), (json{"Steady", "Blink"}));
}

TEST_F(FirstPage, FollowsASlider) {
    const json moved = Do("slider", {{"deed", "move"}, {"value", 7}});
    EXPECT_THAT(WritesOf(moved), ElementsAre("Set device 3 0x00000100 <- 07 00 00 00, ok"));
    EXPECT_EQ(StateOf(moved, "slider").at("position"), 7);
    EXPECT_EQ(StateOf(moved, "spin button").at("position"), 7);
    EXPECT_EQ(StateOf(moved, "edit").at("text"), "7");
}

TEST_F(FirstPage, FollowsASpinButton) {
    const json moved = Do("spin button", {{"deed", "move"}, {"value", 100}});
    EXPECT_THAT(WritesOf(moved), ElementsAre("Set device 3 0x00000100 <- 64 00 00 00, ok"));
    EXPECT_EQ(StateOf(moved, "slider").at("position"), 100);
}

TEST_F(FirstPage, TakesATypedValue) {
    EXPECT_EQ(Do("edit", {{"deed", "focus"}}).at("editable"), true);
    const json typed = Do("edit", {{"deed", "commit"}, {"text", " 33 "}});
    EXPECT_THAT(WritesOf(typed), ElementsAre("Set device 3 0x00000100 <- 21 00 00 00, ok"));
    EXPECT_EQ(StateOf(typed, "edit").at("text"), "33");
    EXPECT_FALSE(typed.contains("box"));
}

TEST_F(FirstPage, ShowsTheBoxForATextThatIsNoValue) {
    const json typed = Do("edit", {{"deed", "commit"}, {"text", "1/2"}});
    EXPECT_THAT(CallsOf(typed), IsEmpty());
    EXPECT_EQ(typed.at("box").at("text"), "Error parsing value!");
    EXPECT_EQ(typed.at("box").at("caption"), "Error");
    EXPECT_EQ(StateOf(typed, "edit").at("text"), "1/2");  // until the next refresh
    const json refreshed = Ask({{"do", "refresh"}, {"page", "feature"}});
    EXPECT_EQ(StateOf(refreshed, "edit").at("text"), "0");
}

TEST_F(FirstPage, PicksAndPushes) {
    const json picked = Do("combo", {{"deed", "pick"}, {"value", 1}});
    EXPECT_THAT(WritesOf(picked), ElementsAre("Set device 3 0x00000108 <- 01 00 00 00, ok"));
    EXPECT_EQ(StateOf(picked, "combo").at("text"), "Blink");
    const json pushed = Do("button", {{"deed", "push"}});
    EXPECT_THAT(WritesOf(pushed), ElementsAre("Set device 3 0x00000104 <- 01 00 00 00, ok"));
}

TEST_F(FirstPage, ShowsWhatARegisterHoldsThen) {
    const json poked = Ask({{"do", "poke"}, {"address", "0x108"}, {"bytes", "01"}});
    EXPECT_THAT(poked.at("registers").get<std::string>(),
                HasSubstr("0x00000100: 00 00 00 00 00 00 00 00 01"));
    EXPECT_THAT(CallsOf(poked), IsEmpty());
    const json refreshed = Ask({{"do", "refresh"}, {"page", "feature"}});
    EXPECT_EQ(StateOf(refreshed, "combo").at("selected"), 1);
    EXPECT_THAT(CallsOf(refreshed), Contains("Get device 3 0x00000108 -> 01 00 00 00, ok"));
}

TEST_F(FirstPage, RemembersTheRegistersOfBefore) {
    Do("slider", {{"deed", "move"}, {"value", 5}});
    Do("slider", {{"deed", "move"}, {"value", 6}});
    const std::string before = Ask({{"do", "before"}}).at("registers");
    EXPECT_THAT(before, HasSubstr("0x00000100: 05"));
    const json reopened =
        Ask({{"do", "open"}, {"access", "registers"}, {"registers", before}}, Bundled("first_page"));
    EXPECT_FALSE(reopened.contains("error"));
    EXPECT_EQ(StateOf(Show("feature"), "slider").at("position"), 5);
}

TEST_F(FirstPage, KeepsItsPagesBehindABrokenText) {
    const json broken = Open("<RegisterDescription>\n  <Integer>\n</RegisterDescription>");
    EXPECT_EQ(broken.at("error").at("line"), 3);
    EXPECT_THAT(broken.at("error").at("message").get<std::string>(), Not(IsEmpty()));
    EXPECT_EQ(Do("slider", {{"deed", "move"}, {"value", 1}}).at("calls").empty(), false);
}

TEST_F(FirstPage, RefusesRequestsThatMeanNothing) {
    for (const json& request : {json{{"do", "dance"}}, json{{"do", "show"}, {"page", "none"}}, json::object(),
                                json{{"do", "act"}}, json{{"do", "poke"}, {"address", "x"}, {"bytes", "01"}},
                                json{{"do", "poke"}, {"address", "1"}, {"bytes", "1"}},
                                json{{"do", "act"}, {"page", "feature"}, {"control", 99}, {"deed", "push"}},
                                json{{"do", "act"}, {"page", "feature"}, {"control", 1}, {"deed", "kick"}}}) {
        EXPECT_TRUE(Ask(request).contains("error")) << request;
    }
    EXPECT_TRUE(json::parse(engine_.answer("no json")).contains("error"));
}

// A deed that a control does not know is no access to whatever it holds.
TEST_F(FirstPage, DoesNothingForADeedThatAControlDoesNotKnow) {
    const json deeds[] = {{{"deed", "move"}, {"value", 1}},
                          {{"deed", "commit"}, {"text", "1"}},
                          {{"deed", "pick"}, {"value", 1}},
                          {{"deed", "toggle"}},
                          {{"deed", "push"}}};
    const char* const kinds[] = {"slider", "edit", "combo", "check box", "button"};
    for (std::size_t at = 0; at < shown_.at("layout").size(); ++at) {
        const std::string kind = shown_.at("layout")[at].at("kind");
        for (std::size_t deed = 0; deed < std::size(deeds); ++deed) {
            if (kind == kinds[deed] || (kind == "spin button" && deed == 0)) continue;
            const json answer = Act("feature", at, deeds[deed]);
            EXPECT_THAT(CallsOf(answer), IsEmpty()) << kind << ' ' << deeds[deed];
        }
    }
}

// The page that somebody looks at does not wait for the others.
TEST_F(PlaygroundTest, OffersTheCameraToOnePageFirst) {
    const std::string text = Bundled("simulated_camera");
    const json opened =
        Ask({{"do", "open"}, {"access", "named"}, {"simulated", true}, {"page", "lens"}}, text);
    for (const json& page : opened.at("pages"))
        EXPECT_EQ(page.contains("offered"), page.at("page") == "lens") << page;
    const json offered = Ask({{"do", "offer"}});
    for (const json& page : offered.at("pages")) EXPECT_TRUE(page.at("offered")) << page;
    EXPECT_EQ(WritesOf(offered), Lines());
    // Without anything to show it goes on to the next.
    const json other = Ask({{"do", "open"}, {"access", "named"}, {"page", "lens"}}, Bundled("first_page"));
    EXPECT_EQ(other.at("pages")[1].at("offered"), true);
    EXPECT_EQ(other.at("pages")[2].at("offered"), false);
    EXPECT_FALSE(other.at("pages")[3].contains("offered"));
}

// Each page would read it anew, as often as it is asked for its items.
TEST_F(PlaygroundTest, ReadsADescriptionWithoutMarksOnce) {
    const std::string text = Bundled("identity");
    Lines calls = CallsOf(Ask({{"do", "open"}, {"access", "named"}, {"page", "exposure"}}, text));
    for (const json& answer : {Ask({{"do", "offer"}}), Show("exposure"), Show("lens")}) {
        const Lines more = CallsOf(answer);
        calls.insert(calls.end(), more.begin(), more.end());
    }
    const auto reads = std::count_if(calls.begin(), calls.end(), [](const std::string& line) {
        return line.rfind("Get device 2 ", 0) == 0;
    });
    EXPECT_EQ(reads, 1) << json(calls);
}

TEST_F(PlaygroundTest, NeedsADescriptionFirst) {
    EXPECT_TRUE(Show("feature").contains("error"));
    EXPECT_TRUE(Ask({{"do", "registers"}}).contains("error"));
    EXPECT_TRUE(Open("").contains("error"));
}

constexpr const char* with_switch = R"(<RegisterDescription>
  <Category Name="Root"><pFeature>Page</pFeature></Category>
  <Category Name="Page"><DisplayName>Special</DisplayName><pFeature>Item</pFeature></Category>
  <Category Name="Item">
    <Extension><ZELItemGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1000}</ZELItemGUID></Extension>
    <pFeature>Big</pFeature><pFeature>Power</pFeature>
  </Category>
  <Integer Name="Big">
    <Extension><ZELElementGUID>{B57D3000-0AC6-4819-A609-272A33140ACA}</ZELElementGUID></Extension>
    <pIsLocked>Yes</pIsLocked><pValue>BigReg</pValue><Min>0</Min><Max>50000</Max>
  </Integer>
  <Boolean Name="Power">
    <Extension><ZELElementGUID>{B57D3001-0AC6-4819-A609-272A33140ACA}</ZELElementGUID></Extension>
    <pIsLocked>Yes</pIsLocked><pValue>PowerReg</pValue>
  </Boolean>
  <Integer Name="Yes"><Value>1</Value></Integer>
  <IntReg Name="BigReg"><Address>0x10</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Endianess>LittleEndian</Endianess></IntReg>
  <IntReg Name="PowerReg"><Address>0x20</Address><Length>1</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>
  <Port Name="Device"/>
</RegisterDescription>)";

TEST_F(PlaygroundTest, TogglesACheckBox) {
    Open(with_switch);
    const std::size_t box = NumberOf(Show("feature").at("layout"), "check box");
    EXPECT_EQ(Act("feature", box, {{"deed", "toggle"}}).at("state")[box].at("checked"), true);
    const json again = Act("feature", box, {{"deed", "toggle"}});
    EXPECT_EQ(again.at("state")[box].at("checked"), false);
    EXPECT_THAT(WritesOf(again), ElementsAre("Set device 3 0x00000020 <- 00, ok"));
}

// The author sees what the windows would make of such a range.
TEST_F(PlaygroundTest, CutsPositionsToThoseOfAWindow) {
    Open(with_switch);
    const json layout = Show("feature").at("layout");
    EXPECT_EQ(layout.at(NumberOf(layout, "slider")).at("high"), 50000 - 65536);
}

TEST_F(PlaygroundTest, ReachesTheFeaturesByTheAccessAskedFor) {
    const char* const starts[][2] = {{"named", "Get device 4 "}, {"registers", "Get device 3 "}};
    for (const auto& [access, start] : starts) {
        Open(Bundled("first_page"), access);
        const Lines calls = CallsOf(Show("feature"));
        EXPECT_THAT(calls, Contains(StartsWith(start))) << access;
        EXPECT_THAT(calls, testing::Each(AnyOf(StartsWith(start), StartsWith("QuerySupported vendor "))))
            << access;
    }
}

TEST_F(PlaygroundTest, HasTheFirmwareOfTheSimulatedCamera) {
    const std::string text = Bundled("simulated_camera");
    const json with = Open(text, "named", true);
    EXPECT_FALSE(with.contains("error"));
    EXPECT_THAT(Ask({{"do", "registers"}}).at("registers").get<std::string>(), HasSubstr("0x00000100:"));
    for (const json& page : with.at("pages")) EXPECT_TRUE(page.at("offered")) << page;
}

TEST_F(PlaygroundTest, LetsTheInspectorLookAtTheText) {
    const json lint = Ask({{"do", "inspect"}, {"arguments", {"lint", "FILE"}}},
                          "<RegisterDescription>\n<Integr/>\n</RegisterDescription>");
    const json& findings = lint.at("output").at("files")[0].at("findings");
    const bool finds_the_word = std::any_of(findings.begin(), findings.end(),
                                            [](const json& finding) { return finding.at("line") == 2; });
    EXPECT_TRUE(finds_the_word) << findings;
    const json described = Ask({{"do", "inspect"},
                                {"arguments", {"describe", "FILE", "LampBrightness"}},
                                {"registers", "0x100: 09"}},
                               Bundled("first_page"));
    EXPECT_EQ(described.at("output").at("features")[0].at("value"), 9);
}

TEST_F(PlaygroundTest, NamesWhatWouldEndTheEngine) {
    std::string text = Bundled("first_page");
    const std::string value = "<pValue>LampBrightnessReg</pValue>";
    text.replace(text.find(value), value.size(), "<pValue>Ratio</pValue>");
    const std::string port = "<Port Name=\"Device\"/>";
    text.insert(text.find(port),
                "<IntSwissKnife Name=\"Ratio\"><pVariable Name=\"A\">LampModeReg</pVariable>"
                "<Formula>100/A</Formula></IntSwissKnife>");
    const json asked =
        Ask({{"do", "inspect"}, {"arguments", {"pages", "FILE", "--access", "registers"}}}, text);
    EXPECT_THAT(asked.at("output").at("error").at("message").get<std::string>(), HasSubstr("Ratio"));
}

}  // namespace
}  // namespace playground_test
