#include "apps/inspect/commands.h"
#include "inspection/camera/live_camera.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

std::string line_of(const camera_identity& camera) {
    return fmt::format("{}  {} {} {} at {} ({})", camera.name, camera.vendor, camera.model, camera.serial,
                       camera.address, camera.protocol);
}

}  // namespace

int cameras(const cameras_options&, const channels& to) {
    auto json = nlohmann::ordered_json::array();
    for (const camera_identity& camera : find_cameras()) {
        json.push_back({{"name", camera.name},
                        {"vendor", camera.vendor},
                        {"model", camera.model},
                        {"serial", camera.serial},
                        {"address", camera.address},
                        {"protocol", camera.protocol}});
        if (!to.json) write_line(to.out, line_of(camera));
    }
    if (to.json) {
        write_json(to.out, {{"command", "cameras"}, {"cameras", std::move(json)}});
    } else if (json.empty()) {
        write_error(to.err, "no camera answers");
    }
    return exit_code::fine;
}

}  // namespace selvane_inspect
