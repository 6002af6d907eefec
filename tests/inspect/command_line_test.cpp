// The command line itself: help, version, exit codes, one line for each wrong use.

#include "tests/inspect/inspection.h"

#include <sstream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace inspect_test;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class CommandLineTest : public InspectTest {};

constexpr const char* all_commands[] = {"info", "list", "describe", "get", "set",
                                        "eval", "lint", "pages",    "dump"};

void ExpectWrongUse(const std::vector<std::string>& arguments, const std::string& words) {
    const Outcome outcome = Call(arguments);
    EXPECT_EQ(outcome.code, 2) << outcome.err;
    EXPECT_THAT(outcome.out, IsEmpty());
    EXPECT_EQ(Lines(outcome.err).size(), 1U) << outcome.err;
    EXPECT_THAT(outcome.err, StartsWith("selvane_inspect: "));
    EXPECT_THAT(outcome.err, HasSubstr(words));
}

TEST_F(CommandLineTest, HelpsOnItselfAndEveryCommand) {
    const Outcome help = Call({"--help"});
    EXPECT_EQ(help.code, 0);
    EXPECT_THAT(help.err, IsEmpty());
    EXPECT_THAT(help.out, HasSubstr("Exit codes: 0 fine, 1 findings or a refused operation, 2 wrong use"));
    for (const char* command : all_commands) {
        EXPECT_THAT(help.out, HasSubstr(command));
        const Outcome one = Call({command, "--help"});
        EXPECT_EQ(one.code, 0) << command;
        EXPECT_THAT(one.out, HasSubstr("--json")) << command;
        EXPECT_THAT(one.out, HasSubstr("Usage: selvane_inspect " + std::string(command))) << command;
    }
}

TEST_F(CommandLineTest, HelpsOnWhatAnOptionTakes) {
    const std::pair<const char*, std::vector<std::string>> helps[] = {
        {"list", {"FILE REQUIRED ", "--visibility WORD:{Beginner,Expert,Guru,Invisible}"}},
        {"describe",
         {"FEATURE ... REQUIRED ", "--memory FILE[@ADDRESS] ... ", "--register ADDRESS=BYTES ..."}},
        {"get", {"FEATURE ... REQUIRED ", "--trace "}},
        {"set", {"FEATURE=VALUE ... REQUIRED ", "--save FILE[@ADDRESS] "}},
        {"eval", {"FORMULA REQUIRED ", "NAME=VALUE ... ", "--explain "}},
        {"lint",
         {"FILE ... ", "--only RULE ... ", "--ignore RULE ... ",
          "--fail-on SEVERITY:{error,never,note,warning}=warning"}},
        {"pages", {"--svg DIR ", "--access PATH:{named,registers}=registers"}},
        {"dump", {"WHAT :{nodes,stats} REQUIRED"}},
    };
    for (const auto& [command, lines] : helps) {
        const std::string help = Call({command, "--help"}).out;
        for (const std::string& line : lines) EXPECT_THAT(help, HasSubstr("\n  " + line)) << command;
    }
}

TEST_F(CommandLineTest, TellsItsVersion) {
    const Outcome version = Call({"--version"});
    EXPECT_EQ(version.code, 0);
    EXPECT_EQ(WithoutNumbers(version.out), "selvane_inspect 0.0.0\n");
}

TEST_F(CommandLineTest, WrongUseIsOneLine) {
    ExpectWrongUse({}, "subcommand");
    ExpectWrongUse({"inform", "x"}, "no command inform (did you mean info?)");
    ExpectWrongUse({"frobnicate"}, "no command frobnicate (--help tells the commands)");
    ExpectWrongUse({"info"}, "FILE");
    ExpectWrongUse({"info", "a", "b"}, "--help");
    ExpectWrongUse({"info", "--loud", "a"}, "--loud");
    ExpectWrongUse({"list", ProjectDescription("identity"), "--visibility", "Nobody"}, "Nobody");
    ExpectWrongUse({"get", ProjectDescription("identity")}, "FEATURE");
    ExpectWrongUse({"set", ProjectDescription("identity")}, "FEATURE=VALUE");
    ExpectWrongUse({"eval"}, "FORMULA");
    ExpectWrongUse({"lint"}, "FILE");
    ExpectWrongUse({"dump", ProjectDescription("identity"), "everything"}, "everything");
    ExpectWrongUse({"pages", ProjectDescription("identity"), "--access", "magic"}, "magic");
}

TEST_F(CommandLineTest, UnreadableInputIsOneLine) {
    const std::string malformed = Write("malformed.xml", "<a>");
    const std::string empty = Write("empty.xml", "");
    for (const char* command : {"info", "list", "lint", "pages"}) {
        ExpectWrongUse({command, PathOf("absent.xml")}, "cannot read");
        ExpectWrongUse({command, PathOf("")}, "folder");
        ExpectWrongUse({command, malformed}, "malformed.xml:1:");
        ExpectWrongUse({command, empty}, "not well-formed");
    }
    ExpectWrongUse({"get", malformed, "A"}, "not well-formed");
    ExpectWrongUse({"dump", malformed, "stats"}, "not well-formed");
}

TEST_F(CommandLineTest, ADescriptionWhoseLoadThrowsIsUnusable) {
    const std::string path = WriteElements(
        "<Enumeration Name=\"C\"><Value>0</Value></Enumeration>"
        "<IntSwissKnife Name=\"K\"><pVariable "
        "Name=\"X.Entry\">C</pVariable><Formula>1</Formula></IntSwissKnife>");
    ExpectWrongUse({"info", path}, "an exception left the load");
    ExpectWrongUse({"pages", path}, "an exception left the load");
}

TEST_F(CommandLineTest, NoLineBreakOfAnArgumentBreaksALine) {
    ExpectWrongUse({"info", PathOf("absent\nfile")}, "absent file");
    ExpectWrongUse({"get", ProjectDescription("identity"), "A\r\nB\x1B[31m"}, "A B\\x1B[31m");
}

TEST_F(CommandLineTest, APathThatBeginsWithASlashIsNoOption) {
    ExpectWrongUse({"info", "/absent.xml"}, "cannot read /absent.xml");
    ExpectWrongUse({"get", "/absent.xml", "A"}, "cannot read /absent.xml");
    ExpectWrongUse({"list", ProjectDescription("identity"), "--memory", "/absent.memory"},
                   "cannot read /absent.memory");
}

TEST_F(CommandLineTest, AFailureIsJsonWhereJsonIsAskedFor) {
    for (const auto& [arguments, code] :
         {std::pair(std::vector<std::string>{"info", PathOf("absent.xml"), "--json"}, 2),
          std::pair(std::vector<std::string>{"eval", "(1", "--json"}, 1)}) {
        const Outcome outcome = Call(arguments);
        EXPECT_EQ(outcome.code, code);
        const std::string message = outcome.Json()["error"]["message"];
        EXPECT_EQ(outcome.err, "selvane_inspect: " + message + "\n");
    }
}

/// Takes a few characters, and then no more.
class FullDisk : public std::streambuf {
    int_type overflow(int_type c) override { return left_-- > 0 ? c : traits_type::eof(); }
    int left_ = 10;
};

TEST_F(CommandLineTest, OutputThatCannotBeWrittenIsNoSuccess) {
    FullDisk disk;
    std::ostream out(&disk);
    std::ostringstream err;
    EXPECT_EQ(selvane_inspect::run({"info", ProjectDescription("identity")}, out, err), 2);
    EXPECT_EQ(err.str(), "selvane_inspect: cannot write the output\n");
}

TEST_F(CommandLineTest, WhatAStreamThrowsIsToldInALine) {
    FullDisk disk;
    std::ostream out(&disk);
    out.exceptions(std::ios::badbit);
    std::ostringstream err;
    EXPECT_EQ(selvane_inspect::run({"info", ProjectDescription("identity")}, out, err), 2);
    EXPECT_THAT(err.str(), testing::MatchesRegex("selvane_inspect: .+\n"));
}

TEST_F(CommandLineTest, TakesNamesOutsideAscii) {
    const std::string path =
        Write("K\xC3\xA4mera.xml", AroundElements("<Integer Name=\"A\"><Value>4</Value></Integer>"));
    const Outcome outcome = Call({"get", path, "A"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "A = 4\n");
}

TEST_F(CommandLineTest, JsonSurvivesBytesThatAreNoUtf8) {
    const std::string path = WriteElements("<String Name=\"A\"><Value>\xFF\xFE</Value></String>");
    const Outcome outcome = Call({"get", path, "A", "--json"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_EQ(outcome.Json()["features"][0]["value"], "\xEF\xBF\xBD\xEF\xBF\xBD");
}

}  // namespace
