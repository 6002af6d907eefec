#pragma once

#include "apps/inspect/run.h"
#include "tests/support/description_files.h"

#include <string>
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

using InspectTest = test_support::DescriptionFiles;
using test_support::AroundElements;
using test_support::ProjectDescription;
using test_support::SimulatedMemory;

/// The text with a single 0 for each run of digits.
[[nodiscard]] std::string WithoutNumbers(const std::string& text);

/// The lines of a text.
[[nodiscard]] std::vector<std::string> Lines(const std::string& text);

}  // namespace inspect_test
