#include "tests/windows/com_fakes.h"
#include "tests/windows/error_box.h"
#include "tests/windows/frame_fixture.h"
#include "tests/windows/page_fixture.h"

#include <commctrl.h>
#include <gmock/gmock.h>
#include <olectl.h>

#include <algorithm>
#include <iterator>
#include <thread>
#include <vector>

namespace page_test {
namespace {

using testing::Contains;
using testing::StartsWith;

class HostsTest : public AccessPathTest {};

std::vector<HWND> VisibleOf(std::vector<HWND> windows) {
    const auto is_hidden = [](HWND window) { return IsWindowVisible(window) == 0; };
    windows.erase(std::remove_if(windows.begin(), windows.end(), is_hidden), windows.end());
    return windows;
}

// One that keeps its pages and activates them anew with each tab; some take the former page away first,
// others only hide it.
TEST_P(HostsTest, AFrameThatActivatesAPageAnewWithEachTab) {
    for (const bool takes_away : {true, false}) {
        std::vector<PagePtr> pages;
        for (const CLSID& clsid : all_pages) pages.push_back(GivenPage(clsid));
        std::vector<std::size_t> controls(pages.size());
        for (int tab = 0; tab < 40; ++tab) {
            const std::size_t at = static_cast<std::size_t>(tab) % pages.size();
            if (tab > 0) {
                IPropertyPage& former = *pages[(at + pages.size() - 1) % pages.size()];
                EXPECT_EQ(takes_away ? former.Deactivate() : former.Show(SW_HIDE), S_OK);
            }
            Open(*pages[at]);
            const std::vector<HWND> shown = VisibleOf(ChildrenOf(host_.Handle()));
            ASSERT_EQ(shown.size(), 1U) << tab;
            const std::size_t count = ChildrenOf(shown[0]).size();
            EXPECT_GE(count, 3U);
            if (controls[at] == 0) controls[at] = count;
            EXPECT_EQ(count, controls[at]) << tab;
            RunMessages();
        }
        const std::size_t windows = ChildrenOf(host_.Handle()).size();
        EXPECT_EQ(windows, takes_away ? 1U : pages.size());
        for (const PagePtr& page : pages) EXPECT_EQ(page->Deactivate(), S_OK);
        EXPECT_TRUE(ChildrenOf(host_.Handle()).empty());
    }
}

// A frame that lets go of everything in the order of the book.
TEST_P(HostsTest, AWellBehavedFrame) {
    CountingSite site;
    for (const CLSID& clsid : all_pages) {
        const PagePtr page = server_.MakePage(clsid);
        EXPECT_EQ(page->SetPageSite(&site), S_OK);
        PageInfo info;
        EXPECT_EQ(page->GetPageInfo(&info), S_OK);
        EXPECT_EQ(Give(*page), S_OK);
        Open(*page);
        RunMessages();
        EXPECT_EQ(page->Deactivate(), S_OK);
        IUnknown* none = nullptr;
        EXPECT_EQ(page->SetObjects(0, &none), E_NOINTERFACE);
        EXPECT_EQ(page->SetPageSite(nullptr), S_OK);
    }
    EXPECT_EQ(site.references, 0);
}

TEST_P(HostsTest, AFrameThatNeverSaysGoodbyeAndDestroysTheParentFirst) {
    CountingSite site;
    {
        const PagePtr page = server_.MakePage(exposure_page);
        page->SetPageSite(&site);
        Give(*page);
        const HWND window = Open(*page);
        host_.Destroy();
        EXPECT_FALSE(IsWindow(window));
        EXPECT_EQ(page->Show(SW_SHOW), E_UNEXPECTED) << "no dead handle is left";
        EXPECT_EQ(page->Move(&rect), E_UNEXPECTED);
        RunMessages();
    }
    EXPECT_EQ(site.references, 0);
}

TEST_P(HostsTest, AFrameThatReleasesAnActivePage) {
    HWND window = nullptr;
    {
        const PagePtr page = GivenPage(exposure_page);
        window = Open(*page);
    }
    EXPECT_FALSE(IsWindow(window)) << "no window is left whose code may be unloaded";
    EXPECT_TRUE(IsWindow(host_.Handle()));
    EXPECT_EQ(server_.CanUnloadNow(), S_OK);
}

TEST_P(HostsTest, AFrameThatDestroysThePageItself) {
    const PagePtr page = GivenPage(exposure_page);
    const HWND window = Open(*page);
    DestroyWindow(window);
    EXPECT_EQ(page->Show(SW_SHOW), E_UNEXPECTED);
    EXPECT_EQ(page->Deactivate(), S_OK);
    EXPECT_TRUE(IsWindow(Open(*page))) << "and activates it again";
    EXPECT_EQ(page->Deactivate(), S_OK);
}

TEST_P(HostsTest, AFrameThatActivatesAPageWithoutObjects) {
    const PagePtr page = server_.MakePage(exposure_page);
    const HWND window = Open(*page);
    EXPECT_TRUE(ChildrenOf(window).empty());
    SendMessageW(window, 1029, 0, 0);
    EXPECT_EQ(page->Deactivate(), S_OK);
}

TEST_P(HostsTest, AFrameThatActivatesAPageWhichRefusedItsObject) {
    for (const char* name : {"empty", "foreign", "colourless"}) {
        UseCamera(name);
        const PagePtr page = server_.MakePage(color_page);
        EXPECT_EQ(Give(*page), E_NOINTERFACE) << name;
        const HWND window = Open(*page);
        EXPECT_TRUE(ChildrenOf(window).empty()) << name;
        SendMessageW(window, 1029, 0, 0);
        EXPECT_EQ(page->Deactivate(), S_OK) << name;
    }
}

TEST_P(HostsTest, AFrameThatSwapsTheCameraOfAnOpenPage) {
    const auto other = simcam::make_camera(SimpleCamera(GetParam()));
    {
        const PagePtr page = GivenPage(exposure_page);
        const HWND window = Open(*page);
        const PageControls controls(window);
        EXPECT_EQ(Give(*page, {other.get()}), S_OK);
        SendMessageW(controls.sliders.at(0), WM_HSCROLL, TB_LINEDOWN, 0);
        RunMessages();
        EXPECT_THAT(camera_->transcript(), Contains(StartsWith(lines_.AnyWrite("ExposureTime"))))
            << "the controls stay with the camera that they were made for";
        other->clear_transcript();
        Open(*page);
        EXPECT_THAT(other->transcript(), Contains(StartsWith(lines_.AnyRead("ExposureTime"))));
        page->Deactivate();
    }
    EXPECT_EQ(other->references(), 1);
}

TEST_P(HostsTest, AFrameThatTakesThePageAwayInTheMidstOfAWrite) {
    PagePtr page = GivenPage(exposure_page);
    const HWND window = Open(*page);
    const PageControls controls(window);
    Settle();
    // The driver runs messages while it works, and one of them closes the frame.
    simcam::fault close;
    close.when = simcam::calls_of(simcam::call_kind::set);
    close.action = [&] {
        page->Deactivate();
        page.reset();
        host_.Destroy();
    };
    camera_->add_fault(close);
    SendMessageW(window, WM_HSCROLL, TB_THUMBTRACK, reinterpret_cast<LPARAM>(controls.sliders.at(0)));
    RunMessages();
    EXPECT_FALSE(IsWindow(window));
    camera_->clear_faults();
}

TEST_P(HostsTest, AFrameThatTakesThePageAwayInTheMidstOfARefresh) {
    constexpr std::uint64_t calls = 4;
    for (std::uint64_t n = 1; n <= calls; ++n) {
        PagePtr page = GivenPage(exposure_page);
        const HWND window = Open(*page);
        Settle();
        camera_->add_fault(simcam::act_at(n, [&] { page.reset(); }));
        SendMessageW(window, 1029, 0, 0);
        EXPECT_FALSE(IsWindow(window)) << n;
        EXPECT_FALSE(page) << n;
        camera_->clear_faults();
    }
}

TEST_P(HostsTest, AFrameThatTakesThePageAwayWhileItIsBuilt) {
    for (std::uint64_t n = 1; n <= 16; ++n) {
        const PagePtr page = GivenPage(exposure_page);
        camera_->add_fault(simcam::act_at(n, [&] { page->Deactivate(); }));
        EXPECT_EQ(page->Activate(host_.Handle(), &rect, FALSE), S_OK);
        camera_->clear_faults();
        EXPECT_EQ(page->Deactivate(), S_OK);
        EXPECT_TRUE(ChildrenOf(host_.Handle()).empty()) << n;
    }
}

TEST_P(HostsTest, AFrameThatGoesWhileTheErrorBoxIsOpen) {
    static PagePtr page;
    static HostWindow* host;
    page = GivenPage(exposure_page);
    host = &host_;
    const HWND window = Open(*page);
    const PageControls controls(window);
    SetFocus(controls.edits.at(0));
    SetWindowTextW(controls.edits.at(0), L"1/0");
    ErrorBoxWatch box;
    box.while_open = [](HWND open) {
        host->Destroy();
        page.reset();
        if (IsWindow(open) != 0) SendMessageW(open, WM_COMMAND, IDOK, 0);
    };
    SetFocus(controls.sliders.at(0));
    EXPECT_EQ(box.boxes, 1);
    EXPECT_FALSE(IsWindow(window));
}

/// Stands in for the platform's help program, which would otherwise be started.
class HelpProgram {
public:
    HelpProgram() {
        WNDCLASSW definition{};
        definition.lpfnWndProc = Procedure;
        definition.hInstance = GetModuleHandleW(nullptr);
        definition.lpszClassName = L"MS_WINHELP";
        RegisterClassW(&definition);
        window_ = CreateWindowExW(0, L"MS_WINHELP", L"help", WS_OVERLAPPEDWINDOW, 0, 0, 10, 10, nullptr,
                                  nullptr, definition.hInstance, nullptr);
    }
    HelpProgram(const HelpProgram&) = delete;
    HelpProgram& operator=(const HelpProgram&) = delete;
    ~HelpProgram() { DestroyWindow(window_); }

    /// What the platform sent: a head of 16 bytes with the command in its second word, then the name of the
    /// file.
    static inline std::string request;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
        if (message != WM_COPYDATA) return DefWindowProcW(window, message, wparam, lparam);
        const auto& sent = *reinterpret_cast<const COPYDATASTRUCT*>(lparam);
        request.assign(static_cast<const char*>(sent.lpData), sent.cbData);
        return TRUE;
    }

    HWND window_;
};

TEST_P(HostsTest, AFrameThatAsksForHelp) {
    const HelpProgram help;
    const PagePtr page = server_.MakePage(exposure_page);
    EXPECT_EQ(page->Help(L"C:\\a folder"), S_OK);
    EXPECT_THAT(help.request, testing::HasSubstr(std::string("C:\\a folder\\\0", 13)));
    EXPECT_EQ(help.request.at(2), HELP_CONTEXTPOPUP);
    EXPECT_EQ(page->Help(nullptr), S_OK);
    EXPECT_THAT(help.request, testing::HasSubstr(std::string("\\\0", 2)));
}

// Opens pages and works them, as the two frames of the next test do at the same time.
void WorkAFrame(const PageServer& server, AccessPath access_path, const std::vector<CLSID>& pages,
                int& opened) {
    const auto camera = simcam::make_camera(SimpleCamera(access_path));
    HostWindow host;
    for (const CLSID& clsid : pages) {
        const PagePtr page = server.MakePage(clsid);
        IUnknown* object = camera.get();
        if (page->SetObjects(1, &object) != S_OK) continue;
        constexpr RECT rect{0, 0, 428, 457};
        page->Activate(host.Handle(), &rect, FALSE);
        page->Show(SW_SHOW);
        const HWND window = GetWindow(host.Handle(), GW_CHILD);
        const PageControls controls(window);
        for (const HWND slider : controls.sliders) SendMessageW(slider, WM_HSCROLL, TB_LINEDOWN, 0);
        for (const HWND button : controls.switches) SendMessageW(button, BM_CLICK, 0, 0);
        RunMessages();
        if (!controls.labels.empty()) ++opened;
        page->Deactivate();
    }
}

// Only one of them shows edits: Wine's rich edits on two threads spoil the font tables that they share.
TEST_P(HostsTest, TwoFramesOnTwoThreads) {
    const std::vector<CLSID> without_edits(60, feature_page);
    std::vector<CLSID> any;
    for (int round = 0; round < 15; ++round)
        any.insert(any.end(), std::begin(all_pages), std::end(all_pages));
    int here = 0;
    int there = 0;
    std::thread other([&] {
        CoInitialize(nullptr);
        WorkAFrame(server_, GetParam(), without_edits, there);
        CoUninitialize();
    });
    WorkAFrame(server_, GetParam(), any, here);
    other.join();
    EXPECT_EQ(here, 60);
    EXPECT_EQ(there, 60);
}

TEST_P(HostsTest, AFrameThatReleasesAnActivePageOnAnotherThread) {
    PagePtr page = GivenPage(exposure_page);
    const HWND window = Open(*page);
    bool done = false;
    std::thread other([&] {
        page.reset();
        done = true;
        PostMessageW(host_.Handle(), WM_NULL, 0, 0);
    });
    MSG message;
    while (!done && GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
    other.join();
    EXPECT_FALSE(IsWindow(window));
}

TEST_P(HostsTest, AFrameThatWaitsWhileAnotherThreadReleasesAnActivePage) {
    PagePtr page = GivenPage(exposure_page);
    const HWND window = Open(*page);
    std::thread([&] { page.reset(); }).join();
    EXPECT_EQ(server_.CanUnloadNow(), S_FALSE) << "the window still has work for the page";
    RunMessages();
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(server_.CanUnloadNow(), S_OK);
}

TEST_P(HostsTest, AFrameThatWaitsWhileAnotherThreadDeactivatesThePage) {
    const PagePtr page = GivenPage(exposure_page);
    const HWND window = Open(*page);
    const std::int32_t references = camera_->references();
    std::thread([&] { EXPECT_EQ(page->Deactivate(), S_OK); }).join();
    RunMessages();
    EXPECT_FALSE(IsWindow(window));
    EXPECT_LT(camera_->references(), references) << "the controls are gone too";
    EXPECT_EQ(page->Show(SW_SHOW), E_UNEXPECTED);
}

TEST_P(FrameTest, ShowsEveryPageAndMovesTheCamera) {
    static std::vector<std::wstring> labels;
    labels.clear();
    const HRESULT hr = RunFrame(*camera_, [](HWND sheet) {
        for (int page = 0; page < 4; ++page) {
            SendMessageW(sheet, PSM_SETCURSEL, static_cast<WPARAM>(page), 0);
            for (const HWND window : OpenPages(sheet)) {
                if (IsWindowVisible(window) == 0) continue;
                const PageControls controls(window);
                labels.push_back(TextOf(controls.labels.at(0)));
                for (const HWND slider : controls.sliders) {
                    SendMessageW(slider, WM_KEYDOWN, VK_END, 0);
                    SendMessageW(slider, WM_KEYUP, VK_END, 0);
                }
                RunMessages();
            }
        }
    });
    EXPECT_EQ(hr, S_OK);
    EXPECT_THAT(labels, testing::ElementsAre(L"Exposure", L"Trigger", L"Zoom", L"Saturation"));
    const Transcript seen = TakeTranscript();
    EXPECT_THAT(seen, Contains(lines_.Write("ExposureTime", 4.0)));
    EXPECT_THAT(seen, Contains(lines_.Write("Zoom", 1000)));
    EXPECT_THAT(seen, Contains(lines_.Write("Saturation", 255)));
}

TEST_P(FrameTest, OpensAndClosesAgainAndAgain) {
    for (int round = 0; round < 5; ++round) {
        EXPECT_EQ(RunFrame(*camera_, [](HWND sheet) { EXPECT_FALSE(OpenPages(sheet).empty()); }), S_OK);
        RunMessages();
        EXPECT_EQ(camera_->references(), 1) << round;
    }
}

TEST_P(FrameTest, SurvivesACameraWithoutColour) {
    UseCamera("colourless");
    EXPECT_EQ(RunFrame(*camera_,
                       [](HWND sheet) {
                           for (int page = 3; page >= 0; --page) {
                               SendMessageW(sheet, PSM_SETCURSEL, static_cast<WPARAM>(page), 0);
                               RunMessages();
                           }
                       }),
              S_OK);
}

INSTANTIATE_TEST_SUITE_P(AccessPaths, HostsTest, testing::Values(AccessPath::Named, AccessPath::Registers),
                         AccessPathName);

INSTANTIATE_TEST_SUITE_P(AccessPaths, FrameTest, testing::Values(AccessPath::Named, AccessPath::Registers),
                         AccessPathName);

}  // namespace
}  // namespace page_test
