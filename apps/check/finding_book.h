#pragma once

#include "apps/check/driver_check.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace selvane_check {

/// Findings while they come in: the same one again is counted.
class finding_book {
public:
    void add(fault_kind kind, const std::string& message) { ++found_[{kind, message}]; }

    /// In the order of the rules.
    [[nodiscard]] std::vector<driver_finding> all() const {
        std::vector<driver_finding> findings;
        for (const auto& [what, count] : found_)
            findings.push_back({&rule_of(what.first), what.second, count});
        return findings;
    }

private:
    std::map<std::pair<fault_kind, std::string>, std::size_t> found_;
};

}  // namespace selvane_check
