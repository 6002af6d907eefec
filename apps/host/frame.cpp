#include "apps/host/frame.h"

#include "apps/host/console.h"
#include "apps/host/host_error.h"
#include "platform/text.h"

#include <olectl.h>

#include <exception>

namespace selvane_host {
namespace {

constexpr UINT task_period_ms = 50;

// Only a timer gets a word in while the platform runs the frame.
class frame_timer {
public:
    explicit frame_timer(const frame_task& task) : task_(task) {
        current_ = this;
        timer_ = SetTimer(nullptr, 0, task_period_ms, on_timer);
    }
    frame_timer(const frame_timer&) = delete;
    frame_timer& operator=(const frame_timer&) = delete;
    ~frame_timer() {
        KillTimer(nullptr, timer_);
        current_ = nullptr;
    }

    void rethrow_failure() const {
        if (failure_) std::rethrow_exception(failure_);
    }
    [[nodiscard]] bool has_seen_frame() const noexcept { return has_seen_frame_; }

private:
    static void CALLBACK on_timer(HWND, UINT, UINT_PTR, DWORD) {
        if (current_ != nullptr) current_->run();
    }

    // A task that shows windows runs messages, and with them the next timer.
    void run() noexcept {
        if (running_) return;
        running_ = true;
        const auto frame = frame_window::find();
        if (frame) run_in(*frame);
        running_ = false;
    }

    void run_in(const frame_window& frame) noexcept {
        has_seen_frame_ = true;
        if (failure_) return;
        try {
            task_(frame);
        } catch (...) {
            failure_ = std::current_exception();
            frame.close();
        }
    }

    static frame_timer* current_;
    const frame_task& task_;
    UINT_PTR timer_ = 0;
    std::exception_ptr failure_;
    bool running_ = false;
    bool has_seen_frame_ = false;
};

frame_timer* frame_timer::current_ = nullptr;

// A page throws where the camera's driver cannot be worked with, and the platform lets that pass.
HRESULT open_frame(const std::wstring& caption, IUnknown* camera, std::vector<CLSID>& pages) {
    try {
        return OleCreatePropertyFrame(nullptr, 0, 0, caption.c_str(), 1, &camera,
                                      static_cast<ULONG>(pages.size()), pages.data(), LOCALE_USER_DEFAULT, 0,
                                      nullptr);
    } catch (const std::exception& failure) {
        throw host_error(exit_code::nothing_to_show, failure.what());
    }
}

}  // namespace

void show_frame(const std::string& caption, IUnknown& camera, std::vector<CLSID> pages,
                const frame_task& task) {
    const frame_timer timer(task);
    const HRESULT hr = open_frame(platform::widen(caption), &camera, pages);
    timer.rethrow_failure();
    if (FAILED(hr)) {
        throw wrong_use("the property frame cannot be opened: " + system_message(static_cast<DWORD>(hr)));
    }
    // The platform calls it a success, too, when it had no windows to make a frame of.
    if (!timer.has_seen_frame())
        throw wrong_use("the property frame did not open; its windows need a display");
}

}  // namespace selvane_host
