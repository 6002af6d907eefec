// selvane_inspect --camera, against a camera made of software and what another client of cameras says of it.

#include "tests/inspect/camera_fixture.h"

#include "apps/inspect/camera/camera_call.h"
#include "genicam/core/error.h"
#include "inspection/camera/live_camera.h"
#include "inspection/description.h"

#include <map>
#include <regex>
#include <sstream>
#include <thread>

#include <gmock/gmock.h>

namespace {

using namespace inspect_test;
using selvane_inspect::connect_camera;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

/// What either side says of a feature. Limits that the other client does not tell are empty.
struct Facts {
    std::string access;
    std::string value;
    std::string low;
    std::string high;
};
bool operator==(const Facts& one, const Facts& other) {
    return one.access == other.access && one.value == other.value && one.low == other.low &&
           one.high == other.high;
}
std::ostream& operator<<(std::ostream& out, const Facts& facts) {
    return out << facts.access << " '" << facts.value << "' " << facts.low << ".." << facts.high;
}
using AllFacts = std::map<std::string, Facts>;

std::string Tool(const std::string& words) {
    return OutputOf("LC_ALL=C arv-tool-0.8 -n Aravis-Fake-GV01 " + words);
}

// Access and value of what stands in the tree, value and range of everything that is asked for by its name.
AllFacts FactsOfTheTool(const AllFacts& asked_for) {
    AllFacts all;
    const std::regex in_tree(R"(^\s*\w+\s*: \[(\w+)\] '(\w+)'(?: = '?([^']*)'?)?$)");
    std::smatch found;
    for (const std::string& line : Lines(Tool("values"))) {
        if (std::regex_match(line, found, in_tree)) all[found[2]] = {found[1], found[3], "", ""};
    }
    std::string readable;
    for (const auto& [feature, facts] : asked_for) readable += facts.value.empty() ? "" : " " + feature;
    const std::regex by_name(R"(^(\w+) = (.*?)(?: min:(\S+) max:(\S+))?$)");
    for (const std::string& line : Lines(Tool("control" + readable))) {
        if (!std::regex_match(line, found, by_name)) continue;
        Facts& facts = all[found[1]];
        facts = {facts.access, found[2], found[3], found[4]};
    }
    return all;
}

// The tool prints six digits of a real number.
std::string TextOf(const nlohmann::json& value) {
    if (value.is_string()) return value.get<std::string>();
    if (!value.is_number_float()) return value.is_null() ? "" : value.dump();
    std::ostringstream text;
    text << value.get<double>();
    return text.str();
}

void Collect(const nlohmann::json& feature, AllFacts& all) {
    if (feature.at("kind") == "category") {
        for (const auto& inner : feature.at("features")) Collect(inner, all);
        return;
    }
    const auto text = [&](const char* key) { return feature.contains(key) ? TextOf(feature.at(key)) : ""; };
    all[feature.at("name")] = {feature.at("access"), text("value"), text("min"), text("max")};
}

// Of what stands outside the tree the tool does not tell the access, nor anything that has no value.
AllFacts OurFacts(const Outcome& listed) {
    AllFacts all;
    const nlohmann::json answer = listed.Json();
    for (const auto& feature : answer.at("outside")) {
        if (feature.contains("value")) Collect(feature, all);
    }
    for (auto& [feature, facts] : all) facts.access.clear();
    Collect(answer.at("root"), all);
    return all;
}

/// Where the other client tells something else, and why that is so.
struct Difference {
    const char* feature;
    Facts ours;
    Facts tools;
};
const char* const least_integer = "-9223372036854775808";
const char* const most_integer = "9223372036854775807";
const char* const least_float = "2.22507e-308";
const char* const most_float = "1.79769e+308";
const Difference differences[] = {
    // What has no limits takes all numbers; the tool tells no range.
    {"PayloadSize", {"RO", "262144", least_integer, most_integer}, {"RO", "262144", "", ""}},
    {"TriggerSelectorInteger", {"", "0", least_integer, most_integer}, {"", "0", "", ""}},
    // A converter has no limits either; the tool carries those of the value behind it through the formula.
    {"AcquisitionFrameRate", {"", "25", least_float, most_float}, {"", "25", "0.1", "1000"}},
    {"AcquisitionFrameRateConverter", {"", "25", least_float, most_float}, {"", "25", "0.1", "1000"}},
    {"ExposureTimeAbsConverter", {"", "10000", least_float, most_float}, {"", "10000", "0", "4.29497e+09"}},
    // The register holds neither the value for on nor that for off: not zero is on. The tool says off.
    {"TestBoolean", {"", "true", "", ""}, {"", "false", "", ""}},
};

std::string Program(const std::string& words) { return SELVANE_INSPECT_PROGRAM " " + words; }

// A library that cannot be loaded stands before the system's own.
TEST_F(InspectTest, CamerasAloneNeedTheLibrary) {
    const std::string library = Write("libaravis-0.8.so.0", "no library");
    const std::string with_it = "LD_LIBRARY_PATH=" + library.substr(0, library.rfind('/')) + " ";
    EXPECT_THAT(OutputOf(with_it + Program("info " + ProjectDescription("identity") + "; echo code $?")),
                testing::EndsWith("code 0\n"));
    for (const char* words : {"--camera", "get --camera A Width"}) {
        const auto lines = Lines(OutputOf(with_it + Program(words) + "; echo code $?"));
        ASSERT_EQ(lines.size(), 2U) << words;
        EXPECT_THAT(lines[0], HasSubstr("Aravis"));
        EXPECT_EQ(lines[1], "code 1");
    }
}

TEST_F(CameraTest, IsListed) {
    const Outcome listed = Call({"--camera"});
    EXPECT_EQ(listed.code, 0) << listed.err;
    EXPECT_EQ(listed.out, "Aravis-Fake-GV01  Aravis Fake GV01 at 127.0.0.1 (GigEVision)\n");
    EXPECT_EQ(Call({"list", "--camera"}).out, listed.out);
    const auto json = Call({"--camera", "--json"}).Json();
    EXPECT_EQ(json.at("command"), "cameras");
    EXPECT_EQ(json.at("cameras").at(0).at("name"), name);
    EXPECT_EQ(json.at("cameras").at(0).at("serial"), "GV01");
}

TEST_F(CameraTest, EveryFeatureIsAsTheToolSays) {
    AllFacts ours = OurFacts(CallOn("list", {"--all", "--json"}));
    AllFacts tools = FactsOfTheTool(ours);
    ASSERT_GT(tools.size(), 40U);
    for (const Difference& one : differences) {
        EXPECT_EQ(ours[one.feature], one.ours) << one.feature;
        EXPECT_EQ(tools[one.feature], one.tools) << one.feature;
        ours.erase(one.feature);
        tools.erase(one.feature);
    }
    EXPECT_THAT(ours, testing::ContainerEq(tools));
}

TEST_F(CameraTest, WritesAreSeenByTheOther) {
    const Outcome set = CallOn("set", {"Width=256", "ExposureTimeAbs=2500", "PixelFormat=Mono16"});
    EXPECT_EQ(set.code, 0) << set.err;
    EXPECT_THAT(set.out, HasSubstr("Width = 256"));
    const std::string seen = Tool("control Width ExposureTimeAbs PixelFormat");
    EXPECT_THAT(seen, HasSubstr("Width = 256 "));
    EXPECT_THAT(seen, HasSubstr("ExposureTimeAbs = 2500 "));
    EXPECT_THAT(seen, HasSubstr("PixelFormat = Mono16"));
    EXPECT_THAT(Tool("control Width=128"), HasSubstr("Width = 128 "));
    EXPECT_EQ(CallOn("get", {"Width"}).out, "Width = 128\n");
}

TEST_F(CameraTest, AWriteOutOfRangeIsRefusedBeforeTheCamera) {
    const Outcome set = CallOn("set", {"Width=100000"});
    EXPECT_EQ(set.code, 1);
    EXPECT_EQ(Lines(set.err).size(), 1U) << set.err;
    EXPECT_THAT(Tool("control Width"), HasSubstr("Width = 512 "));
}

TEST_F(CameraTest, TheTraceTellsTheTime) {
    const std::string time = R"( \([0-9]+ us\))";
    EXPECT_THAT(CallOn("get", {"Width", "--trace"}).out,
                MatchesRegex("Width = 512\n    read 0x[0-9A-F]+ 4: 00 00 02 00" + time + "\n"));
    EXPECT_THAT(CallOn("set", {"Width=256", "--trace"}).out, HasSubstr("write 0x"));
    const auto json = CallOn("get", {"Width", "--trace", "--json"}).Json();
    EXPECT_GT(json.at("features").at(0).at("trace").at(0).at("microseconds"), 0);
}

// The accesses of commands that show no trace of their own stand apart from what they tell.
TEST_F(CameraTest, EveryCommandTellsItsAccesses) {
    const std::string access = R"(read 0x[0-9A-F]+ [0-9]+: [0-9A-F ]+ \([0-9]+ us\))";
    for (const char* command : {"list", "describe", "pages", "lint"}) {
        const bool describes = std::string(command) == "describe";
        const std::vector<std::string> rest =
            describes ? std::vector<std::string>{"Width"} : std::vector<std::string>{};
        const Outcome untraced = CallOn(command, rest);
        std::vector<std::string> with_trace = rest;
        with_trace.insert(with_trace.end(), {"--trace", "--json"});
        const Outcome traced = CallOn(command, with_trace);
        EXPECT_EQ(traced.code, untraced.code) << command;
        EXPECT_TRUE(traced.Json().is_object()) << command;
        EXPECT_THAT(Lines(untraced.err), Not(Contains(MatchesRegex(access)))) << command;
        EXPECT_THAT(Lines(traced.err), Each(MatchesRegex(access))) << command;
        // Nothing of this camera is marked for the pages.
        EXPECT_EQ(traced.err.empty(), std::string(command) == "pages") << command;
    }
}

TEST_F(CameraTest, EveryCommandTakesIt) {
    const std::string described = CallOn("describe", {"Width"}).out;
    EXPECT_THAT(described, HasSubstr("00 00 02 00"));
    EXPECT_EQ(CallOn("info").code, 0);
    EXPECT_THAT(CallOn("info").out, HasSubstr("Fake"));
    EXPECT_EQ(CallOn("lint", {"--fail-on", "never"}).code, 0);
    EXPECT_THAT(CallOn("pages").out, HasSubstr("nothing to show"));
    EXPECT_EQ(CallOn("dump", {"stats"}).code, 0);
    EXPECT_EQ(Call({"get", "Width", "--camera=" + std::string(name)}).out, "Width = 512\n");
}

TEST_F(CameraTest, KeepsTheDescription) {
    const std::string file = PathOf("kept.xml");
    const Outcome info = CallOn("info", {"--save-description", file});
    EXPECT_EQ(info.code, 0) << info.err;
    const std::string kept = selvane_inspect::read_file(file);
    EXPECT_TRUE(Tool("genicam").find(kept) != std::string::npos) << kept;
    EXPECT_GT(kept.size(), 10000U);
    EXPECT_EQ(Call({"info", file}).code, 0);
}

TEST_F(CameraTest, ControlIsTakenForAWriteAndGivenBack) {
    const auto other = connect_camera(name);
    other->take_control();
    // The program itself: what the library would say of its own must not stand beside the line.
    EXPECT_EQ(
        OutputOf(Program("set --camera Aravis-Fake-GV01 Width=256; echo code $?")),
        "selvane_inspect: the camera Aravis-Fake-GV01 is under the control of another program\ncode 1\n");
    EXPECT_EQ(CallOn("get", {"Width"}).out, "Width = 512\n");
    other->leave_control();
    EXPECT_EQ(CallOn("set", {"Width=256"}).code, 0);
    other->take_control();
    other->leave_control();
}

TEST_F(CameraTest, OneThatIsNotThereIsToldInALine) {
    for (const char* command : {"info", "pages"}) {
        const Outcome absent = Call({command, "--camera", "Nobody"});
        EXPECT_EQ(absent.code, 1) << command;
        EXPECT_THAT(absent.out, IsEmpty());
        EXPECT_THAT(absent.err, HasSubstr("Nobody"));
        EXPECT_EQ(Lines(absent.err).size(), 1U) << absent.err;
    }
    EXPECT_THAT(
        Call({"list", "--camera", "Nobody", "--json"}).Json().at("error").at("message").get<std::string>(),
        HasSubstr("Nobody"));
}

// The process stands still before the read and is ended during it: no order of the two lets it answer.
TEST_F(CameraTest, EndedInTheMidstOfARead) {
    const auto camera = connect_camera(name);
    Freeze();
    std::uint32_t number = 0;
    std::error_code failure;
    std::thread reader([&] { failure = camera->read(0x100, &number, sizeof(number), 0); });
    Unplug();
    reader.join();
    EXPECT_EQ(failure, GenICam::device_lost);
    EXPECT_THAT(camera->ending(), HasSubstr("Aravis-Fake-GV01 does not answer any more"));
    EXPECT_EQ(camera->write(0x100, &number, sizeof(number), 0), GenICam::device_lost);
}

TEST_F(CameraTest, ACommandThatLosesItsCameraSaysSoAndNothingElse) {
    const selvane_inspect::camera_call call({"get", "--camera", name, "Width"});
    std::ostringstream out;
    std::ostringstream err;
    const auto command = [&](const selvane_inspect::channels& to) {
        Unplug();
        const auto opened = selvane_inspect::open_loaded(call.arguments().at(1));
        std::uint32_t number = 0;
        EXPECT_EQ(opened->port().read(0x100, &number, sizeof(number), 0), GenICam::device_lost);
        to.out << "what nobody is to see";
        return 0;
    };
    try {
        call.carry_out(command, {out, err, {}, false});
        FAIL() << "the command went through";
    } catch (const selvane_inspect::inspect_error& failure) {
        EXPECT_EQ(failure.code(), 1);
        EXPECT_THAT(failure.what(), HasSubstr("does not answer any more"));
    }
    EXPECT_THAT(out.str() + err.str(), IsEmpty());
}

TEST_F(CameraTest, WhatIsForFilesIsRefused) {
    EXPECT_EQ(CallOn("get", {"Width", "--register", "0x100=00"}).code, 2);
    EXPECT_EQ(CallOn("list", {"--defaults"}).code, 2);
    EXPECT_EQ(CallOn("set", {"Width=256", "--save", PathOf("memory")}).code, 2);
    EXPECT_EQ(CallOn("pages", {"--access", "named"}).code, 2);
    EXPECT_THAT(Tool("control Width"), HasSubstr("Width = 512 "));
}

}  // namespace
