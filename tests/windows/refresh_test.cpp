#include "tests/windows/page_fixture.h"

#include <commctrl.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <map>
#include <thread>

namespace page_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Clock = std::chrono::steady_clock;

constexpr UINT update_controls = 1029;

/// A page that is open and quiet, and what the driver is asked when several things happen at once.
class RefreshTest : public OpenPageTest {
protected:
    static void PostKey(HWND control, WPARAM key) {
        PostMessageW(control, WM_KEYDOWN, key, 1);
        PostMessageW(control, WM_KEYUP, key, 1);
    }
    // Something that happens in the midst of the n-th call from now.
    void During(std::uint64_t n, std::function<void()> work) const {
        camera_->add_fault(simcam::act_at(n, std::move(work)));
    }
};

TEST_P(RefreshTest, SeveralThatWaitBecomeOne) {
    OpenPage(lens_page);
    for (int n = 0; n < 5; ++n) PostMessageW(window_, update_controls, 0, 0);
    EXPECT_THAT(Seen(), ElementsAre(lines_.Locked("Zoom", true), lines_.Read("Zoom", 200)));
}

TEST_P(RefreshTest, OneThatIsSentAnswersForThoseThatWait) {
    OpenPage(lens_page);
    PostMessageW(window_, update_controls, 0, 0);
    SendMessageW(window_, update_controls, 0, 0);
    EXPECT_THAT(TakeTranscript(), testing::SizeIs(2));
    EXPECT_THAT(Seen(), IsEmpty());
}

TEST_P(RefreshTest, TheEndOfTheProgramStaysInTheQueue) {
    OpenPage(lens_page);
    PostQuitMessage(17);
    SendMessageW(window_, update_controls, 0, 0);
    MSG message;
    int end = 0;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        if (message.message == WM_QUIT) end = static_cast<int>(message.wParam);
        DispatchMessageW(&message);  // who asks to be painted asks until it is
    }
    EXPECT_EQ(end, 17);
}

TEST_P(RefreshTest, InputThatWaitsGoesFirst) {
    const PageControls controls = OpenPage(lens_page);
    PostMessageW(window_, update_controls, 0, 0);
    PostKey(controls.sliders[0], VK_RIGHT);
    EXPECT_THAT(Seen(), ElementsAre(lines_.Write("Zoom", 210), lines_.Locked("Zoom", true),
                                    lines_.Read("Zoom", 210)));
    EXPECT_EQ(TextOf(controls.edits[0]), L"210");
}

TEST_P(RefreshTest, InputThatChangesNothingIsFollowedByTheRefresh) {
    OpenPage(lens_page);
    PostMessageW(window_, WM_MOUSEMOVE, 0, MAKELPARAM(1, 1));
    SendMessageW(window_, update_controls, 0, 0);
    EXPECT_THAT(TakeTranscript(), IsEmpty()) << "gives way";
    EXPECT_THAT(Seen(), ElementsAre(lines_.Locked("Zoom", true), lines_.Read("Zoom", 200)));
    EXPECT_THAT(Seen(), IsEmpty());
}

TEST_P(RefreshTest, InputThatComesMeanwhileIsLetInBetweenElements) {
    const PageControls controls = OpenPage(exposure_page);
    During(1, [&] { PostKey(controls.sliders[0], VK_END); });
    SendMessageW(window_, update_controls, 0, 0);
    EXPECT_THAT(TakeTranscript(),
                ElementsAre(lines_.Locked("ExposureTime", true), lines_.Read("ExposureTime", 0.01)));
    EXPECT_THAT(Seen(), ElementsAre(lines_.Write("ExposureTime", 4.0), lines_.Locked("ExposureAuto", true),
                                    lines_.Read("ExposureAuto", 0), lines_.Locked("ExposureTime", true),
                                    lines_.Read("ExposureTime", 4.0)));
    EXPECT_EQ(TextOf(controls.edits[0]), L"4.000 sec");
    EXPECT_EQ(SendMessageW(controls.sliders[0], TBM_GETPOS, 0, 0), 100);
}

TEST_P(RefreshTest, InputWithoutEndHoldsItUpForALimitedTime) {
    const PageControls controls = OpenPage(lens_page);
    WPARAM key = VK_END;
    simcam::fault slow;
    slow.when = simcam::calls_of(simcam::call_kind::set);
    slow.action = [&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        key = key == VK_END ? VK_HOME : VK_END;
        PostMessageW(controls.sliders[0], WM_KEYDOWN, key, 1);
    };
    camera_->add_fault(slow);
    PostMessageW(controls.sliders[0], WM_KEYDOWN, key, 1);
    const std::string reads = lines_.AnyRead("Zoom");
    MSG message;
    bool refreshed = false;
    for (int n = 0; n < 500 && !refreshed && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0; ++n) {
        DispatchMessageW(&message);
        for (const std::string& line : TakeTranscript()) refreshed |= line.rfind(reads, 0) == 0;
    }
    EXPECT_TRUE(refreshed);
    camera_->clear_faults();
    RunMessages();
    EXPECT_EQ(SendMessageW(controls.sliders[0], TBM_GETPOS, 0, 0), key == VK_END ? 100 : 0);
}

TEST_P(RefreshTest, AHiddenPageDoesNotWait) {
    OpenPage(lens_page);
    page_->Show(SW_HIDE);
    PostMessageW(host_.Handle(), WM_MOUSEMOVE, 0, MAKELPARAM(1, 1));
    SendMessageW(window_, update_controls, 0, 0);
    EXPECT_THAT(TakeTranscript(), testing::SizeIs(2));
}

TEST_P(RefreshTest, APageThatIsOpenedAnewForgetsWhatWaited) {
    OpenPage(lens_page);
    PostMessageW(window_, WM_MOUSEMOVE, 0, MAKELPARAM(1, 1));
    SendMessageW(window_, update_controls, 0, 0);
    page_->Deactivate();
    window_ = Open(*page_);
    static_cast<void>(TakeTranscript());
    EXPECT_THAT(Seen(), IsEmpty());
}

TEST_P(RefreshTest, OneWithinACallIsFollowedByAnother) {
    const PageControls controls = OpenPage(lens_page);
    During(2, [&] {
        SendMessageW(window_, update_controls, 0, 0);
        EXPECT_EQ(camera_->set_named("Zoom/Value", 500), S_OK);
    });
    SendMessageW(window_, update_controls, 0, 0);
    EXPECT_EQ(camera_->set_named("Zoom/Value", 600), S_OK);
    RunMessages();
    EXPECT_EQ(SendMessageW(controls.sliders[0], TBM_GETPOS, 0, 0), 60);
    EXPECT_EQ(TextOf(controls.edits[0]), L"600");
}

INSTANTIATE_TEST_SUITE_P(AccessPaths, RefreshTest, testing::Values(AccessPath::Named, AccessPath::Registers),
                         AccessPathName);

struct PageTraffic {
    std::uint64_t opening;
    std::uint64_t refresh;
};
bool operator==(const PageTraffic& one, const PageTraffic& other) {
    return one.opening == other.opening && one.refresh == other.refresh;
}
void PrintTo(const PageTraffic& traffic, std::ostream* out) {
    *out << "opening " << traffic.opening << ", refresh " << traffic.refresh;
}

// What kinds of calls are told apart: the last part of a path, else which set and which way.
std::string KindOf(const simcam::driver_call& call) {
    const std::size_t slash = call.path.rfind('/');
    if (slash != std::string::npos) return call.path.substr(slash);
    return call.text.substr(0, call.text.find_first_of("({0123456789="));
}

class TrafficTest : public PageTest {
protected:
    std::vector<PageTraffic> Measure(AccessPath access_path) {
        camera_ = simcam::make_camera(CameraOn(access_path, "full"));
        std::vector<PageTraffic> all;
        for (const CLSID& clsid : {exposure_page, feature_page, lens_page, color_page}) {
            const PagePtr page = GivenPage(clsid);
            camera_->clear_transcript();
            const HWND window = Open(*page);
            PrintKinds(all.size());
            const auto opening = camera_->calls().size();
            RunMessages();
            camera_->clear_transcript();
            SendMessageW(window, update_controls, 0, 0);
            all.push_back({opening, camera_->calls().size()});
            page->Deactivate();
        }
        return all;
    }
    void PrintKinds(std::size_t page) const {
        std::map<std::string, int> kinds;
        for (const simcam::driver_call& call : camera_->calls()) ++kinds[KindOf(call)];
        std::cout << "opening page " << page << ":";
        for (const auto& [kind, count] : kinds) std::cout << " " << count << " " << kind << ",";
        std::cout << "\n";
    }
};

TEST_F(TrafficTest, OfTheFullCameraByName) {
    EXPECT_THAT(Measure(AccessPath::Named), ElementsAre(PageTraffic{81, 35}, PageTraffic{36, 11},
                                                        PageTraffic{69, 25}, PageTraffic{76, 29}));
}

TEST_F(TrafficTest, OfTheFullCameraOverRegisters) {
    EXPECT_THAT(Measure(AccessPath::Registers), ElementsAre(PageTraffic{61, 43}, PageTraffic{32, 12},
                                                            PageTraffic{62, 31}, PageTraffic{68, 37}));
}

/// A driver that takes its time, and a user who does not.
class SlowDriverTest : public PageTest {
protected:
    static constexpr int steps = 50;

    static simcam::camera_options SlowCamera() {
        simcam::camera_options options = CameraOn(AccessPath::Named, "full");
        options.call_delay = std::chrono::milliseconds(5);
        return options;
    }
    SlowDriverTest() : PageTest(SlowCamera()) {}

    // A hand that moves the mouse at the pace of a screen.
    static void Drag(HWND slider, DWORD thread, POINT from) {
        const auto post = [&](UINT message, int step) {
            PostMessageW(slider, message, MK_LBUTTON, MAKELPARAM(from.x + step * 2, from.y));
        };
        post(WM_LBUTTONDOWN, 0);
        for (int step = 1; step <= steps; ++step) {
            std::this_thread::sleep_for(std::chrono::milliseconds(16));
            post(WM_MOUSEMOVE, step);
        }
        post(WM_LBUTTONUP, steps);
        PostThreadMessageW(thread, WM_APP, 0, 0);
    }

    // Until the hand rests and nothing is left to do.
    static void RunMessagesOfTheDrag() {
        MSG message;
        bool rests = false;
        while (!rests && GetMessageW(&message, nullptr, 0, 0) > 0) {
            rests = message.hwnd == nullptr && message.message == WM_APP;
            DispatchMessageW(&message);
        }
        RunMessages();
    }
};

TEST_F(SlowDriverTest, ASliderFollowsTheHand) {
    const PagePtr page = GivenPage(exposure_page);
    const HWND window = Open(*page);
    RunMessages();
    const HWND slider = PageControls(window).sliders.at(0);
    SendMessageW(slider, TBM_SETPOS, TRUE, 0);
    RECT thumb{};
    SendMessageW(slider, TBM_GETTHUMBRECT, 0, reinterpret_cast<LPARAM>(&thumb));
    camera_->clear_transcript();
    Clock::time_point last_write;
    camera_->set_listener([&](const simcam::driver_call& call) {
        if (call.kind == simcam::call_kind::set) last_write = Clock::now();
    });
    const POINT from{(thumb.left + thumb.right) / 2, (thumb.top + thumb.bottom) / 2};
    std::thread hand(Drag, slider, GetCurrentThreadId(), from);
    RunMessagesOfTheDrag();
    hand.join();
    const auto settled = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - last_write);
    camera_->set_listener(nullptr);
    const std::vector<simcam::driver_call> calls = camera_->calls();
    const auto writes = std::count_if(calls.begin(), calls.end(), [](const simcam::driver_call& call) {
        return call.kind == simcam::call_kind::set;
    });
    std::cout << "drag: steps " << steps << ", writes " << writes << ", calls " << calls.size()
              << ", settled after ms " << settled.count() << "\n";
    EXPECT_GE(writes, 45);
    EXPECT_GT(SendMessageW(slider, TBM_GETPOS, 0, 0), 50);
    EXPECT_GE(calls.size(), static_cast<std::size_t>(writes) + 35) << "the last state is shown";
    page->Deactivate();
}

}  // namespace
}  // namespace page_test
