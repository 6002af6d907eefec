#include "adapter/hr_exception.h"
#include "tests/support/sweep.h"
#include "tests/windows/error_box.h"
#include "tests/windows/page_fixture.h"
#include "tests/windows/process_footprint.h"

#include <commctrl.h>

#include <cstdio>

namespace page_test {
namespace {

using PageWork = void (*)(HWND window);

// False where the camera cannot be reached.
bool Give(IPropertyPage& page, IUnknown* camera) {
    try {
        return page.SetObjects(1, &camera) == S_OK;
    } catch (const genicam_adapter::hr_exception&) {
        return false;
    }
}

// A host's whole life with some pages: load, open each page, work it, close, unload.
void LiveOnce(IUnknown* camera, const std::vector<CLSID>& pages, PageWork work) {
    const PageServer server;
    HostWindow host;
    for (const CLSID& clsid : pages) {
        const PagePtr page = server.MakePage(clsid);
        const bool given = Give(*page, camera);
        constexpr RECT rect{0, 0, 428, 457};
        page->Activate(host.Handle(), &rect, FALSE);
        page->Show(SW_SHOW);
        const HWND window = GetWindow(host.Handle(), GW_CHILD);
        ASSERT_EQ(ChildrenOf(window).empty(), !given);
        work(window);
        RunMessages();
        page->Deactivate();
    }
    host.Destroy();
    RunMessages();
    ASSERT_EQ(server.CanUnloadNow(), S_OK);
}

void LiveOften(IUnknown* camera, int rounds, const std::vector<CLSID>& pages, PageWork work) {
    for (int round = 0; round < rounds; ++round) {
        LiveOnce(camera, pages, work);
        ASSERT_FALSE(testing::Test::HasFatalFailure());
        ASSERT_EQ(GetModuleHandleW(L"selvane_page.dll"), nullptr) << "unloaded";
    }
}

// What is left behind is left behind each time; the platform keeps something now and then, and lets go of it.
template <class Count>
void ExpectNoGrowth(const char* what, Count before, Count between, Count after) {
    EXPECT_FALSE(before < between && between < after)
        << what << ": " << before << ", " << between << ", " << after;
}

void ExpectNoGrowth(const Footprint& before, const Footprint& between, const Footprint& after) {
    std::printf("before: %s\nbetween: %s\nafter: %s\n", testing::PrintToString(before).c_str(),
                testing::PrintToString(between).c_str(), testing::PrintToString(after).c_str());
    EXPECT_EQ(after.windows, before.windows);
    EXPECT_EQ(after.next_window, before.next_window);
    ExpectNoGrowth("handles", before.next_handle, between.next_handle, after.next_handle);
    ExpectNoGrowth("GDI objects", before.gdi_objects, between.gdi_objects, after.gdi_objects);
    ExpectNoGrowth("heap blocks", before.heap_blocks, between.heap_blocks, after.heap_blocks);
    ExpectNoGrowth("bytes", before.heap_bytes, between.heap_bytes, after.heap_bytes);
}

// A hundred lives in a sweep over all, else forty.
void ExpectNoGrowth(simcam::camera_options options, const std::vector<CLSID>& pages, PageWork work) {
    const int tenth = test_support::by_sweep(4, 4, 10);
    options.keep_transcript = false;
    const auto camera = simcam::make_camera(options);
    ErrorBoxWatch refused_texts;
    LiveOften(camera.get(), 4 * tenth, pages, work);
    const Footprint before = MeasureFootprint();
    LiveOften(camera.get(), 3 * tenth, pages, work);
    const Footprint between = MeasureFootprint();
    LiveOften(camera.get(), 3 * tenth, pages, work);
    ExpectNoGrowth(before, between, MeasureFootprint());
    EXPECT_EQ(camera->references(), 1);
}

void WorkAllControls(HWND window) {
    const PageControls controls(window);
    for (const HWND slider : controls.sliders) SendMessageW(slider, WM_HSCROLL, TB_LINEDOWN, 0);
    for (const HWND button : controls.switches) SendMessageW(button, BM_CLICK, 0, 0);
    for (const HWND button : controls.buttons) SendMessageW(button, BM_CLICK, 0, 0);
    for (const HWND edit : controls.edits) SetFocus(edit);
    SetFocus(GetParent(window));
}

void Refresh(HWND window) { SendMessageW(window, 1029, 0, 0); }

TEST(FootprintTest, SeesOneObjectMore) {
    const Footprint before = MeasureFootprint();
    const HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
    EXPECT_EQ(MeasureFootprint().gdi_objects, before.gdi_objects + 1);
    DeleteObject(brush);
    EXPECT_EQ(MeasureFootprint().gdi_objects, before.gdi_objects);
}

TEST(LeaksTest, LivesOfAllPagesLeaveNothingBehind) {
    ExpectNoGrowth(*simcam::ready_made("simple"), {exposure_page, feature_page, lens_page, color_page},
                   WorkAllControls);
}

TEST(LeaksTest, LivesOfAPageFullOfControlsLeaveNothingBehind) {
    ExpectNoGrowth(*simcam::ready_made("full"), {exposure_page}, Refresh);
}

// The DLL stays loaded, and the page lives on. A thousand times in a sweep over all.
TEST(LeaksTest, OpensOfOnePageLeaveNothingBehind) {
    const int tenth = test_support::by_sweep(15, 15, 100);
    auto options = *simcam::ready_made("simple");
    options.keep_transcript = false;
    const auto camera = simcam::make_camera(options);
    const PageServer server;
    HostWindow host;
    const PagePtr page = server.MakePage(exposure_page);
    ASSERT_TRUE(Give(*page, camera.get()));
    const auto open_often = [&](int rounds) {
        for (int round = 0; round < rounds; ++round) {
            constexpr RECT rect{0, 0, 428, 457};
            page->Activate(host.Handle(), &rect, FALSE);
            page->Show(SW_SHOW);
            ASSERT_FALSE(ChildrenOf(GetWindow(host.Handle(), GW_CHILD)).empty()) << round;
            RunMessages();
            page->Deactivate();
        }
    };
    open_often(4 * tenth);
    const Footprint before = MeasureFootprint();
    open_often(3 * tenth);
    const Footprint between = MeasureFootprint();
    open_often(3 * tenth);
    ExpectNoGrowth(before, between, MeasureFootprint());
}

TEST(LeaksTest, AHundredCamerasThatCannotBeReachedLeaveNothingBehind) {
    auto options = *simcam::ready_made("simple");
    options.named_access = false;
    options.register_access = false;
    ExpectNoGrowth(options, {exposure_page}, Refresh);
}

}  // namespace
}  // namespace page_test
