#include "simcam/description_files.h"

#include "platform/file.h"

#include <fmt/format.h>
#include <pugixml.hpp>

namespace simcam {
namespace {

std::string why_malformed(const std::string& text) {
    pugi::xml_document xml;
    const pugi::xml_parse_result parsed = xml.load_buffer(text.data(), text.size());
    return fmt::format("{} at byte {}", parsed.description(), parsed.offset);
}

}  // namespace

std::string replace_descriptions(camera_options& camera, const std::vector<std::string>& files) {
    camera.descriptions.clear();
    for (const std::string& file : files) {
        if (!platform::read_file(file, camera.descriptions.emplace_back())) return "cannot read " + file;
    }
    camera.memory.clear();
    camera.prepare_memory = nullptr;
    camera.start_from_defaults = true;
    return {};
}

std::string find_malformed(simulated_camera& camera, const std::vector<std::string>& files) {
    for (std::size_t index = 0; index < files.size(); ++index) {
        if (camera.document(index) != nullptr) continue;
        return files[index] + " is malformed: " + why_malformed(camera.options().descriptions[index]);
    }
    return {};
}

}  // namespace simcam
