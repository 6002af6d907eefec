#include "tests/simcam/page_view.h"

#include "data_paths.h"
#include "tests/support/test_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace simcam_test {
namespace {

using namespace simcam;
using test_support::RecorderCanvas;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using ZELPropUI::PageName;

std::string read_source(const char* name) {
    std::ifstream file(std::string(SELVANE_SOURCE_DIR "/") + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

camera_options first_camera(bool named) {
    camera_options options;
    options.descriptions.emplace_back(bundled_description("first_page"));
    options.named_access = named;
    options.register_access = !named;
    return options;
}

class FirstPage : public testing::TestWithParam<bool> {};

TEST_P(FirstPage, ShowsTheRowsThatTheReadmeTells) {
    test_support::LogCapture log;
    camera_on_pages seen(first_camera(GetParam()));
    RecorderCanvas canvas;
    EXPECT_TRUE(seen.build(PageName::Feature, canvas));
    EXPECT_THAT(canvas.Lines(), ElementsAre("label 20,18 110x23 Lamp", "slider 135,18 140x23",
                                            "edit 280,18 60x22", "spin 340,18 10x22",
                                            AllOf(StartsWith("button 360,18 55x23 #"), EndsWith(" Flash")),
                                            "label 40,48 110x23 Mode", StartsWith("combo 155,48 225x150 #")));
    for (const PageName page : {PageName::Exposure, PageName::Lens, PageName::Color}) {
        RecorderCanvas other;
        EXPECT_FALSE(seen.build(page, other)) << ZELPropUI::TitleOf(page);
    }
    EXPECT_THAT(log.Take(), testing::IsEmpty());
}

TEST_P(FirstPage, TakesChanges) {
    test_support::LogCapture log;
    camera_on_pages seen(first_camera(GetParam()));
    RecorderCanvas canvas;
    ASSERT_TRUE(seen.build(PageName::Feature, canvas));
    for (const auto& one : canvas.placed) {
        if (!one.item) continue;
        bool read_only = true;
        EXPECT_EQ(one.item->IsReadOnly(one.key, read_only), S_OK) << one.kind;
        EXPECT_FALSE(read_only) << one.kind;
        EXPECT_EQ(one.kind == "combo" ? one.item->SetValue(one.key, 1) : one.item->Push(one.key), S_OK)
            << one.kind;
    }
    EXPECT_EQ(seen.camera->memory().peek(0x104, 8), (bytes{1, 0, 0, 0, 1, 0, 0, 0}));
    EXPECT_THAT(log.Take(), testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(BothAccessPaths, FirstPage, testing::Bool(), [](const auto& access_path) {
    return access_path.param ? std::string("Named") : std::string("Registers");
});

TEST(FirstPageText, IsWhatTheReadmeShows) {
    EXPECT_THAT(read_source("README.md"),
                HasSubstr("```xml\n" + read_source("descriptions/first_page.xml") + "```\n"));
}

}  // namespace
}  // namespace simcam_test
