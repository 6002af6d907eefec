#include "tests/simcam/page_view.h"
#include "tests/support/not_empty.h"

#include "adapter/hr_exception.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace simcam_test {
namespace {

using namespace simcam;
using test_support::RecorderCanvas;
using testing::ElementsAre;
using ZELPropUI::PageName;

constexpr int page_width = 428;

// Labels of the items on a page, from the top; an item's label stands at the left margin.
std::vector<std::string> items_on(const RecorderCanvas& canvas) {
    std::vector<std::string> names;
    for (const auto& one : canvas.placed) {
        if (one.kind == "label" && one.rect.left == 20) names.push_back(platform::narrow(one.text));
    }
    return names;
}

std::size_t rows_on(const RecorderCanvas& canvas) {
    std::set<int> tops;
    for (const auto& one : canvas.placed) tops.insert(one.rect.top);
    return tops.size();
}

int bottom_of(const RecorderCanvas& canvas) {
    int bottom = 0;
    for (const auto& one : canvas.placed) {
        if (one.kind != "combo") bottom = std::max(bottom, one.rect.top + one.rect.height);
    }
    return bottom;
}

TEST(ReadyMade, HasTheNamesThatItTells) {
    std::vector<std::string_view> names;
    for (const camera_name& one : test_support::NotEmpty(camera_names())) {
        names.push_back(one.name);
        EXPECT_FALSE(one.about.empty()) << one.name;
        EXPECT_TRUE(make_camera(one.name)) << one.name;
    }
    EXPECT_THAT(names, ElementsAre("full", "described", "builtin", "simple", "oldest", "colourless", "empty",
                                   "foreign"));
    EXPECT_FALSE(ready_made("none"));
    EXPECT_FALSE(make_camera("none"));
    EXPECT_FALSE(make_camera(""));
}

struct page_case {
    std::string_view camera;
    PageName page;
    std::vector<std::string> items;
    std::size_t rows;
};

void PrintTo(const page_case& shown, std::ostream* out) {
    *out << shown.camera << " " << ZELPropUI::TitleOf(shown.page);
}

class ReadyMadePage : public testing::TestWithParam<page_case> {};

TEST_P(ReadyMadePage, ShowsItsItems) {
    for (const bool named : {true, false}) {
        camera_options options = *ready_made(GetParam().camera);
        if (GetParam().camera != "oldest") {
            options.named_access = named;
            options.register_access = !named;
        }
        camera_on_pages seen(options);
        RecorderCanvas canvas;
        EXPECT_EQ(seen.build(GetParam().page, canvas), !GetParam().items.empty());
        EXPECT_EQ(items_on(canvas), GetParam().items);
        EXPECT_EQ(rows_on(canvas), GetParam().rows);
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, ReadyMadePage,
    testing::Values(
        page_case{
            "full",
            PageName::Exposure,
            {"Gain", "Black Level", "Exposure", "Frame Rate", "Flip", "Sharpness", "Test Pattern", "WDR"},
            13},
        page_case{"full", PageName::Feature, {"Partial Scan", "GPIO", "Trigger", "Strobe"}, 13},
        page_case{"full",
                  PageName::Lens,
                  {"Focus", "Iris", "Zoom", "IR Cut Filter", "Stabilizer", "Lens Shading"},
                  13},
        page_case{"full",
                  PageName::Color,
                  {"WhiteBalance", "Color Enhancement", "Saturation", "Color Matrix", "Light Source",
                   "Look-up Table"},
                  13},
        page_case{"described",
                  PageName::Exposure,
                  {"Black Level", "Exposure", "Frame Rate", "Flip", "Sharpness", "Test Pattern", "WDR"},
                  12},
        page_case{"described", PageName::Feature, {"Partial Scan", "Trigger"}, 5},
        page_case{
            "described", PageName::Lens, {"Iris", "Zoom", "IR Cut Filter", "Stabilizer", "Lens Shading"}, 5},
        page_case{
            "described", PageName::Color, {"Saturation", "Color Matrix", "Light Source", "Look-up Table"}, 8},
        page_case{"builtin", PageName::Exposure, {"Gain", "Exposure"}, 5},
        page_case{"builtin", PageName::Feature, {"Partial scan", "GPIO", "Trigger", "Strobe"}, 16},
        page_case{"builtin", PageName::Lens, {"Focus"}, 8},
        page_case{"builtin", PageName::Color, {"WhiteBalance", "Color Enhancement"}, 5},
        page_case{"simple", PageName::Exposure, {"Exposure"}, 1},
        page_case{"simple", PageName::Feature, {"Trigger"}, 2},
        page_case{"simple", PageName::Lens, {"Zoom"}, 1},
        page_case{"simple", PageName::Color, {"Saturation"}, 1},
        page_case{"oldest", PageName::Exposure, {"Gain", "Exposure"}, 4},
        page_case{"oldest", PageName::Feature, {"Partial scan", "GPIO", "Trigger", "Strobe"}, 10},
        page_case{"oldest", PageName::Lens, {"Focus"}, 1},
        page_case{"oldest", PageName::Color, {"WhiteBalance"}, 3},
        page_case{"colourless", PageName::Exposure, {"Gain", "Exposure"}, 5},
        page_case{"colourless", PageName::Feature, {"Partial scan", "GPIO", "Trigger", "Strobe"}, 16},
        page_case{"colourless", PageName::Lens, {"Focus"}, 8},
        page_case{"colourless", PageName::Color, {}, 0}, page_case{"empty", PageName::Exposure, {}, 0},
        page_case{"empty", PageName::Feature, {}, 0}, page_case{"empty", PageName::Lens, {}, 0},
        page_case{"empty", PageName::Color, {}, 0}));

TEST(ReadyMade, StaysWithinTheWidthOfItsPages) {
    camera_on_pages seen(*ready_made("full"));
    for (const PageName page : ZELPropUI::all_pages) {
        RecorderCanvas canvas;
        ASSERT_TRUE(seen.build(page, canvas));
        for (const auto& one : test_support::NotEmpty(canvas.placed)) {
            // The buttons of built-in items stand behind a whole slider row, wherever that ends.
            if (one.kind == "button") continue;
            EXPECT_LE(one.rect.left + one.rect.width, page_width)
                << ZELPropUI::TitleOf(page) << " " << platform::narrow(one.text);
        }
    }
}

struct screen_size {
    int dots_per_inch;
    int font_height;  // of the lowest font that a page may have there
};

// Rows grow with the screen, and the page with its font, which grows less.
TEST(ReadyMade, FillsItsPagesWithoutRunningOffThemOnAnyScreen) {
    constexpr int height_units = 281;
    camera_on_pages seen(*ready_made("full"));
    for (const screen_size screen : {screen_size{96, 13}, {120, 15}, {144, 18}, {192, 24}}) {
        for (const PageName page : ZELPropUI::all_pages) {
            RecorderCanvas canvas;
            canvas.dots_per_inch_y = screen.dots_per_inch;
            ASSERT_TRUE(seen.build(page, canvas));
            EXPECT_EQ(rows_on(canvas), 13U) << ZELPropUI::TitleOf(page);
            EXPECT_LE(bottom_of(canvas), height_units * screen.font_height / 8)
                << ZELPropUI::TitleOf(page) << " at " << screen.dots_per_inch;
        }
    }
}

TEST(ReadyMade, ReplacesBuiltInItemsByDescribedOnes) {
    camera_on_pages seen(*ready_made("full"));
    std::size_t replaced = 0;
    for (const auto& described : seen.adapter->get_item_table()) {
        for (const auto& built_in : ZELAdapterHelper::StaticItemTable()) {
            if (described.id == built_in.id) ++replaced;
        }
    }
    EXPECT_EQ(replaced, 4U) << "both rows of Exposure, Partial scan, Trigger";
}

TEST(ReadyMade, LetsGoOfTheFilter) {
    for (const camera_name& one : test_support::NotEmpty(camera_names())) {
        camera_on_pages seen(*ready_made(one.name));
        for (const PageName page : ZELPropUI::all_pages) {
            RecorderCanvas canvas;
            seen.build(page, canvas);
        }
        seen.adapter.reset();
        EXPECT_EQ(seen.camera->references(), 1) << one.name;
    }
}

TEST(ReadyMade, TheOldestTakesTheOldRequestsAlone) {
    camera_on_pages seen(*ready_made("oldest"));
    EXPECT_TRUE(seen.adapter->get_item_table().empty());
    EXPECT_EQ(seen.adapter->get_documents().size(), 1U);
    EXPECT_THAT(seen.camera->transcript(), testing::Contains("Get device 1 {1, 0}, 0x80070057"));
    EXPECT_THAT(seen.camera->transcript(), testing::Contains(testing::StartsWith("Get device 1 {0, 0} -> ")));
    EXPECT_FALSE(seen.adapter->has_named_access());
}

TEST(ReadyMade, TheForeignOneIsNotServed) {
    const camera_ptr camera = make_camera("foreign");
    EXPECT_FALSE(genicam_adapter::is_adapter_device(camera->property_set()));
    EXPECT_TRUE(genicam_adapter::is_adapter_device(make_camera("empty")->property_set()));
}

}  // namespace
}  // namespace simcam_test
