#include "data_paths.h"
#include "tests/simcam/marked_cameras.h"
#include "tests/simcam/page_view.h"
#include "wire/device_set.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>

namespace simcam_test {
namespace {

using namespace simcam;
using test_support::RecorderCanvas;

// Calls of the driver through the property of one access path.
struct traffic {
    std::uint64_t build;
    std::uint64_t first_refresh;  // with what the controls ask once
    std::uint64_t refresh;
};

bool operator==(const traffic& one, const traffic& other) {
    return one.build == other.build && one.first_refresh == other.first_refresh &&
           one.refresh == other.refresh;
}

void PrintTo(const traffic& calls, std::ostream* out) {
    *out << "build " << calls.build << ", first refresh " << calls.first_refresh << ", refresh "
         << calls.refresh;
}

// The calls of the device set since the last time, all of them reads through the property.
std::uint64_t take_calls(simulated_camera& camera, DWORD property) {
    std::uint64_t count = 0;
    for (const driver_call& call : camera.calls()) {
        if (call.set != wire::device_set) continue;
        EXPECT_EQ(call.kind, call_kind::get);
        EXPECT_EQ(call.id, property);
        ++count;
    }
    camera.clear_transcript();
    return count;
}

traffic measure(camera_on_pages& seen, DWORD property, ZELPropUI::PageName page) {
    seen.camera->clear_transcript();
    RecorderCanvas canvas;
    seen.build(page, canvas);
    std::vector<std::uint64_t> counts = {take_calls(*seen.camera, property)};
    for (int round = 0; round < 3; ++round) {
        refresh(canvas);
        counts.push_back(take_calls(*seen.camera, property));
    }
    EXPECT_EQ(counts[3], counts[2]) << ZELPropUI::TitleOf(page);
    return {counts[0], counts[1], counts[2]};
}

// The numbers are for whoever watches them grow.
std::vector<traffic> measure_all(const std::string& name, const camera_options& options, bool named) {
    camera_on_pages seen(over_one_access_path(options, named));
    (void)seen.adapter->get_item_table();
    const DWORD property = named ? SELVANE_NAMED_ACCESS : SELVANE_REGISTER_ACCESS;
    std::vector<traffic> all;
    for (const ZELPropUI::PageName page : ZELPropUI::all_pages) {
        all.push_back(measure(seen, property, page));
        std::cout << name << ", property " << property << ", " << ZELPropUI::TitleOf(page) << ": "
                  << testing::PrintToString(all.back()) << "\n";
    }
    return all;
}

TEST(Traffic, OfTheDescribedPagesDoesNotGrow) {
    const camera_options described = *ready_made("described");
    EXPECT_THAT(measure_all("described", described, true),
                testing::ElementsAre(traffic{16, 57, 32}, traffic{3, 19, 11}, traffic{6, 24, 13},
                                     traffic{16, 31, 16}));
    EXPECT_THAT(measure_all("described", described, false),
                testing::ElementsAre(traffic{8, 45, 40}, traffic{0, 18, 12}, traffic{3, 20, 19},
                                     traffic{13, 26, 24}));
}

struct full_traffic {
    std::uint64_t described;  ///< calls of a refresh for elements of the description
    std::uint64_t refresh;    ///< all of them
};

bool operator==(const full_traffic& one, const full_traffic& other) {
    return one.described == other.described && one.refresh == other.refresh;
}

void PrintTo(const full_traffic& calls, std::ostream* out) {
    *out << "refresh " << calls.refresh << ", of those for the description " << calls.described;
}

// By name each element of the description is asked for its lock state, and for a value where it has one.
std::uint64_t most_calls_by_name(const RecorderCanvas& canvas) {
    std::uint64_t most = 0;
    for (const auto& one : canvas.placed) {
        if (one.kind == "slider" || one.kind == "switch" || one.kind == "combo") most += 2;
        if (one.kind == "button") most += 1;
    }
    return most;
}

// Every call counts, those to fixed properties too.
std::vector<full_traffic> measure_full(bool named) {
    camera_on_pages seen(over_one_access_path(*ready_made("full"), named));
    (void)seen.adapter->get_item_table();
    std::vector<full_traffic> all;
    for (const ZELPropUI::PageName page : ZELPropUI::all_pages) {
        RecorderCanvas canvas;
        seen.build(page, canvas);
        refresh(canvas);
        seen.camera->clear_transcript();
        const std::uint64_t before = seen.camera->call_count();
        refresh(canvas);
        const std::uint64_t asked = seen.camera->call_count() - before;
        std::uint64_t described = 0;
        for (const driver_call& call : seen.camera->calls()) {
            if (call.set == wire::device_set) ++described;
        }
        if (named) {
            EXPECT_LE(described, most_calls_by_name(canvas));
        }
        all.push_back({described, asked});
        std::cout << "full, " << (named ? "named" : "registers") << ", " << ZELPropUI::TitleOf(page) << ": "
                  << testing::PrintToString(all.back()) << "\n";
    }
    return all;
}

TEST(Traffic, OfTheFullPagesDoesNotGrow) {
    EXPECT_THAT(measure_full(true), testing::ElementsAre(full_traffic{32, 35}, full_traffic{11, 11},
                                                         full_traffic{13, 25}, full_traffic{16, 29}));
    EXPECT_THAT(measure_full(false), testing::ElementsAre(full_traffic{40, 43}, full_traffic{12, 12},
                                                          full_traffic{19, 31}, full_traffic{24, 37}));
}

TEST(Traffic, OfMarkedDescriptionsIsSteady) {
    const std::vector<marked_description> marked = marked_descriptions();
    if (marked.empty()) GTEST_SKIP() << "no descriptions in " SELVANE_SHARED_DESCRIPTIONS "/marked";
    constexpr std::uint64_t seed = 11;
    for (const marked_description& one : marked) {
        for (const bool named : {true, false}) {
            std::uint64_t refreshed = 0;
            for (const traffic& page : measure_all(one.name, camera_of(one, seed), named))
                refreshed += page.refresh;
            EXPECT_GT(refreshed, 0U) << one.name;
        }
    }
}

}  // namespace
}  // namespace simcam_test
