#include "tests/inspect/inspection.h"
#include "data_paths.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

namespace inspect_test {

nlohmann::json Outcome::Json() const {
    nlohmann::json parsed = nlohmann::json::parse(out, nullptr, false);
    EXPECT_FALSE(parsed.is_discarded()) << out;
    return parsed;
}

Outcome Call(const std::vector<std::string>& arguments, bool show_progress) {
    std::ostringstream out;
    std::ostringstream err;
    selvane_inspect::run_environment environment;
    environment.show_progress = show_progress;
    const int code = selvane_inspect::run(arguments, out, err, environment);
    return {code, out.str(), err.str()};
}

InspectTest::InspectTest() {
    std::random_device random;
    const std::string name = "selvane_inspect_test_" + std::to_string(random()) + std::to_string(random());
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / name;
    std::filesystem::create_directories(folder);
    folder_ = folder.u8string();
}

InspectTest::~InspectTest() {
    std::error_code ignored;
    std::filesystem::remove_all(std::filesystem::u8path(folder_), ignored);
}

std::string InspectTest::PathOf(const std::string& name) const {
    return (std::filesystem::u8path(folder_) / std::filesystem::u8path(name)).u8string();
}

std::string InspectTest::Write(const std::string& name, std::string_view contents) const {
    const std::string path = PathOf(name);
    std::ofstream(std::filesystem::u8path(path), std::ios::binary) << contents;
    return path;
}

std::string InspectTest::WriteElements(std::string_view elements) const {
    return Write("description.xml", AroundElements(elements));
}

std::string AroundElements(std::string_view elements) {
    return "<RegisterDescription ModelName=\"M\" VendorName=\"V\">\n" + std::string(elements) +
           "\n<Port Name=\"Device\"/>\n</RegisterDescription>\n";
}

std::string ProjectDescription(const std::string& name) {
    return std::string(SELVANE_SOURCE_DIR) + "/descriptions/" + name + ".xml";
}

std::string SimulatedMemory() {
    return std::string(SELVANE_SOURCE_DIR) + "/descriptions/simulated_camera.memory";
}

std::string WithoutNumbers(const std::string& text) {
    std::string shape;
    for (const char c : text) {
        const bool is_digit = c >= '0' && c <= '9';
        if (!is_digit || shape.empty() || shape.back() != '0') shape += is_digit ? '0' : c;
    }
    return shape;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

}  // namespace inspect_test
