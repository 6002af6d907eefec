#include "apps/inspect/lint/severity_count.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

constexpr const char* plurals[] = {"errors", "warnings", "notes"};

}  // namespace

void add_count(severity_counts& counts, severity level, std::size_t times) {
    for (std::size_t at = 0; at < counts.size(); ++at) {
        if (severities[at] == level) counts[at] += times;
    }
}

std::string summary(const severity_counts& counts) {
    std::string text;
    for (std::size_t at = 0; at < counts.size(); ++at) {
        const std::string word = counts[at] == 1 ? std::string(severity_word(severities[at])) : plurals[at];
        text += fmt::format("{}{} {}", text.empty() ? "" : ", ", counts[at], word);
    }
    return text;
}

void put_counts(nlohmann::ordered_json& json, const severity_counts& counts) {
    for (std::size_t at = 0; at < counts.size(); ++at) json[plurals[at]] = counts[at];
}

}  // namespace selvane_inspect
