#pragma once

#include "apps/device/camera_source.h"
#include "platform/com_ptr.h"
#include "platform/windows/owned.h"
#include "simcam/picture_painter.h"

#include <strmif.h>

#include <memory>

namespace selvane_camera {

/// Where frames go.
struct frame_target {
    platform::com_ptr<IPin> pin;
    platform::com_ptr<IMemInputPin> input;
    platform::com_ptr<IMemAllocator> allocator;
    simcam::frame_format format;
};

/// Brings frames to an input pin, on a thread of its own. The calls come one at a time.
class frame_stream {
public:
    frame_stream() = default;
    frame_stream(const frame_stream&) = delete;
    frame_stream& operator=(const frame_stream&) = delete;
    ~frame_stream();

    /// Starts without frames, which come after `run`. Throws std::bad_alloc.
    [[nodiscard]] HRESULT start(frame_target target, source_ptr source);
    /// Frames bear the time that has passed since `start` on the clock, or since this call without a clock.
    void run(platform::com_ptr<IReferenceClock> clock, REFERENCE_TIME start);
    /// No new frames until `run`.
    void pause();
    /// Ends what has been started, also while the other side holds the thread up. On the stream's own thread
    /// it only sees to it that no further frame comes.
    void stop();

    /// Whether the caller was called by the stream.
    [[nodiscard]] bool is_own_thread() const noexcept;

    class job;

private:
    void wait_for_thread();

    std::shared_ptr<job> job_;
    platform::kernel_handle thread_;
    DWORD thread_id_ = 0;
};

}  // namespace selvane_camera
