// selvane_inspect eval

#include "tests/inspect/inspection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace inspect_test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string Eval(const std::vector<std::string>& arguments) {
    std::vector<std::string> all = {"eval"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const Outcome outcome = Call(all);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    return outcome.out;
}

void ExpectRefused(const std::vector<std::string>& arguments, int code, const std::string& words) {
    std::vector<std::string> all = {"eval"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const Outcome outcome = Call(all);
    EXPECT_EQ(outcome.code, code);
    EXPECT_THAT(outcome.out, IsEmpty());
    EXPECT_EQ(Lines(outcome.err).size(), 1U) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr(words));
}

TEST(EvalCommand, TellsResultAndKind) {
    EXPECT_EQ(Eval({"7/2"}), "3 (integer)\n");
    EXPECT_EQ(Eval({"7.0/2"}), "3.5 (float)\n");
    EXPECT_EQ(Eval({"TRUNC(2.9)"}), "2.0 (float)\n");
    EXPECT_EQ(Eval({"1/0.0"}), "inf (float)\n");
    EXPECT_EQ(Eval({"0x10"}), "16 (integer)\n");
}

TEST(EvalCommand, TakesVariables) {
    EXPECT_EQ(Eval({"A/B", "A=7", "B=2"}), "3 (integer)\n");
    EXPECT_EQ(Eval({"A/B", "A=7.0", "B=2"}), "3.5 (float)\n");
    EXPECT_EQ(Eval({"FROM*Gain.Max", "FROM=0x10", "Gain.Max=-2"}), "-32 (integer)\n");
    EXPECT_EQ(Eval({"--", "-A", "A=1"}), "-1 (integer)\n");
    EXPECT_EQ(Eval({"-A", "A=1", "--explain"}), Eval({"--explain", "--", "-A", "A=1"}));
    EXPECT_EQ(Eval({"-(A+1)", "A=2"}), "-3 (integer)\n");
    EXPECT_EQ(Eval({"-2**2"}), "4 (integer)\nnote: -2 ** is computed as (-2) **\n");
}

TEST(EvalCommand, ExplainsEachStep) {
    EXPECT_THAT(Lines(Eval({"2*A+1", "A=3", "--explain"})),
                ElementsAre("  1  push 2               2", "  2  variable A           2  3",
                            "  3  binary *             6", "  4  push 1               6  1",
                            "  5  binary +             7", "7 (integer)"));
    EXPECT_THAT(Lines(Eval({"a ? SIN(0) : 2", "a=0", "--explain"})),
                ElementsAre("  1  variable a           0", "  2  push 0               0  0",
                            "  3  call SIN             0  0.0", "  4  push 2               0  0.0  2",
                            "  5  select               2", "2 (integer)"));
}

TEST(EvalCommand, NotesWhatAnAuthorShouldKnow) {
    EXPECT_EQ(Eval({"1 2"}), "1 (integer)\nnote: ends before \"2\", which is ignored\n");
    EXPECT_EQ(Eval({"1+"}), "1 (integer)\nnote: ends behind \"+\", which is dropped\n");
    EXPECT_EQ(Eval({"a&&b>c", "a=1", "b=2", "c=3"}), "0 (integer)\nnote: computed as (a && b) > c\n");
}

TEST(EvalCommand, SaysNothingOfTheSignOfNaN) {
    EXPECT_EQ(Call({"eval", "0/0.0"}).out, "nan (float)\n");
    EXPECT_EQ(Call({"eval", "-(0/0.0)"}).out, "nan (float)\n");
    EXPECT_EQ(Call({"eval", "-1/0.0"}).out, "-inf (float)\n");
}

TEST(EvalCommand, RefusesWhatTheLanguageRefuses) {
    ExpectRefused({"(1"}, 1, "refused at character 3");
    ExpectRefused({"A"}, 1, "Failed to map a variable name");
    ExpectRefused({"ROUND(1)"}, 1, "Failed to map a function");
    ExpectRefused({"1 ? 2 :"}, 1, "Failed to get 3 parameters for condition operator.");
    ExpectRefused({""}, 1, "an empty formula: Unbalanced calc stack.");
    ExpectRefused({" "}, 1, "an empty formula: Unbalanced calc stack.");
}

TEST(EvalCommand, RefusesWhatWouldEndTheProcess) {
    ExpectRefused({"1/0"}, 1, "1/0: divides integers without a result");
    ExpectRefused({"A%B", "A=1", "B=0"}, 1, "divides integers");
    const Outcome explained = Call({"eval", "1/0", "--explain"});
    EXPECT_EQ(explained.code, 1);
    EXPECT_THAT(explained.out, HasSubstr("push 0"));
}

TEST(EvalCommand, RefusesVariablesThatAreNone) {
    ExpectRefused({"1", "A"}, 2, "NAME=VALUE");
    ExpectRefused({"1", "=1"}, 2, "NAME=VALUE");
    ExpectRefused({"1", "A=x"}, 2, "x is no number for A");
    ExpectRefused({"1", "A=1x"}, 2, "1x is no number for A");
    ExpectRefused({"1", "A=B=1"}, 2, "B=1 is no number for A");
    ExpectRefused({"1", "A="}, 2, " is no number for A");
    ExpectRefused({"PI", "PI=3"}, 2, "PI is a number of the language");
    ExpectRefused({"E", "E=3"}, 2, "E is a number of the language");
    ExpectRefused({"1", "--explian"}, 2, "--explian");
    ExpectRefused({"-1", "--explian"}, 2, "--explian");
}

TEST(EvalCommand, GivesJson) {
    const nlohmann::json json = Call({"eval", "A*2.5", "A=2", "--json"}).Json();
    EXPECT_EQ(json["command"], "eval");
    EXPECT_EQ(json["formula"], "A*2.5");
    EXPECT_EQ(json["kind"], "float");
    EXPECT_EQ(json["value"], 5.0);
    EXPECT_TRUE(json["notes"].empty());
    EXPECT_FALSE(json.contains("steps"));
    const nlohmann::json explained = Call({"eval", "2*3**2", "--explain", "--json"}).Json();
    EXPECT_EQ(explained["kind"], "integer");
    EXPECT_EQ(explained["value"], 36);
    EXPECT_EQ(explained["notes"].size(), 1U);
    ASSERT_EQ(explained["steps"].size(), 5U);
    EXPECT_EQ(explained["steps"][2]["instruction"], "binary *");
    EXPECT_EQ(explained["steps"][2]["stack"], nlohmann::json::parse("[6]"));
    EXPECT_EQ(Call({"eval", "1/0.0", "--json"}).Json()["value"], "inf");
}

}  // namespace
