#pragma once

#include "apps/inspect/description.h"
#include "apps/inspect/run.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace inspect_test {

/// What a call of the program left behind.
struct Outcome {
    int code = -1;
    std::string out;
    std::string err;

    /// The output as JSON; a test that gets none fails.
    [[nodiscard]] nlohmann::json Json() const;
};

[[nodiscard]] Outcome Call(const std::vector<std::string>& arguments, bool show_progress = false);

/// A folder for files of one test, gone with it.
class InspectTest : public testing::Test {
protected:
    InspectTest();
    ~InspectTest() override;

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

/// A description in the project, and the registers that belong to it.
[[nodiscard]] std::string ProjectDescription(const std::string& name);
[[nodiscard]] std::string SimulatedMemory();

/// The text with a single 0 for each run of digits.
[[nodiscard]] std::string WithoutNumbers(const std::string& text);

/// The lines of a text.
[[nodiscard]] std::vector<std::string> Lines(const std::string& text);

}  // namespace inspect_test
