#pragma once

#include <array>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace selvane_inspect {

enum class severity { note, warning, error };
[[nodiscard]] std::string_view severity_word(severity level) noexcept;

/// The gravest first.
constexpr severity severities[] = {severity::error, severity::warning, severity::note};

/// How many findings there are of each, in the order of `severities`.
using severity_counts = std::array<std::size_t, std::size(severities)>;

void add_count(severity_counts& counts, severity level, std::size_t times);
/// "1 error, 0 warnings, 2 notes"
[[nodiscard]] std::string summary(const severity_counts& counts);
/// As "errors", "warnings" and "notes".
void put_counts(nlohmann::ordered_json& json, const severity_counts& counts);

}  // namespace selvane_inspect
