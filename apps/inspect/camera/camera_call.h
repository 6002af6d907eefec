#pragma once

#include "apps/inspect/camera/live_camera.h"
#include "apps/inspect/command.h"

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace selvane_inspect {

/// A command line with a camera in the place of the file. `--camera NAME` stands for the file "camera:NAME",
/// `--camera` without a name for the command that lists cameras. `--trace` is taken here for commands that do
/// not know it: they tell each access on standard error.
class camera_call {
public:
    /// Throws `inspect_error` for words that do not fit together.
    explicit camera_call(std::vector<std::string> arguments);

    /// What the commands are to see.
    [[nodiscard]] const std::vector<std::string>& arguments() const noexcept { return arguments_; }

    /// Carries out the command, over the camera if one is named: output is held back until it is known that
    /// the camera has answered to the end.
    int carry_out(const std::function<int(const channels&)>& command, const channels& to) const;

private:
    std::vector<std::string> arguments_;
    std::string name_;
    std::string save_;
    bool is_traced_ = false;
};

/// The camera that a file name stands for, while a command is carried out over it; null for files.
[[nodiscard]] live_camera* camera_behind(const std::string& file);
/// Where that command tells each access to the camera; null for nowhere.
[[nodiscard]] std::ostream* camera_trace() noexcept;

/// Control of the camera behind a file name for as long as this lives; of a file, nothing.
class camera_control {
public:
    /// Throws `inspect_error` when another program has it.
    explicit camera_control(const std::string& file) : camera_(camera_behind(file)) {
        if (camera_ != nullptr) camera_->take_control();
    }
    camera_control(const camera_control&) = delete;
    camera_control& operator=(const camera_control&) = delete;
    ~camera_control() {
        if (camera_ != nullptr) camera_->leave_control();
    }

private:
    live_camera* camera_;
};

}  // namespace selvane_inspect
