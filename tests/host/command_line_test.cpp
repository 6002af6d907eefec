// The program from outside: exit codes and what it prints on its two outputs.

#include "simcam/camera_options.h"
#include "tests/host/host_process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace host_test;
using testing::HasSubstr;
using testing::StartsWith;

// One line on standard error behind the program's name, and nothing else.
void ExpectRefusal(const ProcessEnd& end, unsigned long code, const std::string& text) {
    EXPECT_EQ(end.code, code);
    EXPECT_EQ(Lines(end.errors).size(), 1U) << end.errors;
    EXPECT_THAT(end.errors, StartsWith("selvane_host: "));
    EXPECT_THAT(end.errors, HasSubstr(text));
}

TEST(CommandLine, VersionLeavesWithSuccess) {
    const ProcessEnd end = RunHost({"--version"});
    EXPECT_EQ(end.code, 0U);
    EXPECT_EQ(end.output, "selvane_host " SELVANE_VERSION "\n");
    EXPECT_EQ(end.errors, "");
}

TEST(CommandLine, AnUnknownOptionIsRefused) {
    const ProcessEnd end = RunHost({"--nonsense"});
    ExpectRefusal(end, 2, "--nonsense");
    EXPECT_EQ(end.output, "");
}

TEST(CommandLine, TheReadyMadeCamerasAreNamed) {
    const ProcessEnd end = RunHost({"--list-cameras"});
    EXPECT_EQ(end.code, 0U);
    const auto lines = Lines(end.output);
    ASSERT_EQ(lines.size(), simcam::camera_names().size());
    for (std::size_t at = 0; at < lines.size(); ++at) {
        EXPECT_THAT(lines[at], StartsWith(std::string(simcam::camera_names()[at].name) + " "));
        EXPECT_TRUE(EndsWith(lines[at], " " + std::string(simcam::camera_names()[at].about)));
    }
}

TEST(CommandLine, AnUnknownCameraIsRefused) {
    ExpectRefusal(RunHost({"--camera", "nonsense"}), 2,
                  "there is no camera named \"nonsense\" (--list-cameras names them)");
}

TEST(CommandLine, AMissingDescriptionIsRefused) {
    const ScratchFolder folder;
    const std::string file = (folder.Path() / "missing.xml").u8string();
    ExpectRefusal(RunHost({file}), 2, "cannot read " + file);
}

TEST(CommandLine, AFolderIsNoDescription) {
    const ScratchFolder folder;
    ExpectRefusal(RunHost({folder.Path().u8string()}), 2, "cannot read " + folder.Path().u8string());
}

TEST(CommandLine, AMalformedDescriptionIsRefusedWithItsPosition) {
    const ScratchFolder folder;
    const std::string file = folder.Write("broken.xml", "<RegisterDescription><Float Name=\"A\">");
    ExpectRefusal(RunHost({file}), 2, file + " is malformed: ");
    ExpectRefusal(RunHost({file}), 2, " at byte ");
}

TEST(CommandLine, AnEmptyDescriptionIsRefused) {
    const ScratchFolder folder;
    const std::string file = folder.Write("empty.xml", "");
    ExpectRefusal(RunHost({file}), 2, file + " is malformed: ");
}

TEST(CommandLine, TheSecondDescriptionIsLookedAtToo) {
    const ScratchFolder folder;
    const std::string good =
        folder.Write("good.xml", std::string(simcam::bundled_description("value_nodes")));
    const std::string bad = folder.Write("bad.xml", "no XML at all <");
    ExpectRefusal(RunHost({"--probe", good, bad}), 2, bad + " is malformed: ");
}

TEST(CommandLine, AFileNameOfAnyScriptIsRead) {
    const ScratchFolder folder;
    const std::string file =
        folder.Write("\xE6\xBC\xA2 \xC3\xA4.xml", std::string(simcam::bundled_description("value_nodes")));
    const ProcessEnd end = RunHost({"--probe", file});
    EXPECT_EQ(end.code, 0U) << end.errors;
}

TEST(CommandLine, AFolderForPicturesThatCannotBeMadeIsRefused) {
    const ScratchFolder folder;
    const std::string file = folder.Write("file", "in the way");
    ExpectRefusal(RunHost({"--pictures", file + "\\sub"}), 2, "cannot make the folder ");
}

TEST(CommandLine, ACameraWithNothingToShowIsSaidSo) {
    for (const char* camera : {"empty", "foreign"}) {
        ExpectRefusal(RunHost({"--camera", camera}), 1, "no page has anything to show for this camera");
    }
}

TEST(CommandLine, ProbingTellsOfEachPage) {
    const ProcessEnd end = RunHost({"--probe", "--camera", "colourless"});
    EXPECT_EQ(end.code, 0U);
    EXPECT_EQ(end.errors, "");
    EXPECT_EQ(end.output,
              "page \"Selvane Exposure Controls\": shown\n"
              "page \"Selvane Feature Controls\": shown\n"
              "page \"Selvane Lens Controls\": shown\n"
              "page \"Selvane Color Controls\": nothing to show\n");
}

TEST(CommandLine, OneAccessPathAloneIsTraced) {
    const ProcessEnd named = RunHost({"--probe", "--trace", "--camera", "described", "--access", "named"});
    EXPECT_THAT(named.output, HasSubstr("\nQuerySupported device 4 -> 0x3, ok, "));
    EXPECT_THAT(named.output, HasSubstr("\nQuerySupported device 3, 0x80070490, "));
    EXPECT_THAT(named.output, HasSubstr("\nGet device 4 "));
    EXPECT_THAT(named.output, testing::Not(HasSubstr("\nGet device 3 ")));
    const ProcessEnd registers =
        RunHost({"--probe", "--trace", "--camera", "described", "--access", "registers"});
    EXPECT_THAT(registers.output, HasSubstr("\nQuerySupported device 4, 0x80070490, "));
    EXPECT_THAT(registers.output, HasSubstr("\nQuerySupported device 3 -> 0x3, ok, "));
    EXPECT_THAT(registers.output, testing::Not(HasSubstr("\nGet device 4 ")));
}

// One marked number over a register, with a default.
constexpr const char* one_number = R"(<RegisterDescription>
  <Category Name="Root"><pFeature>Group</pFeature></Category>
  <Category Name="Group"><DisplayName>Lens</DisplayName><pFeature>Item</pFeature></Category>
  <Category Name="Item">
    <Extension><ZELItemGUID>{00000000-0000-0000-0000-000000000001}</ZELItemGUID></Extension>
    <pFeature>Number</pFeature></Category>
  <Integer Name="Number">
    <Extension><ZELElementGUID>{00000000-0000-0000-0000-000000000002}</ZELElementGUID><Default>5</Default></Extension>
    <pIsImplemented>Cell</pIsImplemented><pValue>Cell</pValue><Min>0</Min><Max>9</Max></Integer>
  <IntReg Name="Cell"><Address>0x10</Address><Length>4</Length><AccessMode>RW</AccessMode>
    <pPort>Device</pPort></IntReg>
  <Port Name="Device"/></RegisterDescription>)";

TEST(CommandLine, RegistersStartFromTheDefaultsOfADescription) {
    const ScratchFolder folder;
    const std::string file = folder.Write("one.xml", one_number);
    const ProcessEnd end = RunHost({"--probe", "--trace", "--access", "registers", file});
    EXPECT_EQ(end.code, 0U) << end.errors;
    EXPECT_THAT(end.output, HasSubstr("\nGet device 3 0x00000010 -> 00 00 00 05, ok, "));
}

TEST(CommandLine, RegistersTakeTheContentsOfAFile) {
    const ScratchFolder folder;
    const std::string file = folder.Write("one.xml", one_number);
    const std::string memory = folder.Write("one.memory", "# what the number is\n0x10: 00 00 00 07\n");
    const ProcessEnd end = RunHost({"--probe", "--trace", "--access", "registers", "--memory", memory, file});
    EXPECT_EQ(end.code, 0U) << end.errors;
    EXPECT_THAT(end.output, HasSubstr("\nGet device 3 0x00000010 -> 00 00 00 07, ok, "));
}

TEST(CommandLine, ContentsThatAreNotUnderstoodAreRefused) {
    const ScratchFolder folder;
    const std::string memory = folder.Write("bad.memory", "0x10: 00\n0x20 11\n");
    ExpectRefusal(RunHost({"--probe", "--memory", memory}), 2, memory + ": line 2 is not understood");
    const std::string missing = (folder.Path() / "missing.memory").u8string();
    ExpectRefusal(RunHost({"--probe", "--memory", missing}), 2, "cannot read " + missing);
}

TEST(CommandLine, WithoutADeviceThatIsSaid) {
    const ProcessEnd list = RunHost({"--list"});
    if (list.code == 0) GTEST_SKIP() << "this system has video capture devices";
    ExpectRefusal(list, 2, "this system has no video capture device");
    ExpectRefusal(RunHost({"--device", "Webcam"}), 2, "this system has no video capture device");
}

class OtherFolder : public testing::Test {
protected:
    OtherFolder() { std::filesystem::copy_file(HostProgram(), Program()); }
    [[nodiscard]] std::filesystem::path Program() const { return folder.Path() / "selvane_host.exe"; }
    ScratchFolder folder;
};

TEST_F(OtherFolder, AMissingDllIsNamed) {
    const ProcessEnd end = RunProgram(Program(), {"--probe"});
    ExpectRefusal(end, 2, "cannot use " + (folder.Path() / "selvane_page.dll").u8string() + ": ");
    EXPECT_EQ(end.output, "");
}

TEST_F(OtherFolder, AFileThatIsNoDllIsRefused) {
    folder.Write("selvane_page.dll", "this is not a program");
    ExpectRefusal(RunProgram(Program(), {"--probe"}), 2, "selvane_page.dll: ");
}

TEST_F(OtherFolder, ADllWithoutClassesIsRefused) {
    // A program is a module that can be loaded as well, and it exports nothing.
    std::filesystem::copy_file(HostProgram(), folder.Path() / "selvane_page.dll");
    ExpectRefusal(RunProgram(Program(), {"--probe"}), 2, "selvane_page.dll: it has no DllGetClassObject");
}

TEST_F(OtherFolder, TheDllBesideTheProgramIsUsed) {
    std::filesystem::copy_file(HostProgram().parent_path() / "selvane_page.dll",
                               folder.Path() / "selvane_page.dll");
    const ProcessEnd end = RunProgram(Program(), {"--probe"});
    EXPECT_EQ(end.code, 0U) << end.errors;
}

}  // namespace
