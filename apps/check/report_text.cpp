#include "apps/check/report_text.h"

#include "inspection/severity.h"
#include "platform/count_text.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_check {
namespace {

using platform::count_text;
using selvane_inspect::severity_counts;
using selvane_inspect::severity_word;

severity_counts counts_of(const driver_report& report) {
    severity_counts counts{};
    for (const driver_finding& one : report.findings) add_count(counts, one.rule->level, 1);
    return counts;
}

const char* access_path_of(const driver_report& report) {
    if (report.named_access && report.register_access) {
        return report.registers_asked ? "names (and registers)"
                                      : "names (registers are offered and were not asked)";
    }
    if (report.named_access) return "names";
    return report.register_access ? "registers" : "none";
}

}  // namespace

std::string report_text(const driver_report& report, const std::string& driver) {
    std::string text;
    std::set<const check_rule*> broken;
    for (const driver_finding& one : report.findings) {
        broken.insert(one.rule);
        text += fmt::format("{}: {}: {}{} [{}]\n", driver, severity_word(one.rule->level), one.message,
                            one.count > 1 ? fmt::format(" ({} times)", one.count) : "", one.rule->name);
    }
    for (const check_rule& rule : all_check_rules()) {
        if (broken.count(&rule) == 0) continue;
        text += fmt::format("    {}: {} {}\n", rule.name, rule.why, rule.what_to_do);
    }
    text += fmt::format("{}: access by {}, {}, {}, {}\n", driver, access_path_of(report),
                        count_text(report.descriptions, "description"),
                        count_text(report.controls, "control"), count_text(report.calls, "call"));
    return text + driver + ": " + selvane_inspect::summary(counts_of(report)) + "\n";
}

nlohmann::ordered_json report_json(const driver_report& report, const std::string& driver) {
    nlohmann::ordered_json json = {{"command", "check-driver"},
                                   {"driver", driver},
                                   {"named_access", report.named_access},
                                   {"register_access", report.register_access},
                                   {"registers_asked", report.registers_asked},
                                   {"descriptions", report.descriptions},
                                   {"controls", report.controls},
                                   {"calls", report.calls}};
    json["findings"] = nlohmann::ordered_json::array();
    for (const driver_finding& one : report.findings) {
        json["findings"].push_back({{"rule", one.rule->name},
                                    {"severity", severity_word(one.rule->level)},
                                    {"message", one.message},
                                    {"count", one.count},
                                    {"why", one.rule->why},
                                    {"what_to_do", one.rule->what_to_do}});
    }
    selvane_inspect::put_counts(json, counts_of(report));
    return json;
}

bool is_faulty(const driver_report& report) noexcept {
    return std::any_of(report.findings.begin(), report.findings.end(),
                       [](const driver_finding& one) { return one.rule->level != severity::note; });
}

}  // namespace selvane_check
