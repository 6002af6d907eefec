// The pages of a filter in the platform's frame, while the filter lives its own life.

#include "apps/host/frame.h"
#include "tests/device/device_fixture.h"
#include "tests/device/frame_controls.h"
#include "wire/page_classes.h"

#include <thread>

namespace device_test {
namespace {

using namespace selvane_camera;
using selvane_host::control_kind;
using selvane_host::frame_window;

std::vector<CLSID> AllPages() { return {wire::page_classes.begin(), wire::page_classes.end()}; }

class Dialog : public DeviceTest {
protected:
    void SetUp() override { Open(full_device); }
    // The pages on a thread of their own, as in a program that has another for its camera.
    template <class Task>
    static void ShowElsewhere(IUnknown& shown, Task task) {
        std::thread thread([&] {
            const selvane_host::com_apartment own_apartment;
            const selvane_host::page_server server(selvane_host::page_server_path());
            selvane_host::show_frame("The camera", shown, AllPages(), task);
        });
        thread.join();
    }
};

TEST_F(Dialog, ChangesTheStreamFromAnotherThread) {
    Connect();
    ASSERT_EQ(filter->Run(0), S_OK);
    ASSERT_TRUE(Receives(2));
    const double usual = sink.frames().back().brightness;
    double exposure = 0;
    ASSERT_EQ(get_feature(*filter, "ExposureTime", exposure), S_OK);
    int steps = 0;
    ShowElsewhere(*filter, [&](const frame_window& frame) {
        // Keys on the slider of the exposure, each of which reaches the camera at once.
        const HWND slider = control_in_row(frame.handle(), "Exposure", control_kind::slider);
        ASSERT_NE(slider, nullptr);
        if (++steps <= 30) SendMessageW(slider, WM_KEYDOWN, VK_RIGHT, 0);
        if (steps > 30) frame.close();
    });
    double changed = 0;
    ASSERT_EQ(get_feature(*filter, "ExposureTime", changed), S_OK);
    EXPECT_GT(changed, exposure);
    sink.forget_frames();
    ASSERT_TRUE(Receives(3));
    EXPECT_GT(sink.frames().back().brightness, usual);
    EXPECT_EQ(filter->Stop(), S_OK);
    Disconnect();
}

TEST_F(Dialog, OutlivesTheReferencesOfItsProgram) {
    const selvane_host::page_server server(selvane_host::page_server_path());
    IUnknown& shown = *filter;
    bool released = false;
    selvane_host::show_frame("The camera", shown, AllPages(), [&](const frame_window& frame) {
        if (!released) ReleaseAll();
        released = true;
        const int page = frame.shown_page();
        if (page + 1 < frame.page_count()) return frame.show_page(page + 1);
        frame.close();
    });
    EXPECT_TRUE(module.can_unload());
}

TEST_F(Dialog, StaysWhileItsStreamEnds) {
    const selvane_host::page_server server(selvane_host::page_server_path());
    Connect();
    ASSERT_EQ(filter->Run(0), S_OK);
    int steps = 0;
    selvane_host::show_frame("The camera", *filter, AllPages(), [&](const frame_window& frame) {
        if (++steps == 1) {
            EXPECT_EQ(filter->Stop(), S_OK);
            Disconnect();
        }
        const HWND box = control_captioned(frame.handle(), "Horizontal", control_kind::check_box);
        if (box != nullptr) SendMessageW(box, BM_CLICK, 0, 0);
        if (steps > 3) frame.close();
    });
    EXPECT_GT(steps, 3);
}

}  // namespace
}  // namespace device_test
