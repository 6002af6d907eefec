#include "apps/inspect/log_capture.h"

#include "platform/debug_output.h"

#include <utility>

namespace selvane_inspect {
namespace {

// The sink is a plain function.
std::vector<std::string> captured;

void keep(const char* text) {
    std::string line = text;
    while (!line.empty() && line.back() == '\n') line.pop_back();
    captured.push_back(std::move(line));
}

}  // namespace

log_capture::log_capture()
    : former_threshold_(std::exchange(GenICam::log_threshold, GenICam::log_rejection)) {
    captured.clear();
    platform::set_debug_sink(keep);
}

log_capture::~log_capture() {
    platform::set_debug_sink(nullptr);
    GenICam::log_threshold = former_threshold_;
    captured.clear();
}

std::vector<std::string> log_capture::take() { return std::exchange(captured, {}); }

}  // namespace selvane_inspect
