// The platform's frame in this process.

#include "apps/host/frame.h"

#include "apps/host/host_error.h"
#include "apps/host/page_control.h"
#include "apps/host/page_layout_text.h"
#include "apps/host/page_offer.h"
#include "apps/host/page_server.h"
#include "apps/host/picture_walk.h"
#include "simcam/simulated_camera.h"
#include "tests/host/host_process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {

using namespace selvane_host;
using testing::HasSubstr;

class ShowFrame : public testing::Test {
protected:
    com_apartment apartment;
    page_server server{page_server_path()};
    simcam::camera_ptr camera = simcam::make_camera("builtin");
    std::vector<CLSID> pages = willing_pages(ask_pages(*camera));
};

TEST_F(ShowFrame, ATaskMayLookWalkAndClose) {
    std::vector<std::string> titles;
    show_frame("A camera", *camera, pages, [&](const frame_window& frame) {
        EXPECT_EQ(frame.page_count(), 4);
        const int shown = frame.shown_page();
        titles.push_back(frame.page_title(shown));
        if (shown + 1 < frame.page_count()) return frame.show_page(shown + 1);
        EXPECT_FALSE(find_controls(frame.handle()).empty());
        frame.close();
    });
    EXPECT_EQ(titles, (std::vector<std::string>{"Selvane Exposure Controls", "Selvane Feature Controls",
                                                "Selvane Lens Controls", "Selvane Color Controls"}));
    EXPECT_FALSE(frame_window::find());
}

TEST_F(ShowFrame, WhatATaskThrowsClosesTheFrame) {
    const auto fail = [](const frame_window&) { throw std::runtime_error("no more"); };
    try {
        show_frame("A camera", *camera, pages, fail);
        FAIL() << "the failure is lost";
    } catch (const std::runtime_error& failure) {
        EXPECT_STREQ(failure.what(), "no more");
    }
    EXPECT_FALSE(frame_window::find());
}

// No window of this thread can be made, as without a display.
class NoWindows {
public:
    NoWindows() : hook_(SetWindowsHookExW(WH_CBT, Refuse, nullptr, GetCurrentThreadId())) {}
    NoWindows(const NoWindows&) = delete;
    NoWindows& operator=(const NoWindows&) = delete;
    ~NoWindows() { UnhookWindowsHookEx(hook_); }

private:
    static LRESULT CALLBACK Refuse(int code, WPARAM wparam, LPARAM lparam) {
        return code == HCBT_CREATEWND ? 1 : CallNextHookEx(nullptr, code, wparam, lparam);
    }

    HHOOK hook_;
};

TEST_F(ShowFrame, AFrameThatDoesNotOpenIsSaid) {
    const NoWindows no_windows;
    try {
        show_frame("A camera", *camera, pages, [](const frame_window& frame) { frame.close(); });
        FAIL() << "nobody is told";
    } catch (const host_error& failure) {
        EXPECT_EQ(failure.code(), 2);
        EXPECT_STREQ(failure.what(), "the property frame did not open; its windows need a display");
    }
}

TEST_F(ShowFrame, PicturesThatAreMissingAreSaid) {
    const host_test::ScratchFolder folder;
    picture_walk walk(folder.Path());
    show_frame("A camera", *camera, pages, [&](const frame_window& frame) {
        walk.step(frame);
        if (frame.shown_page() == 1) frame.close();
    });
    try {
        walk.finish();
        FAIL() << "nobody is told";
    } catch (const host_error& failure) {
        EXPECT_EQ(failure.code(), 2);
        EXPECT_STREQ(failure.what(),
                     "the property frame was closed before every page had its picture; saved: 1");
    }
}

// What the edit of a number that is none brings up; it is closed by the next tick.
TEST_F(ShowFrame, ABoxBeforeThePageStandsInTheLayout) {
    bool typed = false;
    std::string shown;
    show_frame("A camera", *camera, pages, [&](const frame_window& frame) {
        const std::string layout = describe_layout(frame);
        if (layout.find("\nbox ") != std::string::npos) {
            shown = layout;
            PostMessageW(FindWindowW(L"#32770", L"Error"), WM_COMMAND, IDOK, 0);
            return;
        }
        if (!shown.empty()) return frame.close();
        if (std::exchange(typed, true)) return;
        const std::vector<page_control> controls = find_controls(frame.handle());
        const auto edit = std::find_if(controls.begin(), controls.end(), [](const page_control& control) {
            return control.kind == control_kind::edit && IsWindowEnabled(control.window) != 0;
        });
        if (edit == controls.end()) return frame.close();
        SendMessageW(edit->window, EM_SETREADONLY, FALSE, 0);
        SetWindowTextW(edit->window, L"none");
        PostMessageW(edit->window, WM_KILLFOCUS, 0, 0);
    });
    EXPECT_THAT(shown, HasSubstr("\nbox \"Error\" \"Error parsing value!\" "));
    EXPECT_THAT(shown, HasSubstr("\nanswer \"OK\" of \"Error\" "));
}

TEST_F(ShowFrame, ADriverThatIsGoneMeanwhileIsNamed) {
    simcam::fault gone;
    gone.when = simcam::calls_of(simcam::call_kind::query_supported);
    gone.first = 2;  // the gate is still there
    gone.result = simcam::camera_lost;
    camera->add_fault(gone);
    try {
        show_frame("A camera", *camera, pages, [](const frame_window& frame) { frame.close(); });
        FAIL() << "the failure is lost";
    } catch (const host_error& failure) {
        EXPECT_EQ(failure.code(), 1);
        EXPECT_STREQ(failure.what(), "Failed to access GenICam data");
    }
}

}  // namespace
