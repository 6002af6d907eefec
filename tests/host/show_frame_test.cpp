// The platform's frame in this process.

#include "apps/host/frame.h"

#include "apps/host/host_error.h"
#include "apps/host/page_control.h"
#include "apps/host/page_offer.h"
#include "apps/host/page_server.h"
#include "simcam/simulated_camera.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace selvane_host;

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
