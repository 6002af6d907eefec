#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace selvane_playground {

/// Carries out a command line of the inspector on a description that is no file. "FILE" among the arguments
/// stands for it; registers are lines "address: bytes". The answer has `output`, the JSON that the inspector
/// prints, `code`, its exit code, and `message`, what it says on standard error.
[[nodiscard]] nlohmann::ordered_json inspect(std::vector<std::string> arguments, std::string_view description,
                                             const std::string& registers);

}  // namespace selvane_playground
