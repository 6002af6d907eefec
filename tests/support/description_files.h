#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace test_support {

/// A folder for files of one test, gone with it.
class DescriptionFiles : public testing::Test {
protected:
    DescriptionFiles();
    ~DescriptionFiles() override;

    /// A file with these contents; gives its path.
    std::string Write(const std::string& name, std::string_view contents) const;
    /// A description with these elements under its root, each on the lines that it has, and the first one on
    /// line 2.
    std::string WriteElements(std::string_view elements) const;
    [[nodiscard]] std::string PathOf(const std::string& name) const;

private:
    std::string folder_;
};

/// A whole description around these elements.
[[nodiscard]] std::string AroundElements(std::string_view elements);

/// Elements for which the engine refuses a description: too many would have to be told of a change.
[[nodiscard]] std::string RefusedElements();

/// A description in the project, and the registers that belong to it.
[[nodiscard]] std::string ProjectDescription(const std::string& name);
[[nodiscard]] std::string SimulatedMemory();

}  // namespace test_support
