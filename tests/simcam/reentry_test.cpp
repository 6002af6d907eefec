// While the driver answers one of its calls it runs messages, and one of them brings the host back into the
// pages of the same camera.

#include "simcam/simulated_camera.h"
#include "tests/simcam/page_view.h"

#include <gtest/gtest.h>

#include <functional>

namespace simcam_test {
namespace {

using test_support::RecorderCanvas;
using ZELPropUI::all_pages;
using ZELPropUI::PageName;

/// A camera whose pages are open from its first call on.
struct open_camera {
    explicit open_camera(const simcam::camera_options& options) : pages(options) {}

    void live(PageName page) {
        pages.build(page, canvas);
        work(canvas);
    }

    camera_on_pages pages;
    RecorderCanvas canvas;
};

struct camera_on_access_path {
    const char* name;
    bool named;
};

class ReentryTest : public testing::TestWithParam<camera_on_access_path> {
protected:
    // At every call in the life of every page.
    template <class Meanwhile>
    void strike_every_call(Meanwhile meanwhile) {
        simcam::camera_options options =
            over_one_access_path(*simcam::ready_made(GetParam().name), GetParam().named);
        options.keep_transcript = false;
        for (const PageName page : all_pages) {
            open_camera undisturbed(options);
            const std::uint64_t before = undisturbed.pages.camera->call_count();
            undisturbed.live(page);
            const std::uint64_t calls = undisturbed.pages.camera->call_count() - before;
            for (std::uint64_t n = 1; n <= calls; ++n) {
                open_camera camera(options);
                camera.pages.camera->add_fault(simcam::act_at(n, [&] { meanwhile(camera); }));
                camera.live(page);
                camera.pages.camera->clear_faults();
                RecorderCanvas again;
                camera.pages.build(page, again);
                EXPECT_EQ(again.placed.size(), undisturbed.canvas.placed.size()) << n;
            }
        }
    }
};

TEST_P(ReentryTest, AnotherPageMayBeOpened) {
    strike_every_call([](open_camera& camera) {
        RecorderCanvas canvas;
        camera.pages.build(PageName::Feature, canvas);
    });
}

TEST_P(ReentryTest, TheUserMayWorkOn) {
    strike_every_call([](open_camera& camera) { work(camera.canvas); });
}

TEST_P(ReentryTest, ThePageMayBeClosed) {
    strike_every_call([](open_camera& camera) { camera.canvas.placed.clear(); });
}

std::string name_of(const testing::TestParamInfo<camera_on_access_path>& info) {
    return std::string(info.param.name) + (info.param.named ? "_named" : "_registers");
}

INSTANTIATE_TEST_SUITE_P(Cameras, ReentryTest,
                         testing::Values(camera_on_access_path{"simple", true},
                                         camera_on_access_path{"simple", false},
                                         camera_on_access_path{"builtin", true}),
                         name_of);

}  // namespace
}  // namespace simcam_test
