#pragma once

#include "apps/inspect/command.h"

#include <functional>
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

}  // namespace selvane_inspect
