#pragma once

#include "inspection/severity.h"

#include <string_view>

#include <gsl/span>

namespace selvane_check {

using selvane_inspect::severity;

/// What a driver can get wrong. In the order in which findings are told.
enum class fault_kind {
    no_property_set,
    gate_refused,
    gate_kind,
    gate_short,
    no_access,
    no_description,
    description_size,
    description_refused,
    description_length,
    description_cut,
    description_malformed,
    description_endless,
    description_port,
    description_marks,
    description_deadly,
    driver_throws,
    named_result,
    named_no_bytes,
    named_no_end,
    named_refused,
    entry_unknown,
    register_result,
    register_refused,
    register_short,
    value_range,
    vendor_short,
    exposure_ticks,
    focus_control,
    write_refused,
    slow_call,
};

/// Names are stable: people write them into scripts.
struct check_rule {
    fault_kind kind;
    std::string_view name;
    severity level;
    std::string_view why;  ///< why it matters
    std::string_view what_to_do;
};

[[nodiscard]] gsl::span<const check_rule> all_check_rules() noexcept;
[[nodiscard]] const check_rule& rule_of(fault_kind kind) noexcept;

}  // namespace selvane_check
