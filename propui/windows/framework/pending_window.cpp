#include "propui/windows/framework/pending_window.h"

#include "propui/windows/framework/process_lock.h"

namespace ZELPropUI::Framework {
namespace {

PendingWindow* newest = nullptr;  // the process-wide list, under the process lock

}  // namespace

PendingWindow::PendingWindow(Window& window) noexcept : window_(&window), thread_(GetCurrentThreadId()) {
    const ProcessLock lock;
    next_ = newest;
    newest = this;
}

PendingWindow::~PendingWindow() {
    const ProcessLock lock;
    Unlink(this);
}

Window* PendingWindow::Take() noexcept {
    const ProcessLock lock;
    const PendingWindow* entry = newest;
    while (entry != nullptr && entry->thread_ != GetCurrentThreadId()) entry = entry->next_;
    return Unlink(entry) ? entry->window_ : nullptr;
}

bool PendingWindow::Unlink(const PendingWindow* entry) noexcept {
    for (PendingWindow** link = &newest; *link != nullptr; link = &(*link)->next_) {
        if (*link != entry) continue;
        *link = entry->next_;
        return true;
    }
    return false;
}

}  // namespace ZELPropUI::Framework
