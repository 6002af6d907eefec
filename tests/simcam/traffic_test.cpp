#include "tests/simcam/page_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>

namespace simcam_test {
namespace {

using namespace simcam;
using test_support::RecorderCanvas;

// What the controls of a page ask when they show the present state.
void refresh(const RecorderCanvas& canvas) {
    for (const auto& one : canvas.placed) {
        bool flag = false;
        std::int32_t value = 0;
        std::wstring text;
        if (one.controller) {
            (void)one.controller->IsAvailable();
            (void)one.controller->IsReadOnly();
            if (one.kind == "slider") (void)one.controller->GetPosition(value);
            if (one.kind == "edit") (void)one.controller->GetText(text);
        } else if (one.item) {
            (void)one.item->IsAvailable(one.key, flag);
            (void)one.item->IsReadOnly(one.key, flag);
            if (one.kind == "switch") (void)one.item->GetSwitch(one.key, flag);
            if (one.kind == "combo") (void)one.item->GetValue(one.key, value);
        }
    }
}

// Calls of the driver.
struct traffic {
    std::uint64_t build;
    std::uint64_t first_refresh;  // with what the controls ask once
    std::uint64_t refresh;
};

traffic measure(camera_on_pages& seen, ZELPropUI::PageName page) {
    std::vector<std::uint64_t> counts = {seen.camera->call_count()};
    RecorderCanvas canvas;
    seen.build(page, canvas);
    counts.push_back(seen.camera->call_count());
    for (int round = 0; round < 3; ++round) {
        refresh(canvas);
        counts.push_back(seen.camera->call_count());
    }
    EXPECT_EQ(counts[4] - counts[3], counts[3] - counts[2]) << ZELPropUI::TitleOf(page);
    return {counts[1] - counts[0], counts[2] - counts[1], counts[3] - counts[2]};
}

// The numbers are for whoever watches them grow; a page may not need more calls over registers than it has
// rows times a dozen.
TEST(Traffic, OfTheDescribedPagesIsSteady) {
    constexpr std::uint64_t rows = 14;
    for (const bool named : {true, false}) {
        camera_options options = *ready_made("described");
        options.named_access = named;
        options.register_access = !named;
        camera_on_pages seen(options);
        (void)seen.adapter->get_item_table();
        for (const ZELPropUI::PageName page : ZELPropUI::all_pages) {
            seen.camera->clear_transcript();
            const traffic calls = measure(seen, page);
            std::cout << (named ? "named     " : "registers ") << ZELPropUI::TitleOf(page) << ": build "
                      << calls.build << ", first refresh " << calls.first_refresh << ", refresh "
                      << calls.refresh << "\n";
            EXPECT_GT(calls.refresh, 0U) << ZELPropUI::TitleOf(page);
            EXPECT_LE(calls.refresh, rows * 12) << ZELPropUI::TitleOf(page);
        }
    }
}

}  // namespace
}  // namespace simcam_test
