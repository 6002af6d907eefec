#include "simcam/description_files.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace simcam_test {
namespace {

using namespace simcam;

class DescriptionFiles : public testing::Test {
protected:
    DescriptionFiles() { std::filesystem::create_directories(folder_); }
    ~DescriptionFiles() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    [[nodiscard]] std::string file(const std::string& name, const std::string& text) const {
        const std::filesystem::path path = folder_ / name;
        std::ofstream(path, std::ios::binary) << text;
        return path.u8string();
    }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() /
        ("selvane_description_files_" + std::to_string(std::random_device()()));
};

TEST_F(DescriptionFiles, TakeThePlaceOfTheCamerasOwn) {
    camera_options camera = *ready_made("full");
    const std::string first = file("first.xml", "<D><Integer Name='N'><Value>1</Value></Integer></D>");
    const std::string second = file("second.xml", "<D/>");
    EXPECT_EQ(replace_descriptions(camera, {first, second}), "");
    EXPECT_EQ(camera.descriptions,
              (std::vector<std::string>{"<D><Integer Name='N'><Value>1</Value></Integer></D>", "<D/>"}));
    EXPECT_TRUE(camera.memory.empty()) << "the registers were those of another description";
    EXPECT_EQ(camera.prepare_memory, nullptr);
    EXPECT_TRUE(camera.start_from_defaults);
    const camera_ptr made = make_camera(camera);
    EXPECT_EQ(find_malformed(*made, {first, second}), "");
    EXPECT_NE(made->find_node("N"), nullptr);
}

TEST_F(DescriptionFiles, NameTheFirstThatCannotBeRead) {
    camera_options camera;
    const std::string there = file("there.xml", "<D/>");
    const std::string gone = (folder_ / "gone.xml").u8string();
    EXPECT_EQ(replace_descriptions(camera, {there, gone, gone + "2"}), "cannot read " + gone);
}

TEST_F(DescriptionFiles, NameTheFirstThatIsNoDescription) {
    camera_options camera;
    const std::string sound = file("sound.xml", "<D/>");
    const std::string broken = file("broken.xml", "<D><Integer</D>");
    ASSERT_EQ(replace_descriptions(camera, {sound, broken}), "");
    const camera_ptr made = make_camera(camera);
    EXPECT_EQ(find_malformed(*made, {sound, broken}),
              broken + " is malformed: Error parsing start element tag at byte 12");
}

}  // namespace
}  // namespace simcam_test
