// The command around the rules: what it prints, what it leaves out, and how it ends.

#include "apps/inspect/lint/lint_context.h"
#include "data_paths.h"
#include "inspection/description.h"
#include "tests/inspect/lint_fixture.h"

#include <set>

#include <gmock/gmock.h>

namespace inspect_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* one_of_each = R"(<Integer Name="Error"/>
<Float Name="Warning"><Value>1</Value></Float>
<IntReg Name="Note"><Address>0</Address><Length>4</Length><PollingTime>1</PollingTime></IntReg>)";
constexpr const char* fine = R"(<Integer Name="I"><Value>1</Value></Integer>)";
constexpr const char* only_note =
    R"(<IntReg Name="N"><Address>0</Address><Length>4</Length><PollingTime>1</PollingTime></IntReg>)";

class LintCommand : public LintTest {};

TEST_F(LintCommand, PrintsAFindingALineThenTheReasonsThenASum) {
    const Outcome outcome = LintAll(one_of_each);
    const std::string file = PathOf("description.xml");
    EXPECT_THAT(
        Lines(outcome.out),
        ElementsAre(file + ":2:1: error: Integer Error becomes no node [no-node]",
                    file + ":3:1: warning: Warning states no Min, so that its minimum is "
                           "2.2250738585072014e-308 [float-without-min]",
                    file + ":4:59: note: nothing reads PollingTime in IntReg elements of this kind "
                           "[unread-element]",
                    "    no-node: An element without the children that decide its class becomes no node, in "
                    "silence. Give it a Value, a pValue or a pIndex, as its kind takes them.",
                    "    unread-element: Other programs may read it, but the pages do not. Do not count on "
                    "it on the pages.",
                    "    float-without-min: The default minimum is the smallest positive number: negative "
                    "values are refused, and sliders begin there. State a Min or pMin.",
                    file + ": 1 error, 1 warning, 1 note"));
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.code, 1);
}

TEST_F(LintCommand, PrintsTheFileAloneForAFindingOfTheWholeFile) {
    const Outcome outcome = Call({"lint", WriteElements(fine)});
    EXPECT_THAT(outcome.out, StartsWith(PathOf("description.xml") + ": note: "));
    EXPECT_THAT(outcome.out, HasSubstr("[no-marks]\n"));
}

TEST_F(LintCommand, PrintsPositionsInTheFirstLine) {
    const std::string file =
        Write("one_line.xml", "<RegisterDescription><Integer Name=\"I\"/></RegisterDescription>");
    EXPECT_THAT(Call({"lint", file}).out, HasSubstr(file + ":1:22: error: Integer I becomes no node"));
}

TEST_F(LintCommand, SaysSoWhenThereIsNothing) {
    const Outcome outcome = LintAll(fine);
    EXPECT_EQ(outcome.out, PathOf("description.xml") + ": 0 errors, 0 warnings, 0 notes\n");
    EXPECT_EQ(outcome.code, 0);
}

TEST_F(LintCommand, TellsHowOftenOnOneLine) {
    const Outcome outcome = LintAll(
        R"(<IntReg Name="A"><Address>0</Address><Length>4</Length><PollingTime>1</PollingTime></IntReg>
<IntReg Name="B"><Address>0</Address><Length>4</Length><PollingTime>1</PollingTime></IntReg>)");
    EXPECT_THAT(Lines(outcome.out).at(0),
                HasSubstr(":2:56: note: nothing reads PollingTime in IntReg elements of "
                          "this kind (2 times) [unread-element]"));
    EXPECT_THAT(outcome.out, HasSubstr(": 0 errors, 0 warnings, 1 note\n"));
}

TEST_F(LintCommand, Json) {
    const Outcome outcome = LintAll(one_of_each, {"--json"});
    const nlohmann::json json = outcome.Json();
    EXPECT_EQ(json["command"], "lint");
    EXPECT_EQ(json["errors"], 1);
    EXPECT_EQ(json["warnings"], 1);
    EXPECT_EQ(json["notes"], 1);
    ASSERT_EQ(json["files"].size(), 1U);
    const nlohmann::json& file = json["files"][0];
    EXPECT_EQ(file["file"], PathOf("description.xml"));
    EXPECT_EQ(file["errors"], 1);
    EXPECT_EQ(file["warnings"], 1);
    EXPECT_EQ(file["notes"], 1);
    EXPECT_EQ(file["findings"].at(0), nlohmann::json::parse(R"({
        "rule": "no-node", "severity": "error", "line": 2, "column": 1,
        "message": "Integer Error becomes no node", "count": 1,
        "why": "An element without the children that decide its class becomes no node, in silence.",
        "what_to_do": "Give it a Value, a pValue or a pIndex, as its kind takes them.",
        "places": [{"line": 2, "column": 1}]})"));
    EXPECT_EQ(outcome.code, 1);
}

TEST_F(LintCommand, JsonWithoutFindings) {
    const nlohmann::json json = LintAll(fine, {"--json"}).Json();
    EXPECT_EQ(json["files"][0]["findings"], nlohmann::json::array());
    EXPECT_EQ(json["errors"], 0);
}

std::set<std::string> RulesIn(const nlohmann::json& json) {
    std::set<std::string> rules;
    for (const nlohmann::json& file : json["files"]) {
        for (const nlohmann::json& finding : file["findings"])
            rules.insert(finding["rule"].get<std::string>());
    }
    return rules;
}

TEST_F(LintCommand, OnlyAndIgnoreChooseRules) {
    const auto rules = [&](const std::vector<std::string>& options) {
        std::vector<std::string> all = {"--json"};
        all.insert(all.end(), options.begin(), options.end());
        return RulesIn(LintAll(one_of_each, all).Json());
    };
    EXPECT_THAT(rules({}), ElementsAre("float-without-min", "no-node", "unread-element"));
    EXPECT_THAT(rules({"--only", "no-node"}), ElementsAre("no-node"));
    EXPECT_THAT(rules({"--only", "no-node,unread-element"}), ElementsAre("no-node", "unread-element"));
    EXPECT_THAT(rules({"--only", "no-node", "--only", "unread-element"}),
                ElementsAre("no-node", "unread-element"));
    EXPECT_THAT(rules({"--ignore", "no-node"}), ElementsAre("float-without-min", "unread-element"));
    EXPECT_THAT(rules({"--ignore", "no-node,float-without-min,unread-element"}), IsEmpty());
    EXPECT_THAT(rules({"--only", "no-node", "--ignore", "no-node"}), IsEmpty());
    EXPECT_THAT(rules({"--only", "circle"}), IsEmpty());
}

TEST_F(LintCommand, RefusesRulesThatDoNotExist) {
    for (const char* option : {"--only", "--ignore"}) {
        const Outcome slip = LintAll(fine, {option, "no-nod"});
        EXPECT_EQ(slip.code, 2);
        EXPECT_EQ(slip.err, "selvane_inspect: there is no rule no-nod (did you mean no-node?)\n");
        const Outcome other = LintAll(fine, {option, "everything-else"});
        EXPECT_EQ(other.code, 2);
        EXPECT_EQ(other.err, "selvane_inspect: there is no rule everything-else (--rules lists them)\n");
    }
}

TEST_F(LintCommand, FailsOnWhatItIsTold) {
    const auto code = [&](const char* elements, const std::vector<std::string>& options) {
        return LintAll(elements, options).code;
    };
    EXPECT_EQ(code(one_of_each, {"--fail-on", "error"}), 1);
    EXPECT_EQ(code(one_of_each, {"--fail-on", "error", "--ignore", "no-node"}), 0);
    EXPECT_EQ(code(one_of_each, {"--ignore", "no-node"}), 1);  // warnings by default
    EXPECT_EQ(code(one_of_each, {"--fail-on", "warning", "--ignore", "no-node"}), 1);
    EXPECT_EQ(code(only_note, {}), 0);
    EXPECT_EQ(code(only_note, {"--fail-on", "note"}), 1);
    EXPECT_EQ(code(fine, {"--fail-on", "note"}), 0);
    EXPECT_EQ(code(one_of_each, {"--fail-on", "never"}), 0);
    const Outcome wrong = LintAll(fine, {"--fail-on", "sometimes"});
    EXPECT_EQ(wrong.code, 2);
    EXPECT_EQ(Lines(wrong.err).size(), 1U);
}

TEST_F(LintCommand, ExaminesManyFilesAndAddsThemUp) {
    const std::string bad = Write("bad.xml", AroundElements(one_of_each));
    const std::string good = Write("good.xml", AroundElements(fine));
    const Outcome outcome = Call({"lint", good, bad, "--only", "no-node"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_THAT(
        Lines(outcome.out),
        ElementsAre(good + ": 0 errors, 0 warnings, 0 notes",
                    bad + ":2:1: error: Integer Error becomes no node [no-node]", StartsWith("    no-node: "),
                    bad + ": 1 error, 0 warnings, 0 notes", "2 files: 1 error, 0 warnings, 0 notes"));
    const nlohmann::json json = Call({"lint", "--json", good, bad}).Json();
    ASSERT_EQ(json["files"].size(), 2U);
    EXPECT_EQ(json["files"][1]["file"], bad);
    EXPECT_EQ(json["errors"], 1);
}

TEST_F(LintCommand, AFileThatCannotBeUsedKeepsNoOtherFromBeingExamined) {
    const std::string missing = PathOf("missing.xml");
    const std::string broken = Write("broken.xml", "<RegisterDescription>\n  <Integer>");
    const std::string bad = Write("bad.xml", AroundElements(one_of_each));
    const Outcome outcome = Call({"lint", missing, broken, bad, "--fail-on", "never"});
    EXPECT_EQ(outcome.code, 2);
    const auto errors = Lines(outcome.err);
    ASSERT_EQ(errors.size(), 2U);
    EXPECT_THAT(errors[0], StartsWith("selvane_inspect: cannot read " + missing));
    EXPECT_THAT(errors[1], StartsWith("selvane_inspect: " + broken + ":2:"));
    EXPECT_THAT(errors[1], HasSubstr(": not well-formed: "));
    EXPECT_THAT(outcome.out, HasSubstr("[no-node]"));
}

TEST_F(LintCommand, ShowsProgressOnATerminalAndForManyFilesAlone) {
    const std::string one = Write("one.xml", AroundElements(fine));
    const std::string two = Write("two.xml", AroundElements(fine));
    EXPECT_THAT(Call({"lint", one, two}, true).err, HasSubstr("two.xml"));
    EXPECT_EQ(Call({"lint", one, two}, false).err, "");
    EXPECT_EQ(Call({"lint", one}, true).err, "");
}

TEST_F(LintCommand, WantsAFile) {
    const Outcome outcome = Call({"lint"});
    EXPECT_EQ(outcome.code, 2);
    EXPECT_EQ(outcome.err, "selvane_inspect: lint needs a FILE (--help tells the options)\n");
}

TEST_F(LintCommand, ListsItsRules) {
    const Outcome outcome = Call({"lint", "--rules"});
    EXPECT_EQ(outcome.code, 0);
    const auto lines = Lines(outcome.out);
    ASSERT_EQ(lines.size(), 3 * static_cast<std::size_t>(selvane_inspect::all_lint_rules().size()));
    EXPECT_EQ(lines[0], "load-message (warning)");
    EXPECT_EQ(lines[1], "    The engine says so while it loads, and leaves out what it speaks of.");
    EXPECT_EQ(lines[2], "    Mend the element that it names.");

    const nlohmann::json json = Call({"lint", "--rules", "--json"}).Json();
    EXPECT_EQ(json["command"], "lint");
    ASSERT_EQ(json["rules"].size(), lines.size() / 3);
    EXPECT_EQ(json["rules"][0], nlohmann::json::parse(R"({"rule": "load-message", "severity": "warning",
        "why": "The engine says so while it loads, and leaves out what it speaks of.",
        "what_to_do": "Mend the element that it names."})"));
}

TEST(LintRules, HaveNamesOfTheirOwnAndSayWhy) {
    std::set<std::string_view> names;
    for (const selvane_inspect::lint_rule& rule : selvane_inspect::all_lint_rules()) {
        EXPECT_TRUE(names.insert(rule.name).second) << rule.name;
        EXPECT_EQ(rule.name.find_first_not_of("abcdefghijklmnopqrstuvwxyz-"), std::string_view::npos)
            << rule.name;
        EXPECT_EQ(rule.why.substr(rule.why.size() - 1), ".") << rule.name;
        EXPECT_EQ(rule.what_to_do.substr(rule.what_to_do.size() - 1), ".") << rule.name;
    }
}

// People write these into their scripts.
TEST(LintRules, KeepTheirNames) {
    std::vector<std::string> rules;
    for (const selvane_inspect::lint_rule& rule : selvane_inspect::all_lint_rules())
        rules.push_back(std::string(rule.name) + " " + std::string(severity_word(rule.level)));
    EXPECT_THAT(
        rules,
        testing::UnorderedElementsAre(
            "load-message warning", "ask-message warning", "read-message note", "load-exception error",
            "circle error", "category-circle warning", "deep-chain warning", "division-by-zero warning",
            "formula-refused error", "round-one-argument error", "formula-breaks-off warning",
            "formula-text-ignored warning", "operator-order warning", "integer-division warning",
            "guarded-division warning", "no-node error", "unknown-element warning", "unread-element note",
            "cachable-not-read warning", "no-name warning", "duplicate-name error", "silent-link warning",
            "float-without-min warning", "float-limit warning", "no-marks note", "mark-guid warning",
            "mark-group warning", "mark-kind warning", "mark-empty warning", "mark-twice warning",
            "mark-lost warning", "mark-range warning", "mark-steps warning", "mark-unit warning",
            "mark-edge warning", "mark-lock note", "mark-grey note", "mark-entries warning"));
}

std::string InATable(std::string_view text) {
    std::string cell;
    for (const char c : text) cell += c == '|' ? std::string("\\|") : std::string(1, c);
    return cell;
}

TEST(LintRules, StandInTheirDocumentAsTheyAre) {
    const std::string document =
        selvane_inspect::read_file(std::string(SELVANE_SOURCE_DIR) + "/docs/inspector.md");
    for (const selvane_inspect::lint_rule& rule : selvane_inspect::all_lint_rules()) {
        EXPECT_THAT(document, HasSubstr("\n| `" + std::string(rule.name) + "` | " +
                                        std::string(severity_word(rule.level)) + " | " + InATable(rule.why) +
                                        " | " + InATable(rule.what_to_do) + " |\n"));
    }
}

}  // namespace
}  // namespace inspect_test
