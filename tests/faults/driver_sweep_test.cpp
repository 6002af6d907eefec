// One driver call goes wrong, the n-th for every n, in each way that a call can, while a page is built, shown
// and worked. A sweep over all takes every n and every way; else it is a sample.

#include "items/unknown.h"
#include "tests/simcam/marked_cameras.h"
#include "tests/simcam/page_view.h"
#include "tests/support/sweep.h"

#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace faults_test {
namespace {

using simcam_test::camera_on_pages;
using simcam_test::shown_on;
using test_support::RecorderCanvas;
using ZELPropUI::PageName;

constexpr HRESULT results[] = {E_NOTIMPL,
                               E_ACCESSDENIED,
                               E_INVALIDARG,
                               E_FAIL,
                               static_cast<HRESULT>(0x8007007A),
                               static_cast<HRESULT>(0x80070651),
                               static_cast<HRESULT>(0x80070490)};

std::vector<simcam::fault> faults_at(std::uint64_t n) {
    std::vector<simcam::fault> all;
    for (const HRESULT result : results) all.push_back(simcam::fail_nth(n, result));
    for (const DWORD returned : {0U, 1U, 3U, 9U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        all.push_back(simcam::claim_size({}, returned));
        all.back().first = n;
        all.back().count = 1;
    }
    all.push_back(simcam::throw_at(n));
    all.push_back(simcam::lost_after(n - 1));
    return all;
}

struct page_of_camera {
    std::string camera;
    bool named;
    PageName page;
};

simcam::camera_options options_of(const page_of_camera& wanted) {
    for (const simcam_test::marked_description& marked : simcam_test::marked_descriptions()) {
        if (marked.name == wanted.camera)
            return simcam_test::over_one_access_path(simcam_test::camera_of(marked, 7), wanted.named);
    }
    return simcam_test::over_one_access_path(*simcam::ready_made(wanted.camera), wanted.named);
}

class DriverSweep : public testing::TestWithParam<page_of_camera> {
protected:
    DriverSweep() {
        simcam::camera_options options = options_of(GetParam());
        options.keep_transcript = false;
        camera_ = simcam::make_camera(std::move(options));
    }

    template <class Life>
    void strike_each(Life life) {
        const std::uint64_t before = camera_->call_count();
        life();
        const std::uint64_t calls = camera_->call_count() - before;
        const std::uint64_t step = test_support::by_sweep(1 + calls / 3, 1 + calls / 6, std::uint64_t{1});
        std::size_t turn = 0;
        for (std::uint64_t n = 1; n <= calls && !HasFailure(); n += step) {
            const std::vector<simcam::fault> faults = faults_at(n);
            for (std::size_t count = test_support::by_sweep(std::size_t{2}, std::size_t{2}, faults.size());
                 count > 0; --count) {
                SCOPED_TRACE(n);
                camera_->add_fault(faults[turn++ % faults.size()]);
                try {
                    life();
                } catch (const std::exception&) {
                    // What the driver throws while it is asked for its descriptions leaves.
                }
                camera_->clear_faults();
            }
        }
    }

    std::vector<std::string> fresh_page() {
        camera_on_pages pages(camera_);
        RecorderCanvas canvas;
        pages.build(GetParam().page, canvas);
        return shown_on(canvas);
    }

    void expect_nothing_left() {
        EXPECT_EQ(camera_->references(), 1);
        EXPECT_EQ(ZELAdapterHelper::CUnknown::LiveObjects(), 0);
    }

    simcam::camera_ptr camera_;
};

TEST_P(DriverSweep, APageThatIsBuiltMeanwhileIsWholeTheNextTime) {
    const std::vector<std::string> whole = fresh_page();
    strike_each([this] { (void)fresh_page(); });
    expect_nothing_left();
    EXPECT_EQ(fresh_page(), whole);
}

// Some controls show what their page keeps: numbers of the digital inputs and outputs what "Read" gave, and
// over registers what the description itself holds. All others show the camera.
TEST_P(DriverSweep, APageThatIsWorkedMeanwhileShowsTheCameraAndLeavesNothingBehind) {
    const bool keeps_nothing = GetParam().named && GetParam().page != PageName::Feature;
    {
        camera_on_pages pages(camera_);
        RecorderCanvas canvas;
        pages.build(GetParam().page, canvas);
        strike_each([&] {
            simcam_test::work(canvas);
            simcam_test::refresh(canvas);
        });
        simcam_test::refresh(canvas);
        const std::vector<std::string> shown = shown_on(canvas);
        if (keeps_nothing) {
            EXPECT_EQ(shown, fresh_page());
        }
        simcam_test::refresh(canvas);
        EXPECT_EQ(shown_on(canvas), shown);
    }
    expect_nothing_left();
}

std::vector<page_of_camera> all_pages_of_cameras() {
    std::vector<std::string> names;
    for (const simcam::camera_name& known : simcam::camera_names()) names.emplace_back(known.name);
    for (const auto& marked : simcam_test::marked_descriptions()) names.push_back(marked.name);
    std::vector<page_of_camera> all;
    for (const std::string& name : names) {
        // These offer no access path.
        if (name == "empty" || name == "foreign") continue;
        for (const bool named : {true, false}) {
            for (const PageName page : ZELPropUI::all_pages) all.push_back({name, named, page});
        }
    }
    return all;
}

INSTANTIATE_TEST_SUITE_P(Cameras, DriverSweep, testing::ValuesIn(all_pages_of_cameras()),
                         [](const auto& one) {
                             std::string name = one.param.camera +
                                                (one.param.named ? "_named_" : "_registers_") +
                                                std::to_string(static_cast<int>(one.param.page));
                             for (char& c : name) {
                                 if (c == '-') c = '_';
                             }
                             return name;
                         });

}  // namespace
}  // namespace faults_test
