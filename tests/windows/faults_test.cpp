#include "adapter/hr_exception.h"
#include "tests/windows/error_box.h"
#include "tests/windows/page_fixture.h"

#include <commctrl.h>

namespace page_test {
namespace {

/// The life of a page of the simple camera, from the first object to the last release, with all controls
/// worked and a fault of the driver somewhere in it.
class FaultsTest : public AccessPathTest {
protected:
    static void Work(HWND window) {
        const PageControls controls(window);
        for (const HWND slider : controls.sliders) SendMessageW(slider, WM_HSCROLL, TB_LINEDOWN, 0);
        for (const HWND spin : controls.spins) SendMessageW(spin, WM_VSCROLL, SB_THUMBPOSITION, 0);
        for (const HWND button : controls.switches) SendMessageW(button, BM_CLICK, 0, 0);
        for (const HWND button : controls.buttons) SendMessageW(button, BM_CLICK, 0, 0);
        for (const HWND combo : controls.combos) {
            SendMessageW(window, WM_COMMAND, MAKEWPARAM(0, CBN_SELCHANGE), reinterpret_cast<LPARAM>(combo));
        }
        for (const HWND edit : controls.edits) SetFocus(edit);
        SetFocus(GetParent(window));
        RunMessages();
    }

    void LivePage(REFCLSID clsid) const {
        const PagePtr page = server_.MakePage(clsid);
        HRESULT given = E_FAIL;
        try {
            given = Give(*page);
        } catch (const genicam_adapter::hr_exception& exception) {
            EXPECT_EQ(exception.hr(), E_FAIL);
        }
        EXPECT_TRUE(given == S_OK || given == E_NOINTERFACE || given == E_FAIL) << given;
        // Some hosts do not care whether the page refused.
        EXPECT_EQ(page->Activate(host_.Handle(), &rect, FALSE), S_OK);
        Work(GetWindow(host_.Handle(), GW_CHILD));
        EXPECT_EQ(page->IsPageDirty(), S_FALSE);
        EXPECT_EQ(page->Deactivate(), S_OK);
    }

    void StrikeEachPage(const FaultAt& fault) {
        ErrorBoxWatch refused_texts;
        for (const CLSID& clsid : all_pages) {
            ASSERT_NO_FATAL_FAILURE(StrikeCalls([&] { LivePage(clsid); }, fault));
        }
    }
};

simcam::fault FailAt(std::uint64_t n) { return simcam::fail_nth(n, E_FAIL); }

TEST_P(FaultsTest, EveryCallMayFail) { StrikeEachPage(FailAt); }

TEST_P(FaultsTest, TheCameraMayBeLostAtEveryCall) {
    StrikeEachPage([](std::uint64_t n) { return simcam::lost_after(n - 1); });
}

TEST_P(FaultsTest, EveryCallMayThrow) { StrikeEachPage(simcam::throw_at); }

TEST_P(FaultsTest, EveryCallMayLieAboutItsSize) {
    StrikeEachPage([](std::uint64_t n) {
        simcam::fault lie;
        lie.first = n;
        lie.count = 1;
        lie.returned = 0x7FFFFFFF;
        return lie;
    });
}

TEST_P(FaultsTest, ARefusedWriteLeavesTheCameraAsItWas) {
    UseCamera("full");
    const PagePtr page = GivenPage(exposure_page);
    const HWND window = Open(*page);
    Settle();
    camera_->add_fault(simcam::fail_when(simcam::calls_of(simcam::call_kind::set), E_ACCESSDENIED));
    double before = 0;
    double after = 0;
    EXPECT_EQ(camera_->get_named("ExposureTime/Value", before), S_OK);
    ErrorBoxWatch refused_texts;
    Work(window);
    EXPECT_EQ(camera_->get_named("ExposureTime/Value", after), S_OK);
    EXPECT_EQ(before, after);
    page->Deactivate();
}

INSTANTIATE_TEST_SUITE_P(AccessPaths, FaultsTest, testing::Values(AccessPath::Named, AccessPath::Registers),
                         AccessPathName);

}  // namespace
}  // namespace page_test
