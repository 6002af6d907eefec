#pragma once

#include "genicam/core/log.h"

#include <cstdint>
#include <string>
#include <vector>

namespace selvane_inspect {

/// Lets the engine say everything and keeps it, until it is destroyed. One at a time.
class log_capture {
public:
    log_capture();
    ~log_capture();
    log_capture(const log_capture&) = delete;
    log_capture& operator=(const log_capture&) = delete;

    /// The messages since the last time, without their line ends.
    [[nodiscard]] std::vector<std::string> take();

private:
    std::uint32_t former_threshold_;
};

/// Keeps the engine silent while it lives, also inside a capture.
using GenICam::silence;

}  // namespace selvane_inspect
