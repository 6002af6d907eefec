// FFmpeg, which nobody of us wrote: it finds the camera, opens its pages and takes its pictures.
//
// The environment names the program; tests/clients/clients-test fetches it. SELVANE_INSTALLED says that pages
// and camera are registered, as after an installation.

#include "platform/text.h"
#include "tests/clients/foreign_frame.h"
#include "tests/device/camera_module.h"
#include "tests/device/frame_controls.h"
#include "tests/device/registered_devices.h"
#include "tests/host/host_process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <optional>
#include <thread>

namespace clients_test {
namespace {

using namespace host_test;
using device_test::device_name;
using selvane_camera::devices;
using selvane_host::control_kind;
using testing::HasSubstr;

constexpr int width = 320;
constexpr int height = 240;
constexpr int channels = 3;
// Below it the mark does not move.
constexpr int first_row = 12;
constexpr int typed_black_level = 100;

using picture = std::vector<int>;

// The first frame of a raw file, rows from the top.
picture FirstFrame(const std::filesystem::path& file) {
    const std::string bytes = ReadFile(file);
    picture frame;
    if (bytes.size() < static_cast<std::size_t>(width * height * channels)) return frame;
    for (std::size_t at = 0; at < static_cast<std::size_t>(width * height * channels); ++at)
        frame.push_back(static_cast<std::uint8_t>(bytes[at]));
    return frame;
}

int At(const picture& frame, int x, int y) {
    return frame[static_cast<std::size_t>((y * width + x) * channels + 1)];
}

int Darkest(const picture& frame) {
    return *std::min_element(frame.begin() + first_row * width * channels, frame.end());
}

double Mean(const picture& frame) {
    return std::accumulate(frame.begin(), frame.end(), 0.0) / static_cast<double>(frame.size());
}

// How well two pictures agree in where they are brighter than their own middle, as they lie or mirrored.
int Agreement(const picture& one, const picture& other, bool mirrored) {
    const double one_mean = Mean(one);
    const double other_mean = Mean(other);
    int count = 0;
    for (int y = first_row; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int there = mirrored ? width - 1 - x : x;
            if ((At(one, x, y) > one_mean) == (At(other, there, y) > other_mean)) ++count;
        }
    }
    return count;
}

class FFmpeg : public testing::Test {
protected:
    static bool IsInstalled() { return std::getenv("SELVANE_INSTALLED") != nullptr; }
    static void SetUpTestSuite() {
        if (IsInstalled()) return;
        devices_of_suite.emplace();
        pages_entered = RunProgram("regsvr32", {"/s", PageModule()}).code == 0;
    }
    static void TearDownTestSuite() {
        if (IsInstalled()) return;
        EXPECT_EQ(RunProgram("regsvr32", {"/s", "/u", PageModule()}).code, 0U);
        devices_of_suite.reset();
    }
    static std::string PageModule() { return (HostProgram().parent_path() / "selvane_page.dll").u8string(); }
    void SetUp() override {
        const char* named = std::getenv("SELVANE_FFMPEG");
        ASSERT_NE(named, nullptr) << "run this through tests/clients/clients-test";
        program = std::filesystem::u8path(named);
        ASSERT_TRUE(IsInstalled() || (devices_of_suite->are_there() && pages_entered));
    }
    [[nodiscard]] ProcessEnd Run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "-hide_banner");
        return RunProgram(program, arguments);
    }
    [[nodiscard]] static std::vector<std::string> Input(const std::vector<std::string>& options) {
        std::vector<std::string> input = {"-f",          "dshow",   "-rtbufsize",    "200M",
                                          "-video_size", "320x240", "-pixel_format", "bgr24"};
        input.insert(input.end(), options.begin(), options.end());
        input.insert(input.end(), {"-i", "video=" + device_name(devices[0])});
        return input;
    }

    static std::optional<device_test::registered_devices> devices_of_suite;
    static bool pages_entered;
    std::filesystem::path program;
};

std::optional<device_test::registered_devices> FFmpeg::devices_of_suite;
bool FFmpeg::pages_entered = false;

TEST_F(FFmpeg, ListsTheDevices) {
    const ProcessEnd end = Run({"-list_devices", "true", "-f", "dshow", "-i", "dummy"});
    for (const auto& device : devices) EXPECT_THAT(end.errors, HasSubstr("\"" + device_name(device) + "\""));
}

TEST_F(FFmpeg, ListsTheFormats) {
    const ProcessEnd end =
        Run({"-list_options", "true", "-f", "dshow", "-i", "video=" + device_name(devices[0])});
    for (const char* format : {"bgr24", "yuyv422"}) {
        for (const char* size : {"320x240", "640x480", "1280x720"}) {
            EXPECT_THAT(end.errors, HasSubstr("pixel_format=" + std::string(format) + "  min s=" + size +
                                              " fps=1 max s=" + size + " fps=60."));
        }
    }
}

// Two inputs of one camera: the first has its first pictures before the pages of the second open, which has
// its own once they are closed.
TEST_F(FFmpeg, ShowsInItsPicturesWhatItsDialogChanges) {
    const ScratchFolder folder;
    const std::string before_file = (folder.Path() / "before.raw").u8string();
    const std::string after_file = (folder.Path() / "after.raw").u8string();
    std::vector<std::string> arguments = {"-loglevel", "error", "-y"};
    for (const std::string& word : Input({})) arguments.push_back(word);
    for (const std::string& word : Input({"-show_video_device_dialog", "true"})) arguments.push_back(word);
    for (const auto& [input, file] : {std::pair{"0:v", before_file}, {"1:v", after_file}}) {
        arguments.insert(arguments.end(),
                         {"-map", input, "-frames:v", "2", "-pix_fmt", "bgr24", "-f", "rawvideo", file});
    }
    ProcessEnd end;
    std::thread ffmpeg([&] { end = Run(arguments); });
    const auto frame = foreign_frame::wait();
    if (frame) {
        const HWND slider = device_test::control_in_row(frame->handle(), "Exposure", control_kind::slider);
        const HWND edit = device_test::control_in_row(frame->handle(), "Black Level", control_kind::edit);
        const HWND box =
            device_test::control_captioned(frame->handle(), "Horizontal", control_kind::check_box);
        EXPECT_TRUE(slider != nullptr && edit != nullptr && box != nullptr);
        frame->click(slider);
        frame->press(VK_RIGHT, 20);
        frame->click(edit);
        frame->press(VK_HOME);
        frame->press(VK_DELETE, 8);
        frame->type(std::to_wstring(typed_black_level));
        frame->press(VK_TAB);
        frame->click(box);
        EXPECT_TRUE(
            device_test::wait_for([&] { return SendMessageW(box, BM_GETCHECK, 0, 0) == BST_CHECKED; }));
        frame->close();
    }
    ffmpeg.join();
    EXPECT_TRUE(frame);
    EXPECT_FALSE(end.timed_out);
    EXPECT_EQ(end.code, 0U) << end.errors;
    const picture before = FirstFrame(before_file);
    const picture after = FirstFrame(after_file);
    ASSERT_FALSE(before.empty() || after.empty()) << end.errors;
    EXPECT_LT(Darkest(before), typed_black_level / 2);
    EXPECT_EQ(Darkest(after), typed_black_level) << "the edit";
    EXPECT_GT(Mean(after), Mean(before) + 2 * (typed_black_level - Darkest(before)) / 3.0) << "the slider";
    EXPECT_GT(Agreement(after, before, true), Agreement(after, before, false)) << "the check box";
}

}  // namespace
}  // namespace clients_test
