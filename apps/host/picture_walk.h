#pragma once

#include "apps/host/frame_window.h"

#include <filesystem>
#include <string>

namespace selvane_host {

/// Walks through the pages of a frame, a step at a time, saves a picture of each and closes the frame.
class picture_walk {
public:
    /// Makes the folder if need be. Throws `host_error`.
    explicit picture_walk(std::filesystem::path folder);

    /// To be called again and again while the frame is open. Throws `host_error`.
    void step(const frame_window& frame);
    /// To be called when the frame is closed. Throws `host_error` unless every page has its picture.
    void finish() const;

private:
    [[nodiscard]] std::filesystem::path file_of(const frame_window& frame) const;

    std::filesystem::path folder_;
    bool is_done_ = false;
    int page_ = 0;
    int steps_shown_ = 0;
};

}  // namespace selvane_host
