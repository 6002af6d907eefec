#include "data_paths.h"
#include "genicam/genicam_doc.h"
#include "simcam/camera_options.h"
#include "simcam/register_memory.h"
#include "simcam/simulated_camera.h"
#include "tests/support/not_empty.h"
#include "tests/support/test_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>

namespace simcam_test {
namespace {

using namespace simcam;

constexpr GenICam::load_options as_the_adapter_does = {true, true};

TEST(Bundled, DescriptionsAreTheFilesOfTheSource) {
    ASSERT_THAT(bundled_description_names(), testing::Contains("simulated_camera"));
    for (const std::string_view name : test_support::NotEmpty(bundled_description_names())) {
        std::ifstream file(std::string(SELVANE_SOURCE_DIR "/descriptions/") + std::string(name) + ".xml",
                           std::ios::binary);
        const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        ASSERT_FALSE(text.empty()) << name;
        EXPECT_EQ(bundled_description(name), text) << name;
    }
}

TEST(Bundled, DescriptionsParse) {
    for (const std::string_view name : test_support::NotEmpty(bundled_description_names())) {
        const std::string_view text = bundled_description(name);
        const std::unique_ptr<GenICam::IGenICamDoc> document(
            GenICam::load_genicam_doc(text.data(), text.size(), {}));
        ASSERT_NE(document, nullptr) << name;
        EXPECT_EQ(document->get_vendor_name(), "Selvane") << name;
        EXPECT_NE(document->find_node("Root"), nullptr) << name;
    }
}

TEST(Bundled, DescriptionsGiveNothingToLog) {
    test_support::LogCapture log;
    for (const std::string_view name : test_support::NotEmpty(bundled_description_names())) {
        const std::string_view text = bundled_description(name);
        const std::unique_ptr<GenICam::IGenICamDoc> document(
            GenICam::load_genicam_doc(text.data(), text.size(), as_the_adapter_does));
        EXPECT_THAT(log.Take(), testing::IsEmpty()) << name;
    }
}

TEST(Bundled, CamerasStartWithNothingToLog) {
    test_support::LogCapture log;
    for (const camera_name& one : test_support::NotEmpty(camera_names())) {
        const camera_ptr camera = make_camera(one.name);
        EXPECT_THAT(log.Take(), testing::IsEmpty()) << one.name;
    }
}

TEST(Bundled, MemoryCanBeLoaded) {
    register_memory memory;
    EXPECT_FALSE(bundled_memory("simulated_camera").empty());
    EXPECT_EQ(memory.load(bundled_memory("simulated_camera")), 0U);
    EXPECT_EQ(memory.peek(0, 8), (bytes{'S', 'e', 'l', 'v', 'a', 'n', 'e', 0}));
}

TEST(Bundled, HasNothingUnderOtherNames) {
    EXPECT_TRUE(bundled_description("").empty());
    EXPECT_TRUE(bundled_description("simulated").empty());
    EXPECT_TRUE(bundled_description("simulated_camera.xml").empty());
    EXPECT_TRUE(bundled_memory("identity").empty());
}

}  // namespace
}  // namespace simcam_test
