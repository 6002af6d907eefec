// The pages in the platform's own frame, walked through without a display.

#include "tests/host/host_process.h"

#include "data_paths.h"
#include "simcam/camera_options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <regex>

namespace {

using namespace host_test;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;

struct Walk {
    ProcessEnd end;
    std::vector<std::string> pages;     // "page 1 of 4 ..." lines
    std::vector<std::string> pictures;  // files
};

Walk WalkPages(const ScratchFolder& folder, std::vector<std::string> arguments) {
    const std::string pictures = (folder.Path() / "pictures").u8string();
    arguments.insert(arguments.end(), {"--layout", "--pictures", pictures});
    Walk walk{RunHost(arguments), {}, {}};
    for (const std::string& line : Lines(walk.end.output)) {
        if (std::regex_match(line, std::regex("page \\d of \\d .*")))
            walk.pages.push_back(line.substr(0, line.rfind(' ', line.rfind(' ') - 1)));
        if (line.rfind("picture ", 0) == 0) walk.pictures.push_back(line.substr(8));
    }
    return walk;
}

std::uint32_t BigEndian(const std::string& bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) number = number << 8 | static_cast<std::uint8_t>(bytes.at(at + i));
    return number;
}

// A frame holds a page of 428 by 457 pixels and its own edges.
void ExpectPicture(const std::string& file) {
    const std::string bytes = ReadFile(std::filesystem::u8path(file));
    ASSERT_GT(bytes.size(), 33U) << file;
    EXPECT_EQ(bytes.substr(0, 8), "\x89PNG\r\n\x1A\n");
    EXPECT_GE(BigEndian(bytes, 16), 428U);
    EXPECT_GE(BigEndian(bytes, 20), 457U);
    EXPECT_THAT(bytes, HasSubstr("IEND"));
}

TEST(Frame, EveryPageOfTheUsualCameraIsShownAndPictured) {
    const ScratchFolder folder;
    const Walk walk = WalkPages(folder, {});
    EXPECT_EQ(walk.end.code, 0U);
    EXPECT_FALSE(walk.end.timed_out);
    EXPECT_EQ(walk.end.errors, "");
    EXPECT_THAT(
        walk.pages,
        ElementsAre("page 1 of 4 \"Selvane Exposure Controls\"", "page 2 of 4 \"Selvane Feature Controls\"",
                    "page 3 of 4 \"Selvane Lens Controls\"", "page 4 of 4 \"Selvane Color Controls\""));
    ASSERT_EQ(walk.pictures.size(), 4U);
    EXPECT_TRUE(EndsWith(walk.pictures[0], "1-selvane-exposure-controls.png"));
    EXPECT_TRUE(EndsWith(walk.pictures[3], "4-selvane-color-controls.png"));
    for (const std::string& picture : walk.pictures) ExpectPicture(picture);
}

// Adds to every display name but those of groups.
std::string WithNames(std::string description, const std::string& added) {
    const std::string end = "</DisplayName>";
    for (std::size_t at = 0; (at = description.find(end, at)) != std::string::npos; at += end.size()) {
        const std::size_t start = description.rfind('>', at) + 1;
        const std::string name = description.substr(start, at - start);
        if (name == "Exposure" || name == "Special" || name == "Lens" || name == "Color") continue;
        description.insert(at, added);
        at += added.size();
    }
    return description;
}

TEST(Frame, TextsOfADescriptionStayOnTheirLines) {
    const ScratchFolder folder;
    const std::string description(simcam::bundled_description("value_nodes"));
    const std::string file =
        folder.Write("forged.xml", WithNames(description, "&#x1B;[2K&#13;&#10;command \"Forged\"&#x202E;"));
    const ProcessEnd end = WalkPages(folder, {file, "--trace"}).end;
    EXPECT_EQ(end.code, 0U);
    EXPECT_THAT(end.output, HasSubstr("\\x1B[2K"));
    EXPECT_THAT(end.output, HasSubstr("\\u202E"));
    EXPECT_EQ(end.output.find_first_of("\x1B\r"), std::string::npos);
    EXPECT_EQ(end.output.find("\ncommand \"Forged"), std::string::npos);
}

TEST(Frame, APageThatRefusesTheCameraIsNotThere) {
    const ScratchFolder folder;
    const Walk walk = WalkPages(folder, {"--camera", "colourless"});
    EXPECT_EQ(walk.end.code, 0U);
    EXPECT_THAT(walk.pages, ElementsAre("page 1 of 3 \"Selvane Exposure Controls\"",
                                        "page 2 of 3 \"Selvane Feature Controls\"",
                                        "page 3 of 3 \"Selvane Lens Controls\""));
    EXPECT_EQ(walk.pictures.size(), 3U);
}

TEST(Frame, TheLayoutNamesControlsWithItemRectAndState) {
    const ScratchFolder folder;
    const Walk walk = WalkPages(folder, {"--camera", "builtin"});
    const std::string rect = "-?\\d+,-?\\d+ \\d+x\\d+";
    for (const std::string& line :
         {"frame \"[^\"]+\" " + rect, "command \"OK\" " + rect, "tab 2 \"Selvane Feature Controls\" " + rect,
          "label \"Gain\" " + rect,
          "slider \"Gain\" of \"Gain\" " + rect + " enabled position \\d+ of \\d+\\.\\.\\d+ thumb " + rect,
          "edit \"Gain\" of \"Gain\" " + rect + " enabled text \"[^\"]*\"",
          "spin \"Gain\" of \"Gain\" " + rect + " enabled position \\d+",
          "switch \"Auto\" of \"Exposure\" " + rect + " enabled (un)?checked",
          "button \"Read\" of \"GPIO\" " + rect + " enabled",
          "combo \"Operation\" of \"Trigger\" " + rect + " enabled \"[^\"]*\" of( \"[^\"]*\")+"}) {
        const std::vector<std::string> lines = Lines(walk.end.output);
        EXPECT_TRUE(
            std::any_of(lines.begin(), lines.end(),
                        [&](const std::string& one) { return std::regex_match(one, std::regex(line)); }))
            << line << "\n"
            << walk.end.output;
    }
}

// What the pages show, without the positions of the pictures.
std::string ShownOver(const char* access_path) {
    const ScratchFolder folder;
    const Walk walk = WalkPages(folder, {"--camera", "full", "--access", access_path});
    EXPECT_EQ(walk.end.code, 0U) << walk.end.errors;
    std::string shown;
    for (const std::string& line : Lines(walk.end.output)) {
        if (line.rfind("picture ", 0) != 0) shown += line + "\n";
    }
    return shown;
}

TEST(Frame, BothAccessPathsShowTheSame) { EXPECT_EQ(ShownOver("named"), ShownOver("registers")); }

TEST(Frame, EachLayoutEndsAndComesOncePerChange) {
    const ScratchFolder folder;
    const Walk walk = WalkPages(folder, {"--camera", "simple"});
    std::vector<std::string> blocks;
    std::string block;
    for (const std::string& line : Lines(walk.end.output)) {
        if (line.rfind("frame ", 0) == 0) block.clear();
        block += line + "\n";
        if (line == "end") blocks.push_back(block);
    }
    ASSERT_FALSE(blocks.empty());
    for (std::size_t at = 1; at < blocks.size(); ++at) EXPECT_NE(blocks[at], blocks[at - 1]);
}

class ReadyMade : public testing::TestWithParam<simcam::camera_name> {};

TEST_P(ReadyMade, OpensOnWhateverAccessPathsItHas) {
    const ScratchFolder folder;
    const Walk walk = WalkPages(folder, {"--camera", std::string(GetParam().name), "--trace"});
    EXPECT_FALSE(walk.end.timed_out);
    EXPECT_THAT(walk.end.code, AnyOf(0U, 1U)) << walk.end.errors;
    EXPECT_EQ(walk.end.code == 1, walk.pages.empty());
    EXPECT_EQ(walk.pictures.size(), walk.pages.size());
    EXPECT_THAT(walk.end.output, HasSubstr("QuerySupported gate 0 -> 0x1, ok, "));
}

INSTANTIATE_TEST_SUITE_P(All, ReadyMade, testing::ValuesIn(simcam::camera_names()),
                         [](const auto& camera) { return std::string(camera.param.name); });

struct Marked {
    const char* file;
    const char* access_path;
};

class MarkedDescription : public testing::TestWithParam<Marked> {};

// Every register and every value is zero: most features are out of range or not available.
TEST_P(MarkedDescription, OpensItsPagesOverAnEmptyCamera) {
    const std::string file = std::string(SELVANE_SHARED_DESCRIPTIONS "/marked/") + GetParam().file;
    if (!std::filesystem::exists(file)) GTEST_SKIP() << "no real descriptions here: " << file;
    const ScratchFolder folder;
    const Walk walk = WalkPages(folder, {file, "--access", GetParam().access_path, "--trace"});
    EXPECT_EQ(walk.end.code, 0U) << walk.end.errors;
    EXPECT_FALSE(walk.end.timed_out);
    EXPECT_EQ(walk.end.errors, "");
    EXPECT_GE(walk.pages.size(), 2U);
    EXPECT_EQ(walk.pictures.size(), walk.pages.size());
    for (const std::string& picture : walk.pictures) ExpectPicture(picture);
    const bool named = std::string(GetParam().access_path) == "named";
    EXPECT_THAT(walk.end.output, HasSubstr(named ? "\nGet device 4 " : "\nGet device 3 "));
    EXPECT_THAT(walk.end.output, testing::Not(HasSubstr(named ? "\nGet device 3 " : "\nGet device 4 ")));
}

INSTANTIATE_TEST_SUITE_P(All, MarkedDescription,
                         testing::Values(Marked{"basler-a2a2600-marked.xml", "named"},
                                         Marked{"basler-a2a2600-marked.xml", "registers"},
                                         Marked{"flir-bfs_u3-marked.xml", "named"},
                                         Marked{"flir-bfs_u3-marked.xml", "registers"}));

}  // namespace
