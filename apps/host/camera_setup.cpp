#include "apps/host/camera_setup.h"

#include "apps/host/host_error.h"
#include "platform/file.h"
#include "simcam/description_files.h"

#include <fmt/format.h>

#include <utility>
#include <vector>

namespace selvane_host {
namespace {

void refuse(const std::string& failure) {
    if (!failure.empty()) throw wrong_use(failure);
}

// A camera that was given descriptions has nothing else, so that the pages show what these say.
simcam::camera_options wanted_options(const host_options& options) {
    if (options.camera.empty() && !options.descriptions.empty()) return {};
    const std::string name =
        options.camera.empty() ? std::string(simcam::camera_names().front().name) : options.camera;
    const auto ready = simcam::ready_made(name);
    if (!ready) throw wrong_use("there is no camera named \"" + name + "\" (--list-cameras names them)");
    return *ready;
}

void load_memory(simcam::simulated_camera& camera, const std::filesystem::path& file) {
    std::string contents;
    if (!platform::read_file(file.u8string(), contents)) throw wrong_use("cannot read " + file.u8string());
    const std::size_t line = camera.memory().load(contents);
    if (line != 0) throw wrong_use(fmt::format("{}: line {} is not understood", file.u8string(), line));
}

void choose_access_path(simcam::camera_options& camera, access_path access) {
    if (access == access_path::named) camera.register_access = false;
    if (access == access_path::registers) camera.named_access = false;
}

}  // namespace

simcam::camera_ptr make_wanted_camera(const host_options& options) {
    std::vector<std::string> files;
    for (const std::filesystem::path& file : options.descriptions) files.push_back(file.u8string());
    simcam::camera_options wanted = wanted_options(options);
    if (!files.empty()) refuse(simcam::replace_descriptions(wanted, files));
    choose_access_path(wanted, options.access);
    wanted.call_delay = options.delay;
    wanted.keep_transcript = false;  // what is traced is printed as it comes
    simcam::camera_ptr camera = simcam::make_camera(std::move(wanted));
    refuse(simcam::find_malformed(*camera, files));
    if (!options.memory.empty()) load_memory(*camera, options.memory);
    return camera;
}

std::string camera_caption(simcam::simulated_camera& camera) {
    GenICam::IGenICamDoc* first = camera.document_count() > 0 ? camera.document(0) : nullptr;
    const std::string model = first != nullptr ? std::string(first->get_model_name()) : std::string();
    return model.empty() ? "Simulated camera" : model + " (simulated)";
}

std::string list_cameras() {
    std::string text;
    for (const simcam::camera_name& camera : simcam::camera_names()) {
        text += fmt::format("{:<16} {}\n", camera.name, camera.about);
    }
    return text;
}

}  // namespace selvane_host
