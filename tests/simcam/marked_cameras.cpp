#include "tests/simcam/marked_cameras.h"
#include "data_paths.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace simcam_test {
namespace {

constexpr std::string_view file_end = "-marked.xml";
}  // namespace

std::vector<marked_description> marked_descriptions() {
    std::vector<marked_description> found;
    std::error_code absent;
    const std::filesystem::path folder = SELVANE_SHARED_DESCRIPTIONS "/marked";
    for (const auto& entry : std::filesystem::directory_iterator(folder, absent)) {
        const std::string name = entry.path().filename().u8string();
        const std::size_t end = name.find(file_end);
        if (end == std::string::npos) continue;
        std::ifstream file(entry.path(), std::ios::binary);
        found.push_back(
            {name.substr(0, end), {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()}});
    }
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    return found;
}

simcam::camera_options camera_of(const marked_description& marked, std::uint64_t seed) {
    simcam::camera_options options;
    options.descriptions = {marked.text};
    options.memory_seed = seed;
    return options;
}

}  // namespace simcam_test
