#pragma once

#include <string_view>
#include <vector>

namespace simcam {

struct embedded_text {
    std::string_view file_name;
    std::string_view contents;
};

/// The files of descriptions/ as they were when the program was built.
[[nodiscard]] const std::vector<embedded_text>& embedded_texts();

}  // namespace simcam
