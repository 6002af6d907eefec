#include "adapter/hr_exception.h"
#include "tests/windows/com_fakes.h"
#include "tests/windows/error_box.h"
#include "tests/windows/page_fixture.h"

#include <commctrl.h>

#include <functional>
#include <memory>

namespace page_test {
namespace {

using HostWork = std::function<void()>;

/// The life of a page, from the first object to the last release, with all controls worked. While the driver
/// answers one of its calls it runs messages, and one of them has the host do something to the page.
class ReentryTest : public AccessPathTest {
protected:
    [[nodiscard]] HWND Window() const { return frame_ ? GetWindow(frame_->Handle(), GW_CHILD) : nullptr; }

    static void Click(HWND control, int x, int y) {
        SendMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
        SendMessageW(control, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x + 9, y));
        SendMessageW(control, WM_LBUTTONUP, 0, MAKELPARAM(x + 9, y));
    }
    static void Press(HWND control, WPARAM key) {
        SendMessageW(control, WM_KEYDOWN, key, 0);
        SendMessageW(control, WM_KEYUP, key, 0);
    }
    static void TypeOne(HWND edit) {
        SetFocus(edit);
        SendMessageW(edit, WM_CHAR, L'1', 1);
        SendMessageW(edit, WM_CHAR, L'\r', 1);
    }

    // By mouse and keys as well as by the messages that they end in, so that the platform's own controls are
    // on the way.
    static void Work(HWND window) {
        const PageControls controls(window);
        for (const HWND slider : controls.sliders) Press(slider, VK_RIGHT);
        for (const HWND slider : controls.sliders) Click(slider, 60, 10);
        for (const HWND spin : controls.spins) Click(spin, 4, 4);
        for (const HWND button : controls.switches) Click(button, 5, 5);
        for (const HWND button : controls.buttons) SendMessageW(button, BM_CLICK, 0, 0);
        for (const HWND combo : controls.combos) Press(combo, VK_DOWN);
        for (const HWND edit : controls.edits) TypeOne(edit);
        SetFocus(GetParent(window));
        RunMessages();
    }

    void LivePage(REFCLSID clsid) {
        frame_ = std::make_unique<HostWindow>();
        page_ = server_.MakePage(clsid);
        Give(*page_);
        if (page_ && frame_) page_->Activate(frame_->Handle(), &rect, FALSE);
        if (page_) page_->Show(SW_SHOW);
        Work(Window());
        SendMessageW(Window(), 1029, 0, 0);
        if (page_) page_->Deactivate();
        page_.reset();
        others_.clear();
        frame_.reset();
        RunMessages();
        EXPECT_EQ(other_camera_->references(), 1);
    }

    // At every position in the life of the two pages that have controls of all kinds between them.
    void DuringEveryCall(const HostWork& work) {
        const ErrorBoxWatch refused_texts;
        for (const CLSID& clsid : {exposure_page, feature_page}) {
            ASSERT_NO_FATAL_FAILURE(StrikeCalls([&] { LivePage(clsid); },
                                                [&](std::uint64_t n) { return simcam::act_at(n, work); }));
        }
    }

    void OpenAnother(REFCLSID clsid) {
        others_.push_back(server_.MakePage(clsid));
        Give(*others_.back());
        others_.back()->Activate(host_.Handle(), &rect, FALSE);
        others_.back()->Show(SW_SHOW);
    }
    void HandOver(IUnknown* object) const { page_->SetObjects(object != nullptr ? 1 : 0, &object); }

    simcam::camera_ptr other_camera_ = simcam::make_camera(SimpleCamera(GetParam()));
    std::unique_ptr<HostWindow> frame_;
    PagePtr page_;
    std::vector<PagePtr> others_;
};

/// What ends a page or turns it to something else, on both access paths: what asks the driver differs. All
/// else is the page's own matter.
class AccessPathReentryTest : public ReentryTest {};

TEST_P(ReentryTest, MessagesMayRun) {
    DuringEveryCall([&] { RunMessages(); });
}

TEST_P(ReentryTest, ThePageMayBeRefreshed) {
    DuringEveryCall([&] { SendMessageW(Window(), 1029, 0, 0); });
}

TEST_P(ReentryTest, TheUserMayWorkOn) {
    DuringEveryCall([&] { Work(Window()); });
}

TEST_P(ReentryTest, ThePageMayBeShownAndMoved) {
    DuringEveryCall([&] {
        page_->Show(SW_HIDE);
        page_->Move(&rect);
        page_->Show(SW_SHOW);
        PageInfo info;
        EXPECT_EQ(page_->GetPageInfo(&info), S_OK);
    });
}

TEST_P(AccessPathReentryTest, ThePageMayBeDeactivated) {
    DuringEveryCall([&] { page_->Deactivate(); });
}

TEST_P(AccessPathReentryTest, ThePageMayBeReleased) {
    DuringEveryCall([&] { page_.reset(); });
}

TEST_P(ReentryTest, ThePageMayBeDeactivatedAndReleased) {
    DuringEveryCall([&] {
        page_->Deactivate();
        HandOver(nullptr);
        page_->SetPageSite(nullptr);
        page_.reset();
    });
}

TEST_P(ReentryTest, ThePageMayBeActivatedAgain) {
    DuringEveryCall([&] {
        page_->Activate(frame_->Handle(), &rect, FALSE);
        page_->Show(SW_SHOW);
    });
}

TEST_P(ReentryTest, ThePageMayBeActivatedAgainAndReleased) {
    DuringEveryCall([&] {
        page_->Activate(frame_->Handle(), &rect, FALSE);
        page_.reset();
    });
}

TEST_P(ReentryTest, ThePageMayBeHandedAnotherCamera) {
    DuringEveryCall([&] { HandOver(other_camera_.get()); });
}

TEST_P(ReentryTest, ThePageMayBeHandedTheSameCamera) {
    DuringEveryCall([&] { HandOver(camera_.get()); });
}

TEST_P(AccessPathReentryTest, ThePageMayBeHandedAnotherCameraAndActivated) {
    DuringEveryCall([&] {
        HandOver(other_camera_.get());
        page_->Activate(frame_->Handle(), &rect, FALSE);
    });
}

TEST_P(ReentryTest, ThePageMayBeHandedSomethingElse) {
    PlainObject object;
    DuringEveryCall([&] {
        HandOver(&object);
        HandOver(nullptr);
    });
    EXPECT_EQ(object.references, 0);
}

TEST_P(ReentryTest, AnotherPageMayBeActivated) {
    DuringEveryCall([&] { OpenAnother(feature_page); });
}

TEST_P(ReentryTest, AnotherPageOfTheClassMayBeActivated) {
    DuringEveryCall([&] { OpenAnother(exposure_page); });
}

TEST_P(ReentryTest, TheParentMayBeDestroyed) {
    DuringEveryCall([&] { frame_.reset(); });
}

TEST_P(ReentryTest, TheWindowOfThePageMayBeDestroyed) {
    DuringEveryCall([&] { DestroyWindow(Window()); });
}

TEST_P(ReentryTest, TheCameraThatCameLastStays) {
    const std::uint64_t before = camera_->call_count();
    EXPECT_EQ(Give(*server_.MakePage(exposure_page)), S_OK);
    const std::uint64_t calls = camera_->call_count() - before;
    for (std::uint64_t n = 1; n <= calls; ++n) {
        SCOPED_TRACE(n);
        page_ = server_.MakePage(exposure_page);
        camera_->add_fault(simcam::act_at(n, [&] { HandOver(other_camera_.get()); }));
        EXPECT_EQ(Give(*page_), S_OK);
        camera_->clear_faults();
        EXPECT_EQ(camera_->references(), 1);
        other_camera_->clear_transcript();
        const HWND window = Open(*page_);
        EXPECT_FALSE(PageControls(window).sliders.empty());
        EXPECT_FALSE(other_camera_->transcript().empty());
        page_.reset();
    }
}

INSTANTIATE_TEST_SUITE_P(AccessPaths, ReentryTest, testing::Values(AccessPath::Named), AccessPathName);

INSTANTIATE_TEST_SUITE_P(AccessPaths, AccessPathReentryTest,
                         testing::Values(AccessPath::Named, AccessPath::Registers), AccessPathName);

}  // namespace
}  // namespace page_test
