// What a report looks like, and what makes the check fail.

#include "apps/check/report_text.h"

#include "data_paths.h"
#include "inspection/description.h"
#include "tests/check/checked_camera.h"

#include <set>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace check_test {
namespace {

using namespace selvane_check;
using testing::HasSubstr;

driver_report ReportOfAnotherKind() {
    camera_options options = SoundCamera();
    options.device_kind = 4;
    check_options check;
    check.clock = [] { return std::uint64_t{0}; };
    return check_driver(*simcam::make_camera(std::move(options)), check);
}

TEST(CheckReport, TellsFindingsAsLintDoes) {
    const std::string text = report_text(ReportOfAnotherKind(), "Lamp");
    EXPECT_THAT(text, testing::StartsWith("Lamp: error: the gate tells the device kind 4 [gate-kind]\n"
                                          "    gate-kind: Pages serve one kind of device alone. Write "
                                          "SELVANE_DEVICE_KIND into the first field of the answer.\n"
                                          "Lamp: access by names (and registers), 1 description, "));
    EXPECT_THAT(text, testing::EndsWith(" calls\nLamp: 1 error, 0 warnings, 0 notes\n"));
}

TEST(CheckReport, Json) {
    const nlohmann::json json = report_json(ReportOfAnotherKind(), "Lamp");
    EXPECT_EQ(json["command"], "check-driver");
    EXPECT_EQ(json["driver"], "Lamp");
    EXPECT_EQ(json["named_access"], true);
    EXPECT_EQ(json["descriptions"], 1);
    EXPECT_EQ(json["errors"], 1);
    EXPECT_EQ(json["warnings"], 0);
    ASSERT_EQ(json["findings"].size(), 1U);
    EXPECT_EQ(json["findings"][0]["rule"], "gate-kind");
    EXPECT_EQ(json["findings"][0]["severity"], "error");
    EXPECT_EQ(json["findings"][0]["message"], "the gate tells the device kind 4");
    EXPECT_EQ(json["findings"][0]["count"], 1);
}

TEST(CheckReport, CountsAFindingThatComesAgain) {
    driver_report report;
    report.findings.push_back({&rule_of(fault_kind::slow_call), "a call is slow", 3});
    const std::string text = report_text(report, "Lamp");
    EXPECT_THAT(text, HasSubstr("Lamp: warning: a call is slow (3 times) [slow-call]\n"));
    EXPECT_THAT(text, HasSubstr("Lamp: 0 errors, 1 warning, 0 notes\n"));
    const nlohmann::json json = report_json(report, "Lamp");
    EXPECT_EQ(json["warnings"], 1);
    EXPECT_EQ(json["findings"][0]["count"], 3);
}

TEST(CheckReport, CountsInWordsOfTheirNumber) {
    driver_report report;
    report.descriptions = report.controls = 1;
    report.calls = 1;
    EXPECT_THAT(report_text(report, "Lamp"),
                testing::StartsWith("Lamp: access by none, 1 description, 1 control, 1 call\n"));
    report.descriptions = report.controls = 0;
    report.calls = 2;
    EXPECT_THAT(report_text(report, "Lamp"),
                testing::StartsWith("Lamp: access by none, 0 descriptions, 0 controls, 2 calls\n"));
}

TEST(CheckReport, TellsWhichAccessWasAsked) {
    driver_report report;
    report.named_access = report.register_access = true;
    EXPECT_THAT(report_text(report, "Lamp"),
                testing::StartsWith("Lamp: access by names (registers are offered and were not asked), "));
    EXPECT_EQ(report_json(report, "Lamp")["registers_asked"], false);
    report.registers_asked = true;
    EXPECT_THAT(report_text(report, "Lamp"), testing::StartsWith("Lamp: access by names (and registers), "));
    EXPECT_EQ(report_json(report, "Lamp")["registers_asked"], true);
}

TEST(CheckReport, EveryRuleStandsInItsDocument) {
    const std::string document = selvane_inspect::read_file(SELVANE_SOURCE_DIR "/docs/driver.md");
    for (const check_rule& rule : all_check_rules()) {
        EXPECT_THAT(document, HasSubstr("`" + std::string(rule.name) + "`"));
    }
}

TEST(CheckReport, FindingsMakeItFail) {
    driver_report report;
    EXPECT_FALSE(is_faulty(report));
    report.findings.push_back({&rule_of(fault_kind::slow_call), "a call is slow", 1});
    EXPECT_TRUE(is_faulty(report));
}

TEST(CheckReport, NamesOfRulesAreUnique) {
    std::set<std::string_view> names;
    for (const check_rule& rule : all_check_rules()) {
        EXPECT_TRUE(names.insert(rule.name).second) << rule.name;
        EXPECT_FALSE(rule.why.empty() || rule.what_to_do.empty()) << rule.name;
    }
}

}  // namespace
}  // namespace check_test
