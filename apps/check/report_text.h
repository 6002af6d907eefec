#pragma once

#include "apps/check/driver_check.h"

#include <string>

#include <nlohmann/json_fwd.hpp>

namespace selvane_check {

/// A line for each finding, what each broken rule means, and a summary, as `selvane_inspect lint` tells its
/// own. UTF-8, with line ends.
[[nodiscard]] std::string report_text(const driver_report& report, const std::string& driver);
[[nodiscard]] nlohmann::ordered_json report_json(const driver_report& report, const std::string& driver);

/// Whether something was found that is graver than a note.
[[nodiscard]] bool is_faulty(const driver_report& report) noexcept;

}  // namespace selvane_check
