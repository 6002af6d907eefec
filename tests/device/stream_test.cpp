// Frames on their way to another filter.

#include "platform/windows/owned.h"
#include "tests/device/device_fixture.h"
#include "tests/windows/process_footprint.h"

#include <uuids.h>
#include <vfwmsgs.h>

#include <cstdio>
#include <thread>

namespace device_test {
namespace {

using namespace selvane_camera;
using platform::com_ptr;
using simcam::pixel_format;

class Stream : public DeviceTest {
protected:
    void SetUp() override {
        Open(full_device);
        Connect();
    }
    void TearDown() override {
        if (filter) {
            EXPECT_EQ(filter->Stop(), S_OK);
            Disconnect();
        }
        DeviceTest::TearDown();
    }
    void Run() { ASSERT_EQ(filter->Run(0), S_OK); }
    // Brings frames anew, until one that was made after this call has come.
    [[nodiscard]] double BrightnessFromNow() {
        sink.forget_frames();
        EXPECT_TRUE(Receives(3));
        return sink.frames().back().brightness;
    }
};

TEST_F(Stream, BearsTimesThatFollowEachOther) {
    Run();
    ASSERT_TRUE(Receives(8));
    const std::vector<received_frame> frames = sink.frames();
    EXPECT_TRUE(frames[0].discontinuity);
    EXPECT_GE(frames[0].begin, 0);
    for (std::size_t at = 0; at < frames.size(); ++at) {
        EXPECT_EQ(frames[at].size, 640 * 480 * 3);
        EXPECT_EQ(frames[at].end - frames[at].begin, 333333);
        EXPECT_EQ(frames[at].number, static_cast<LONGLONG>(at));
        if (at == 0) continue;
        EXPECT_FALSE(frames[at].discontinuity);
        EXPECT_GT(frames[at].begin, frames[at - 1].begin);
    }
    // A machine that is busy makes them later, never earlier.
    EXPECT_GE(frames[7].begin - frames[0].begin, 6 * 333333);
}

TEST_F(Stream, FollowsTheClockOfTheGraph) {
    com_ptr<IReferenceClock> clock;
    ASSERT_EQ(CoCreateInstance(CLSID_SystemClock, nullptr, CLSCTX_INPROC_SERVER, IID_IReferenceClock,
                               clock.put_void()),
              S_OK);
    ASSERT_EQ(filter->SetSyncSource(clock.get()), S_OK);
    com_ptr<IReferenceClock> kept;
    EXPECT_EQ(filter->GetSyncSource(kept.put()), S_OK);
    EXPECT_EQ(kept.get(), clock.get());
    REFERENCE_TIME now = 0;
    clock->GetTime(&now);
    constexpr REFERENCE_TIME ahead = 1000000;
    ASSERT_EQ(filter->Run(now - ahead), S_OK);
    ASSERT_TRUE(Receives(1));
    EXPECT_GE(sink.frames()[0].begin, ahead);
    EXPECT_EQ(filter->Stop(), S_OK);
    EXPECT_EQ(filter->SetSyncSource(nullptr), S_OK);
}

TEST_F(Stream, RestsWhileItIsPaused) {
    ASSERT_EQ(filter->Pause(), S_OK);
    EXPECT_EQ(sink.count(), 0U);
    Run();
    ASSERT_TRUE(Receives(3));
    ASSERT_EQ(filter->Pause(), S_OK);
    // One more may be on its way.
    Sleep(100);
    const std::size_t then = sink.count();
    Sleep(200);
    EXPECT_EQ(sink.count(), then);
    Run();
    ASSERT_TRUE(Receives(then + 2));
    EXPECT_TRUE(sink.frames()[then].discontinuity);
}

TEST_F(Stream, StartsAgainAfterItsEnd) {
    for (int round = 0; round < 3; ++round) {
        sink.forget_frames();
        Run();
        ASSERT_TRUE(Receives(2));
        EXPECT_EQ(sink.frames()[0].number, 0);
        ASSERT_EQ(filter->Stop(), S_OK);
        const std::size_t then = sink.count();
        Sleep(100);
        EXPECT_EQ(sink.count(), then) << "nothing comes after the end";
    }
}

TEST_F(Stream, ShowsWhatThePagesChange) {
    Run();
    const double usual = BrightnessFromNow();
    ASSERT_EQ(set_feature(*filter, "ExposureTime", 0.04), S_OK);
    EXPECT_GT(BrightnessFromNow(), usual * 1.5);
    ASSERT_EQ(set_feature(*filter, "ExposureTime", 0.001), S_OK);
    EXPECT_LT(BrightnessFromNow(), usual * 0.6);
}

TEST_F(Stream, FollowsTheFrameRateOfTheCamera) {
    ASSERT_EQ(set_feature(*filter, "FrameRate", 50.0), S_OK);
    Run();
    ASSERT_TRUE(Receives(3));
    EXPECT_EQ(sink.frames()[2].end - sink.frames()[2].begin, 200000);
    ASSERT_EQ(set_feature(*filter, "FrameRate", 10.0), S_OK);
    sink.forget_frames();
    ASSERT_TRUE(Receives(5));
    const std::vector<received_frame> frames = sink.frames();
    EXPECT_EQ(frames[2].end - frames[2].begin, 1000000);
    // A frame may be late by as much as its interval, and the next one keeps to its time.
    EXPECT_GE(frames[4].begin - frames[1].begin, 2000000);
}

// A renderer that waits, until it is flushed, as one does that is paused.
TEST_F(Stream, EndsWhileTheOtherSideHoldsItUp) {
    const platform::kernel_handle flushed(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    sink.on_frame = [&](IMediaSample&) {
        WaitForSingleObject(flushed.get(), INFINITE);
        return VFW_E_WRONG_STATE;
    };
    sink.on_flush = [&] { SetEvent(flushed.get()); };
    Run();
    ASSERT_TRUE(Receives(1));
    EXPECT_EQ(filter->Stop(), S_OK);
    EXPECT_EQ(sink.flushes, 1);
    EXPECT_EQ(sink.count(), 1U);
}

// All buffers are with the other side, which gives none back.
TEST_F(Stream, EndsWhileItWaitsForABuffer) {
    std::vector<com_ptr<IMediaSample>> kept;
    sink.on_frame = [&](IMediaSample& sample) {
        kept.emplace_back(&sample);
        return S_OK;
    };
    Run();
    ASSERT_TRUE(Receives(4));
    EXPECT_EQ(filter->Stop(), S_OK);
    EXPECT_EQ(sink.flushes, 0);
    kept.clear();
}

// The callback of an application asks its window thread for something, which is just ending the stream.
TEST_F(Stream, EndsWhileTheOtherSideWaitsForTheThreadThatEndsIt) {
    const HWND window =
        CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    sink.on_frame = [&](IMediaSample&) {
        SendMessageW(window, WM_GETTEXTLENGTH, 0, 0);
        return S_OK;
    };
    Run();
    ASSERT_TRUE(Receives(1)) << "and now it waits for this thread";
    EXPECT_EQ(filter->Stop(), S_OK);
    DestroyWindow(window);
}

TEST_F(Stream, EndsFromWithinAFrame) {
    std::atomic<HRESULT> stopped = E_PENDING;
    std::atomic<HRESULT> refused = S_OK;
    sink.on_frame = [&](IMediaSample&) {
        refused = filter->Pause();
        stopped = filter->Stop();
        return S_OK;
    };
    Run();
    ASSERT_TRUE(wait_for([&] { return stopped != E_PENDING; }));
    EXPECT_EQ(stopped, S_OK);
    EXPECT_EQ(refused, VFW_E_WRONG_STATE);
    sink.on_frame = nullptr;
    Run();
    EXPECT_TRUE(Receives(3)) << "and starts again";
}

TEST_F(Stream, EndsWithTheLastReferenceFromWithinAFrame) {
    std::atomic<bool> released = false;
    sink.on_frame = [&](IMediaSample&) {
        if (released) return S_OK;
        ReleaseAll();
        released = true;
        return S_OK;
    };
    Run();
    EXPECT_TRUE(wait_for([&] { return released.load(); }));
    EXPECT_TRUE(wait_for([&] { return module.can_unload() && sink.references() <= 1; }));
    sink.on_frame = nullptr;
    // What the allocator holds goes with the connection.
    EXPECT_TRUE(wait_for([&] { return sink.references() == 0; }));
}

TEST_F(Stream, GoesOnAfterFramesThatTheOtherSideRefuses) {
    sink.on_frame = [&](IMediaSample&) { return sink.count() < 3 ? VFW_E_WRONG_STATE : S_OK; };
    Run();
    ASSERT_TRUE(Receives(5));
    EXPECT_TRUE(sink.frames()[2].discontinuity);
    EXPECT_FALSE(sink.frames()[3].discontinuity);
}

TEST_F(Stream, SendsNoMoreToASideThatIsThrough) {
    sink.on_frame = [](IMediaSample&) { return S_FALSE; };
    Run();
    ASSERT_TRUE(Receives(1));
    Sleep(200);
    EXPECT_EQ(sink.count(), 1U);
    EXPECT_EQ(filter->Stop(), S_OK);
}

TEST_F(Stream, EndsWithItsPlaceInAGraph) {
    Run();
    ASSERT_TRUE(Receives(1));
    EXPECT_EQ(filter->JoinFilterGraph(nullptr, nullptr), S_OK);
    FILTER_STATE state = State_Running;
    EXPECT_EQ(filter->GetState(0, &state), S_OK);
    EXPECT_EQ(state, State_Stopped);
}

TEST_F(Stream, EndsWithItsLastReference) {
    Run();
    ASSERT_TRUE(Receives(1));
    ReleaseAll();
    EXPECT_TRUE(module.can_unload());
}

TEST_F(Stream, RunsBesideOthersOfTheSameCamera) {
    const filter_ptr second = module.make_filter(full_device);
    test_sink second_sink;
    second_sink.accepts = [](const AM_MEDIA_TYPE& type) { return type.lSampleSize == 320 * 240 * 2; };
    const pin_ptr second_pin = pin_of(second);
    ASSERT_EQ(second_pin->Connect(&second_sink, nullptr), S_OK);
    Run();
    ASSERT_EQ(second->Run(0), S_OK);
    ASSERT_TRUE(Receives(3));
    ASSERT_TRUE(wait_for([&] { return second_sink.count() >= 3; }));
    const double usual = second_sink.frames().back().brightness;
    ASSERT_EQ(set_feature(*filter, "ExposureTime", 0.08), S_OK);
    EXPECT_TRUE(wait_for([&] { return second_sink.frames().back().brightness > usual * 1.2; }));
    EXPECT_EQ(second->Stop(), S_OK);
    EXPECT_EQ(second_pin->Disconnect(), S_OK);
}

// Features change and states are asked for on one thread, while frames come on another.
TEST_F(Stream, GoesOnWhilePagesWorkWithoutARest) {
    Run();
    for (int round = 0; round < 500; ++round) {
        ASSERT_EQ(set_feature(*filter, "ExposureTime", 0.001 * (round % 40 + 1)), S_OK);
        double rate = 0;
        ASSERT_EQ(get_feature(*filter, "FrameRate", rate), S_OK);
    }
    EXPECT_TRUE(Receives(2));
}

class StreamLife : public DeviceTest {};

// Connect, stream, stop, release.
TEST_F(StreamLife, LeavesNothingBehindAHundredTimes) {
    const auto live_once = [&] {
        Open(full_device);
        Connect();
        sink.forget_frames();
        ASSERT_EQ(filter->Run(0), S_OK);
        ASSERT_TRUE(Receives(1));
        ASSERT_EQ(filter->Stop(), S_OK);
        Disconnect();
        ReleaseAll();
        ASSERT_TRUE(module.can_unload());
    };
    for (int round = 0; round < 5; ++round) live_once();
    const page_test::Footprint before = page_test::MeasureFootprint();
    for (int round = 0; round < 100; ++round) live_once();
    const page_test::Footprint after = page_test::MeasureFootprint();
    std::printf("before: %s\nafter:  %s\n", testing::PrintToString(before).c_str(),
                testing::PrintToString(after).c_str());
    EXPECT_EQ(after.windows, before.windows);
    EXPECT_EQ(after.next_handle, before.next_handle);
    EXPECT_EQ(after.threads, before.threads);
    // Less than one block for each life; the platform keeps a few for itself.
    EXPECT_LT(after.heap_blocks, before.heap_blocks + 50);
    EXPECT_LT(after.heap_bytes, before.heap_bytes + 8 * 1024);
}

}  // namespace
}  // namespace device_test
