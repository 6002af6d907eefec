#include "simcam/call_book.h"

#include <utility>

namespace simcam {

std::optional<fault> call_book::strike(const driver_call& call) {
    std::optional<fault> struck;
    for (waiting_fault& waiting : faults_) {
        if (waiting.what.when && !waiting.what.when(call)) continue;
        const std::uint64_t ordinal = ++waiting.picked;
        const bool strikes =
            ordinal >= waiting.what.first && ordinal - waiting.what.first < waiting.what.count;
        if (strikes && !struck) struck = waiting.what;
    }
    return struck;
}

void call_book::close(driver_call call) {
    if (listener_) {
        const auto listener = listener_;  // it may replace itself
        listener(call);
    }
    if (keeps_) calls_.push_back(std::move(call));
}

}  // namespace simcam
