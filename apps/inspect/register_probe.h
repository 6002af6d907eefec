#pragma once

#include "apps/inspect/description.h"
#include "apps/inspect/evaluation_guard.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace selvane_inspect {

/// Where a register node lies now and what is there.
struct register_state {
    std::uint64_t address;
    simcam::bytes bytes;
    std::optional<std::uint64_t> mask;  ///< of a node that is a field of the register
    std::string_view byte_order;        ///< of a number of several bytes
};

/// Looks at the registers of a node past its cache and access mode. Not set for a node that is no register,
/// or whose address cannot be computed.
[[nodiscard]] std::optional<register_state> probe_register(description& in, evaluation_guard& guard,
                                                           GenICam::INode& node);

/// Why a register can never be reached: its port does not exist, or nothing is behind it. Empty for others.
[[nodiscard]] std::string port_defect(description& in, element_index element);

}  // namespace selvane_inspect
