#include "tests/inspect/lint_fixture.h"

#include <cstddef>
#include <utility>

#include <gmock/gmock.h>

namespace inspect_test {
namespace {

using position = std::pair<std::size_t, std::size_t>;

struct marked_text {
    std::string text;
    std::vector<position> marks;
};

// The elements begin on the second line of the file.
marked_text TakeMarks(std::string_view marked) {
    marked_text taken;
    position at = {2, 1};
    for (const char c : marked) {
        if (c == '@') {
            taken.marks.push_back(at);
            continue;
        }
        taken.text += c;
        at = c == '\n' ? position(at.first + 1, 1) : position(at.first, at.second + 1);
    }
    return taken;
}

}  // namespace

Outcome LintTest::LintAll(std::string_view elements, const std::vector<std::string>& options) const {
    // What is no test of marks has none.
    std::vector<std::string> arguments = {"lint", WriteElements(elements), "--ignore", "no-marks"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return Call(arguments);
}

nlohmann::json LintTest::Lint(const std::string& rule, std::string_view elements,
                              const std::vector<std::string>& options) const {
    std::vector<std::string> arguments = {"--json", "--only", rule};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Outcome outcome = LintAll(elements, arguments);
    EXPECT_EQ(outcome.err, "");
    const nlohmann::json json = outcome.Json();
    const nlohmann::json& file = json.at("files").at(0);
    const bool fails = file.at("errors") != 0 || file.at("warnings") != 0;
    EXPECT_EQ(outcome.code, fails ? 1 : 0);
    return file.at("findings");
}

void LintTest::Finds(const std::string& rule, const std::string& severity, std::string_view marked_elements,
                     const std::vector<std::string>& messages,
                     const std::vector<std::string>& options) const {
    const marked_text elements = TakeMarks(marked_elements);
    std::vector<position> positions;
    std::vector<std::string> found;
    for (const nlohmann::json& finding : Lint(rule, elements.text, options)) {
        EXPECT_EQ(finding.at("rule"), rule);
        EXPECT_EQ(finding.at("severity"), severity);
        positions.emplace_back(finding.at("line"), finding.at("column"));
        found.push_back(finding.at("message"));
    }
    EXPECT_EQ(positions, elements.marks) << marked_elements;
    EXPECT_EQ(found, messages);
}

void LintTest::FindsNothing(const std::string& rule, std::string_view elements,
                            const std::vector<std::string>& options) const {
    EXPECT_EQ(Lint(rule, elements, options), nlohmann::json::array()) << elements;
}

}  // namespace inspect_test
