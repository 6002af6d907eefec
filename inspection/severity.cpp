#include "inspection/severity.h"

#include "platform/count_text.h"

#include <nlohmann/json.hpp>

namespace selvane_inspect {

std::string_view severity_word(severity level) noexcept {
    constexpr std::string_view words[] = {"note", "warning", "error"};
    return words[static_cast<std::size_t>(level)];
}

void add_count(severity_counts& counts, severity level, std::size_t times) {
    auto* count = counts.data();
    for (const severity one : severities) {
        if (one == level) *count += times;
        ++count;
    }
}

std::string summary(const severity_counts& counts) {
    std::string text;
    const auto* count = counts.data();
    for (const severity one : severities)
        text += (text.empty() ? "" : ", ") + platform::count_text(*count++, severity_word(one));
    return text;
}

void put_counts(nlohmann::ordered_json& json, const severity_counts& counts) {
    const auto* count = counts.data();
    for (const severity one : severities) json[std::string(severity_word(one)) + "s"] = *count++;
}

}  // namespace selvane_inspect
