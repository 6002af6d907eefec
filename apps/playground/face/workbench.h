#pragma once

#include "adapter/genicam_adapter_device.h"
#include "apps/playground/face/live_page.h"
#include "inspection/pages/page_preview.h"
#include "propui/page_layout.h"
#include "simcam/simulated_camera.h"

#include <array>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace selvane_playground {

/// Which camera stands behind a description.
struct camera_settings {
    selvane_inspect::access_path access = selvane_inspect::access_path::named;
    /// With the registers and the firmware of the simulated camera, whose own description is being changed;
    /// else the registers hold the defaults that the description states.
    bool simulated = false;
    /// Contents of the registers, as lines "address: bytes"; replaces what they would hold.
    std::optional<std::string> registers;
};

/// A description that is not well-formed.
class malformed_text : public std::runtime_error {
public:
    malformed_text(const char* about, selvane_inspect::text_position at)
        : std::runtime_error(about), at_(at) {}
    [[nodiscard]] selvane_inspect::text_position at() const noexcept { return at_; }

private:
    selvane_inspect::text_position at_;
};

/// A simulated camera with a description, and its four pages. They live as they do in a host: each has an
/// adapter of its own, measures itself when it is offered the camera, and makes its controls when it is shown
/// first.
class workbench {
public:
    /// Throws `malformed_text`, and `std::invalid_argument` for registers that are no such lines.
    workbench(std::string description, const camera_settings& settings);

    /// Hands the camera to the page, if that was not done before. True if it has something to show.
    bool offer(ZELPropUI::PageName page);
    /// The answer of the page; not set for one that was not offered the camera yet.
    [[nodiscard]] std::optional<bool> answer_of(ZELPropUI::PageName page) const;
    /// Makes the controls at the first call. out_of_range for a page that has nothing to show.
    [[nodiscard]] live_page& show(ZELPropUI::PageName page);

    /// What the driver was asked since the last time, a line for each call.
    [[nodiscard]] std::vector<std::string> take_calls();

    [[nodiscard]] simcam::register_memory& memory() noexcept { return camera_->memory(); }
    /// All registers that were ever written, as lines that `camera_settings` take.
    [[nodiscard]] static std::string lines_of(const simcam::register_memory& memory);

private:
    struct page {
        std::unique_ptr<genicam_adapter::GenICamAdapterDevice> adapter;
        feature_names features;
        std::vector<std::wstring> groups;
        std::optional<bool> has_something;
        std::unique_ptr<live_page> controls;
    };

    void hand_over(page& to, ZELPropUI::PageName name);
    [[nodiscard]] ZELPropUI::PageSources sources_of(page& of);
    [[nodiscard]] page& at(ZELPropUI::PageName name);

    simcam::camera_ptr camera_;
    std::array<page, std::size(ZELPropUI::all_pages)> pages_;
    bool nothing_marked_ = false;
};

}  // namespace selvane_playground
