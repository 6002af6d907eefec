#pragma once

#include "tests/inspect/inspection.h"

#include <string>
#include <string_view>
#include <vector>

namespace inspect_test {

/// Runs `lint` over elements in which an @ marks each position that is to be found.
class LintTest : public InspectTest {
protected:
    /// The rule finds exactly the marked positions, with these messages in the order of the file.
    void Finds(const std::string& rule, const std::string& severity, std::string_view marked_elements,
               const std::vector<std::string>& messages, const std::vector<std::string>& options = {}) const;
    void FindsNothing(const std::string& rule, std::string_view elements,
                      const std::vector<std::string>& options = {}) const;
    /// The findings of the rule.
    [[nodiscard]] nlohmann::json Lint(const std::string& rule, std::string_view elements,
                                      const std::vector<std::string>& options = {}) const;

    /// The call over all rules but no-marks.
    [[nodiscard]] Outcome LintAll(std::string_view elements,
                                  const std::vector<std::string>& options = {}) const;
};

}  // namespace inspect_test
