#include "apps/inspect/camera/camera_call.h"

#include "inspection/camera/connected_camera.h"
#include "inspection/description.h"

#include <algorithm>
#include <memory>
#include <sstream>
#include <utility>

namespace selvane_inspect {
namespace {

constexpr const char* camera_option = "--camera";
constexpr const char* save_option = "--save-description";
constexpr const char* trace_option = "--trace";
constexpr const char* camera_scheme = "camera:";

/// Takes an option out of the arguments, and the word behind it or behind its "=" into `value`.
bool take_option(std::vector<std::string>& arguments, const std::string& option, std::string& value) {
    const auto is_option = [&](const std::string& word) {
        return word == option || word.rfind(option + "=", 0) == 0;
    };
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    const auto found = std::find_if(arguments.begin(), end, is_option);
    if (found == end) return false;
    auto next = found + 1;
    if (found->size() > option.size()) {
        value = found->substr(option.size() + 1);
    } else if (next != end && next->substr(0, 1) != "-") {
        value = *next++;
    }
    arguments.erase(found, next);
    return true;
}

bool take_flag(std::vector<std::string>& arguments, const std::string& flag) {
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    const auto found = std::find(arguments.begin(), end, flag);
    if (found == end) return false;
    arguments.erase(found);
    return true;
}

// Each value and the accesses that led to it are told together there.
bool traces_itself(const std::string& command) { return command == "get" || command == "set"; }

bool reads_no_file(const std::string& command) { return command == "eval" || command == "cameras"; }

}  // namespace

camera_call::camera_call(std::vector<std::string> arguments) : arguments_(std::move(arguments)) {
    const bool saves = take_option(arguments_, save_option, save_);
    const bool is_asked_for = take_option(arguments_, camera_option, name_);
    if (saves && (save_.empty() || name_.empty()))
        throw wrong_use(std::string(save_option) + " needs a FILE, and a camera (--camera NAME)");
    if (!is_asked_for) return;
    if (!name_.empty()) {
        if (arguments_.empty()) throw wrong_use("a camera needs a command (--help tells the commands)");
        if (reads_no_file(arguments_.front())) throw wrong_use(arguments_.front() + " takes no camera");
        is_traced_ = !traces_itself(arguments_.front()) && take_flag(arguments_, trace_option);
        arguments_.insert(arguments_.begin() + 1, camera_scheme + name_);
        return;
    }
    const bool has_command = !arguments_.empty() && arguments_.front().substr(0, 1) != "-";
    if (has_command && arguments_.front() != "list")
        throw wrong_use(std::string(camera_option) + " needs a NAME here; " + camera_option +
                        " alone lists the cameras");
    if (has_command) arguments_.erase(arguments_.begin());
    arguments_.insert(arguments_.begin(), "cameras");
}

int camera_call::carry_out(const std::function<int(const channels&)>& command, const channels& to) const {
    if (name_.empty()) return command(to);
    const std::unique_ptr<live_camera> camera = connect_camera(name_);
    if (!save_.empty()) write_file(save_, std::string(camera->description()));
    std::ostringstream out;
    std::ostringstream err;
    const connected_camera connected(camera_scheme + name_, *camera, is_traced_ ? &err : nullptr);
    const int code = command({out, err, to.environment, to.json});
    if (!camera->ending().empty()) throw refused(camera->ending());
    to.err << err.str();
    to.out << out.str();
    return code;
}

}  // namespace selvane_inspect
