// Pages that are open on two threads at once. Documents, items and controllers belong to one of them; what
// both share is the counters, and a camera where it is the same one.

#include "items/unknown.h"
#include "simcam/simulated_camera.h"
#include "tests/simcam/page_view.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <future>
#include <string>
#include <thread>
#include <vector>

namespace simcam_test {
namespace {

using simcam::camera_ptr;
using test_support::RecorderCanvas;
using ZELAdapterHelper::CUnknown;
using Shown = std::vector<std::string>;

struct worked_camera {
    const char* name;
    bool named;
};

class TwoThreads : public testing::TestWithParam<worked_camera> {
protected:
    static camera_ptr make() {
        return simcam::make_camera(
            over_one_access_path(*simcam::ready_made(GetParam().name), GetParam().named));
    }

    /// All pages of a camera one after the other, each built, worked and shown again.
    static Shown live(const camera_ptr& camera) {
        camera_on_pages pages(camera);
        Shown shown;
        for (const ZELPropUI::PageName page : ZELPropUI::all_pages) {
            RecorderCanvas canvas;
            pages.build(page, canvas);
            work(canvas);
            refresh(canvas);
            for (std::string& line : shown_on(canvas)) shown.push_back(std::move(line));
        }
        return shown;
    }

    /// Both begin when the second of them runs.
    template <class Life>
    static std::array<Shown, 2> on_both(Life life) {
        std::array<Shown, 2> shown;
        std::promise<void> runs;
        std::thread other([&] {
            runs.set_value();
            shown[1] = life();
        });
        runs.get_future().wait();
        shown[0] = life();
        other.join();
        return shown;
    }

    const std::int32_t live_objects_ = CUnknown::LiveObjects();
    const std::int32_t live_cameras_ = simcam::simulated_camera::live_cameras();
};

TEST_P(TwoThreads, EachSeeTheirOwnCameraAsOneAloneDoes) {
    constexpr int rounds = 3;
    const Shown alone = live(make());
    ASSERT_FALSE(alone.empty());
    for (int round = 0; round < rounds; ++round) {
        const std::array<Shown, 2> shown = on_both([] { return live(make()); });
        EXPECT_EQ(shown[0], alone);
        EXPECT_EQ(shown[1], alone);
    }
    EXPECT_EQ(CUnknown::LiveObjects(), live_objects_);
    EXPECT_EQ(simcam::simulated_camera::live_cameras(), live_cameras_);
}

// What one writes the other may read, so that values are no matter here; rows are.
TEST_P(TwoThreads, OneCameraServesThePagesOfBoth) {
    const std::size_t rows = live(make()).size();
    const camera_ptr camera = make();
    const std::array<Shown, 2> shown = on_both([&camera] { return live(camera); });
    EXPECT_EQ(shown[0].size(), rows);
    EXPECT_EQ(shown[1].size(), rows);
    EXPECT_EQ(camera->references(), 1);
    EXPECT_EQ(camera->calls().size(), camera->call_count());
    EXPECT_EQ(CUnknown::LiveObjects(), live_objects_);
}

INSTANTIATE_TEST_SUITE_P(Cameras, TwoThreads,
                         testing::Values(worked_camera{"full", true}, worked_camera{"full", false},
                                         worked_camera{"simple", true}, worked_camera{"simple", false}),
                         [](const auto& info) {
                             return std::string(info.param.name) +
                                    (info.param.named ? "_named" : "_registers");
                         });

}  // namespace
}  // namespace simcam_test
