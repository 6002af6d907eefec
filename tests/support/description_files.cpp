#include "tests/support/description_files.h"

#include "data_paths.h"

#include <filesystem>
#include <fstream>
#include <random>

namespace test_support {

DescriptionFiles::DescriptionFiles() {
    std::random_device random;
    const std::string name = "selvane_test_" + std::to_string(random()) + std::to_string(random());
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / name;
    std::filesystem::create_directories(folder);
    folder_ = folder.u8string();
}

DescriptionFiles::~DescriptionFiles() {
    std::error_code ignored;
    std::filesystem::remove_all(std::filesystem::u8path(folder_), ignored);
}

std::string DescriptionFiles::PathOf(const std::string& name) const {
    return (std::filesystem::u8path(folder_) / std::filesystem::u8path(name)).u8string();
}

std::string DescriptionFiles::Write(const std::string& name, std::string_view contents) const {
    const std::string path = PathOf(name);
    std::ofstream(std::filesystem::u8path(path), std::ios::binary) << contents;
    return path;
}

std::string DescriptionFiles::WriteElements(std::string_view elements) const {
    return Write("description.xml", AroundElements(elements));
}

std::string AroundElements(std::string_view elements) {
    return "<RegisterDescription ModelName=\"M\" VendorName=\"V\">\n" + std::string(elements) +
           "\n<Port Name=\"Device\"/>\n</RegisterDescription>\n";
}

std::string RefusedElements() {
    std::string elements = "<Integer Name=\"A\"><Value>1</Value></Integer>";
    for (int at = 1; at < 6000; ++at) {
        const std::string number = std::to_string(100000 + at);
        elements += "<Integer Name=\"A" + number + "\"><Value>1</Value><pInvalidator>A" +
                    std::to_string(100000 + at - 1) + "</pInvalidator></Integer><Integer Name=\"B" + number +
                    "\"><Value>1</Value><pInvalidator>A" + number + "</pInvalidator></Integer>";
    }
    return elements;
}

std::string ProjectDescription(const std::string& name) {
    return std::string(SELVANE_SOURCE_DIR) + "/descriptions/" + name + ".xml";
}

std::string SimulatedMemory() {
    return std::string(SELVANE_SOURCE_DIR) + "/descriptions/simulated_camera.memory";
}

}  // namespace test_support
