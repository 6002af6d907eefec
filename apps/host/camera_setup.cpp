#include "apps/host/camera_setup.h"

#include "apps/host/console.h"
#include "apps/host/host_error.h"

#include <fmt/format.h>
#include <pugixml.hpp>

#include <fstream>
#include <iterator>
#include <utility>

namespace selvane_host {
namespace {

std::string read_file(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream || std::filesystem::is_directory(file)) throw wrong_use("cannot read " + file.u8string());
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
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

void replace_descriptions(simcam::camera_options& camera, const std::vector<std::filesystem::path>& files) {
    camera.descriptions.clear();
    for (const std::filesystem::path& file : files) camera.descriptions.push_back(read_file(file));
    // Contents and behaviour of the registers belong to the descriptions that are gone.
    camera.memory.clear();
    camera.prepare_memory = nullptr;
    camera.start_from_defaults = true;
}

void load_memory(simcam::simulated_camera& camera, const std::filesystem::path& file) {
    const std::size_t line = camera.memory().load(read_file(file));
    if (line != 0) throw wrong_use(fmt::format("{}: line {} is not understood", file.u8string(), line));
}

void choose_road(simcam::camera_options& camera, access_road road) {
    if (road == access_road::named) camera.register_access = false;
    if (road == access_road::registers) camera.named_access = false;
}

std::string why_malformed(const std::string& text) {
    pugi::xml_document xml;
    const pugi::xml_parse_result parsed = xml.load_buffer(text.data(), text.size());
    return fmt::format("{} at byte {}", parsed.description(), parsed.offset);
}

void refuse_malformed(simcam::simulated_camera& camera, const std::vector<std::filesystem::path>& files) {
    for (std::size_t index = 0; index < files.size(); ++index) {
        if (camera.document(index) != nullptr) continue;
        throw wrong_use(files[index].u8string() +
                        " is malformed: " + why_malformed(camera.options().descriptions[index]));
    }
}

}  // namespace

simcam::camera_ptr make_wanted_camera(const host_options& options) {
    simcam::camera_options wanted = wanted_options(options);
    if (!options.descriptions.empty()) replace_descriptions(wanted, options.descriptions);
    choose_road(wanted, options.access);
    wanted.call_delay = options.delay;
    wanted.keep_transcript = false;  // what is traced is printed as it comes
    simcam::camera_ptr camera = simcam::make_camera(std::move(wanted));
    refuse_malformed(*camera, options.descriptions);
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
