// What a driver that has nothing but the device set sees of the whole life of its pages, access path by
// access path.

#include "tests/windows/error_box.h"
#include "tests/windows/page_fixture.h"

#include <commctrl.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace page_test {
namespace {

using testing::Contains;
using testing::StartsWith;

class AccessPathContractTest : public AccessPathTest {
protected:
    // Built-in items look for their properties in these.
    void UseCameraWithoutControls(simcam::camera_options options) {
        options.camera_control = false;
        options.video_proc_amp = false;
        UseCamera(std::move(options));
    }

    static void WorkEverything(HWND window) {
        const PageControls controls(window);
        for (const HWND slider : controls.sliders) {
            SendMessageW(slider, WM_KEYDOWN, VK_END, 0);
            SendMessageW(slider, WM_KEYUP, VK_END, 0);
        }
        for (const HWND spin : controls.spins)
            SendMessageW(window, WM_VSCROLL, SB_THUMBPOSITION, AsParam(spin));
        for (const HWND button : controls.switches) SendMessageW(button, BM_CLICK, 0, 0);
        for (const HWND button : controls.buttons) SendMessageW(button, BM_CLICK, 0, 0);
        for (const HWND combo : controls.combos) {
            SendMessageW(combo, CB_SETCURSEL, 1, 0);
            SendMessageW(window, WM_COMMAND, MAKEWPARAM(0, CBN_SELCHANGE), AsParam(combo));
        }
        for (const HWND edit : controls.edits) SetFocus(edit);
        SetFocus(GetParent(window));
        RunMessages();
        SendMessageW(window, 1029, 0, 0);
    }

    Transcript SeenOfAllLives() const {
        ErrorBoxWatch refused_texts;
        camera_->clear_transcript();
        for (const CLSID& clsid : all_pages) {
            const PagePtr page = GivenPage(clsid);
            WorkEverything(Open(*page));
            page->Deactivate();
        }
        return TakeTranscript();
    }

    void ExpectItsAccessPathAlone(const Transcript& seen) const {
        const std::string allowed[] = {"QuerySupported ", "Get gate 0 -> 5, ok", "Get device 1 {",
                                       "Get device 2 {",  lines_.AnyRead(),      lines_.AnyWrite()};
        for (const std::string& line : seen) {
            const bool is_on_access_path =
                std::any_of(std::begin(allowed), std::end(allowed),
                            [&](const std::string& start) { return line.rfind(start, 0) == 0; });
            EXPECT_TRUE(is_on_access_path) << line;
        }
        for (const std::string& start :
             {std::string("Get gate 0 "), std::string("Get device 1 {1, 0}"),
              std::string("Get device 2 {1, 0}"), lines_.AnyRead(), lines_.AnyWrite()}) {
            EXPECT_THAT(seen, Contains(StartsWith(start)));
        }
    }

private:
    static LPARAM AsParam(HWND window) { return reinterpret_cast<LPARAM>(window); }
};

TEST_P(AccessPathContractTest, TheSimpleCameraSeesItsAccessPathAlone) {
    UseCameraWithoutControls(SimpleCamera(GetParam()));
    const Transcript seen = SeenOfAllLives();
    ExpectItsAccessPathAlone(seen);
    for (const std::string& line : {lines_.Write("ExposureTime", 4.0), lines_.Write("ExposureAuto", 1),
                                    lines_.Write("TriggerEnable", 0), lines_.WriteEntry(1),
                                    lines_.Write("Zoom", 1000), lines_.Write("Saturation", 255)}) {
        EXPECT_THAT(seen, Contains(line));
    }
}

TEST_P(AccessPathContractTest, TheDescribedCameraSeesItsAccessPathAlone) {
    UseCameraWithoutControls(CameraOn(GetParam(), "described"));
    ExpectItsAccessPathAlone(SeenOfAllLives());
}

// What a page shows, in words.
std::vector<std::wstring> StatesOf(HWND window) {
    std::vector<std::wstring> states;
    for (const HWND child : ChildrenOf(window)) {
        std::wstring state = ClassOf(child) + L" '" + TextOf(child) + L"'";
        state += IsWindowEnabled(child) != 0 ? L" enabled" : L" disabled";
        for (const UINT message : {static_cast<UINT>(TBM_GETPOS), static_cast<UINT>(TBM_GETRANGEMAX)}) {
            if (state.find(L"trackbar") == std::wstring::npos) break;
            state += L" " + std::to_wstring(SendMessageW(child, message, 0, 0));
        }
        if (state.find(L"BUTTON") != std::wstring::npos)
            state += L" " + std::to_wstring(SendMessageW(child, BM_GETCHECK, 0, 0));
        states.push_back(std::move(state));
    }
    return states;
}

/// Two cameras that differ in their access path alone.
class BothAccessPathsTest : public PageTest {
protected:
    BothAccessPathsTest() : PageTest(CameraOn(AccessPath::Named, "described")) {}
    ~BothAccessPathsTest() override { EXPECT_EQ(by_register_->references(), 1); }

    // Does the same to a page of either camera; both must show the same before and behind it.
    template <class Work>
    void ExpectTheSameOf(REFCLSID clsid, Work work) const {
        const PagePtr one = GivenPage(clsid);
        const PagePtr other = server_.MakePage(clsid);
        EXPECT_EQ(Give(*other, {by_register_.get()}), S_OK);
        const HWND named = Open(*one);
        EXPECT_EQ(other->Activate(second_host_.Handle(), &rect, FALSE), S_OK);
        EXPECT_EQ(other->Show(SW_SHOW), S_OK);
        const HWND registers = GetWindow(second_host_.Handle(), GW_CHILD);
        EXPECT_EQ(StatesOf(named), StatesOf(registers));
        const std::size_t controls = ChildrenOf(named).size();
        for (std::size_t at = 0; at < controls; ++at) {
            for (const HWND page : {named, registers}) work(ChildrenOf(page).at(at));
            RunMessages();
            ASSERT_EQ(StatesOf(named), StatesOf(registers)) << at;
        }
        one->Deactivate();
        other->Deactivate();
    }

    simcam::camera_ptr by_register_ = simcam::make_camera(CameraOn(AccessPath::Registers, "described"));
    HostWindow second_host_;
};

TEST_F(BothAccessPathsTest, ShowTheSameWindowsWhateverIsClickedAndMoved) {
    for (const CLSID& clsid : all_pages) {
        ExpectTheSameOf(clsid, [](HWND control) {
            SendMessageW(control, BM_CLICK, 0, 0);
            for (const auto key : std::initializer_list<WPARAM>{VK_END, VK_DOWN, VK_HOME, VK_RIGHT}) {
                SendMessageW(control, WM_KEYDOWN, key, 0);
                SendMessageW(control, WM_KEYUP, key, 0);
            }
        });
    }
}

INSTANTIATE_TEST_SUITE_P(AccessPaths, AccessPathContractTest,
                         testing::Values(AccessPath::Named, AccessPath::Registers), AccessPathName);

}  // namespace
}  // namespace page_test
