#include "apps/inspect/lint/severity_count.h"

#include "platform/count_text.h"

#include <nlohmann/json.hpp>

namespace selvane_inspect {

void add_count(severity_counts& counts, severity level, std::size_t times) {
    for (std::size_t at = 0; at < counts.size(); ++at) {
        if (severities[at] == level) counts[at] += times;
    }
}

std::string summary(const severity_counts& counts) {
    std::string text;
    for (std::size_t at = 0; at < counts.size(); ++at) {
        text += (text.empty() ? "" : ", ") + platform::count_text(counts[at], severity_word(severities[at]));
    }
    return text;
}

void put_counts(nlohmann::ordered_json& json, const severity_counts& counts) {
    for (std::size_t at = 0; at < counts.size(); ++at)
        json[std::string(severity_word(severities[at])) + "s"] = counts[at];
}

}  // namespace selvane_inspect
