#pragma once

#include "inspection/description.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace selvane_check {

/// What the descriptions call the registers that a driver is asked for by their addresses.
class register_names {
public:
    void add(std::unique_ptr<selvane_inspect::description> loaded) {
        descriptions_.push_back(std::move(loaded));
    }

    /// The register at an address from which a feature takes its value, a limit or its state. Empty for one
    /// whose place is computed.
    [[nodiscard]] std::string_view find(std::string_view feature, std::uint64_t address) const;

private:
    std::vector<std::unique_ptr<selvane_inspect::description>> descriptions_;
};

}  // namespace selvane_check
