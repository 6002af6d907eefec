#include "apps/device/frame_stream.h"

#include "apps/device/frame_interval.h"
#include "apps/device/media_type.h"
#include "apps/device/module.h"
#include "platform/windows/com_edge.h"

#include <vfwmsgs.h>

#include <algorithm>
#include <cmath>
#include <mutex>
#include <new>
#include <utility>

namespace selvane_camera {
namespace {

using platform::at_com_edge;
using platform::com_ptr;

constexpr REFERENCE_TIME ticks_a_millisecond = 10'000;
// A thread that nobody holds up is through with its frame by then.
constexpr DWORD patience_ms = 200;

REFERENCE_TIME performance_time() noexcept {
    LARGE_INTEGER count{};
    LARGE_INTEGER frequency{};
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return static_cast<REFERENCE_TIME>(static_cast<double>(count.QuadPart) * ticks_a_second /
                                       static_cast<double>(frequency.QuadPart));
}

// Waits for the end of a thread. Calls that other threads send to windows of this one are answered meanwhile:
// the other side of a stream may be waiting for just that.
bool wait_for(HANDLE thread, DWORD milliseconds) noexcept {
    const ULONGLONG start = GetTickCount64();
    for (;;) {
        const ULONGLONG passed = GetTickCount64() - start;
        const DWORD left = milliseconds == INFINITE
                               ? INFINITE
                               : static_cast<DWORD>(milliseconds - std::min<ULONGLONG>(passed, milliseconds));
        const DWORD woken = MsgWaitForMultipleObjects(1, &thread, FALSE, left, QS_SENDMESSAGE);
        if (woken == WAIT_OBJECT_0 + 1) {
            MSG message{};
            PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
            continue;
        }
        return woken == WAIT_OBJECT_0;
    }
}

}  // namespace

/// What the thread works on. It lives until both sides are through with it.
class frame_stream::job {
public:
    job(frame_target wanted, source_ptr camera)
        : target(std::move(wanted)),
          source_(std::move(camera)),
          ending(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
          changed_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}

    void run(com_ptr<IReferenceClock> clock, REFERENCE_TIME start) {
        {
            const std::lock_guard<plain_lock> guard(lock_);
            clock_ = std::move(clock);
            start_ = clock_ ? start : performance_time();
            running_ = true;
            ++run_count_;
        }
        SetEvent(changed_.get());
    }

    void pause() {
        const std::lock_guard<plain_lock> guard(lock_);
        running_ = false;
    }

    void work() {
        while (!is_ending()) {
            REFERENCE_TIME wait = 0;
            if (!look_at_time(wait)) {
                wait_until_changed(INFINITE);
            } else if (wait > 0) {
                wait_until_changed(
                    static_cast<DWORD>((wait + ticks_a_millisecond - 1) / ticks_a_millisecond));
            } else if (deliver() == S_FALSE) {
                WaitForSingleObject(ending.get(), INFINITE);  // the other side wants no more of this stream
            }
        }
    }

    const frame_target target;

private:
    [[nodiscard]] bool is_ending() const noexcept {
        return WaitForSingleObject(ending.get(), 0) == WAIT_OBJECT_0;
    }

    void wait_until_changed(DWORD milliseconds) const noexcept {
        const HANDLE handles[] = {ending.get(), changed_.get()};
        WaitForMultipleObjects(2, handles, FALSE, milliseconds);
    }

    // False unless the stream runs. Otherwise how long it is until the next frame; a frame that is late is
    // made now and the ones behind it keep their distance.
    bool look_at_time(REFERENCE_TIME& wait) {
        com_ptr<IReferenceClock> clock;
        {
            const std::lock_guard<plain_lock> guard(lock_);
            if (!running_) return false;
            clock = clock_;
            time_ = start_;
            if (std::exchange(seen_run_, run_count_) != run_count_) {
                next_ = 0;
                gap_ = true;
            }
        }
        REFERENCE_TIME now = 0;
        if (!clock) now = performance_time();
        if (clock && FAILED(clock->GetTime(&now))) return false;
        time_ = now - time_;
        wait = next_ - time_;
        return true;
    }

    HRESULT deliver() {
        const simcam::picture_state state = source_->camera->picture();
        const REFERENCE_TIME interval = to_interval(state.frame_rate.now);
        com_ptr<IMediaSample> sample;
        HRESULT hr = target.allocator->GetBuffer(sample.put(), nullptr, nullptr, 0);
        if (SUCCEEDED(hr)) hr = fill(*sample, state);
        if (SUCCEEDED(hr)) stamp(*sample, interval);
        if (SUCCEEDED(hr)) hr = target.input->Receive(sample.get());
        if (FAILED(hr)) gap_ = true;
        next_ = time_ - next_ > interval ? time_ + interval : next_ + interval;
        return hr;
    }

    HRESULT fill(IMediaSample& sample, const simcam::picture_state& state) {
        BYTE* frame = nullptr;
        const std::size_t size = simcam::frame_size(target.format);
        if (const HRESULT hr = sample.GetPointer(&frame); FAILED(hr)) return hr;
        if (static_cast<std::size_t>(std::max<LONG>(sample.GetSize(), 0)) < size)
            return VFW_E_BUFFER_OVERFLOW;
        painter_.paint(state, target.format, static_cast<std::uint64_t>(number_), frame);
        return sample.SetActualDataLength(static_cast<LONG>(size));
    }

    void stamp(IMediaSample& sample, REFERENCE_TIME interval) {
        REFERENCE_TIME begin = std::max<REFERENCE_TIME>(time_, 0);
        REFERENCE_TIME end = begin + interval;
        sample.SetTime(&begin, &end);
        LONGLONG first = number_++;
        LONGLONG last = number_;
        sample.SetMediaTime(&first, &last);
        sample.SetSyncPoint(TRUE);
        sample.SetPreroll(FALSE);
        sample.SetDiscontinuity(gap_ ? TRUE : FALSE);
        gap_ = false;
    }

    const source_ptr source_;

public:
    const platform::kernel_handle ending;

private:
    const platform::kernel_handle changed_;

    plain_lock lock_;  // of the next four, which both sides use
    bool running_ = false;
    LONGLONG run_count_ = 0;
    com_ptr<IReferenceClock> clock_;
    REFERENCE_TIME start_ = 0;

    LONGLONG seen_run_ = 0;
    REFERENCE_TIME time_ = 0;  // of the stream
    REFERENCE_TIME next_ = 0;  // when the next frame is due
    LONGLONG number_ = 0;
    bool gap_ = true;
    simcam::picture_painter painter_;
};

namespace {

// The thread keeps the module loaded by itself: whoever waits for nobody may unload it a moment later.
DWORD WINAPI run_thread(void* context) {
    std::unique_ptr<std::shared_ptr<frame_stream::job>> work(
        static_cast<std::shared_ptr<frame_stream::job>*>(context));
    static_cast<void>(CoInitializeEx(nullptr, COINIT_MULTITHREADED));
    static_cast<void>(at_com_edge([&] {
        (*work)->work();
        return S_OK;
    }));
    work.reset();
    CoUninitialize();
    FreeLibraryAndExitThread(own_module(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT), 0);
    return 0;
}

}  // namespace

frame_stream::~frame_stream() { stop(); }

HRESULT frame_stream::start(frame_target target, source_ptr source) {
    stop();
    const HRESULT hr = target.allocator->Commit();
    if (FAILED(hr)) return hr;
    auto made = std::make_shared<job>(std::move(target), std::move(source));
    auto context = std::make_unique<std::shared_ptr<job>>(made);
    const HMODULE kept = own_module(0);
    thread_.reset(CreateThread(nullptr, 0, run_thread, context.get(), 0, &thread_id_));
    if (thread_.get() == nullptr) {
        FreeLibrary(kept);
        return E_OUTOFMEMORY;
    }
    static_cast<void>(context.release());  // the thread's own
    job_ = std::move(made);
    return S_OK;
}

void frame_stream::run(com_ptr<IReferenceClock> clock, REFERENCE_TIME start) {
    if (job_ != nullptr) job_->run(std::move(clock), start);
}

void frame_stream::pause() {
    if (job_ != nullptr) job_->pause();
}

void frame_stream::stop() {
    if (job_ == nullptr) return;
    SetEvent(job_->ending.get());
    job_->target.allocator->Decommit();
    if (is_own_thread()) return;
    wait_for_thread();
    job_.reset();
}

// A renderer that is paused keeps a frame, and with it the thread, until it is flushed.
void frame_stream::wait_for_thread() {
    if (thread_.get() == nullptr || is_own_thread()) return;
    if (!wait_for(thread_.get(), patience_ms)) {
        const com_ptr<IPin> pin = job_ != nullptr ? job_->target.pin : com_ptr<IPin>();
        if (pin) pin->BeginFlush();
        wait_for(thread_.get(), INFINITE);
        if (pin) pin->EndFlush();
    }
    thread_.reset();
    thread_id_ = 0;
}

bool frame_stream::is_own_thread() const noexcept { return thread_id_ == GetCurrentThreadId(); }

}  // namespace selvane_camera
