#pragma once

#include "inspection/evaluation_guard.h"

#include <string>

#include <nlohmann/json.hpp>

namespace selvane_inspect {

/// A part of what a command tells, as lines of text and as data.
struct told_part {
    std::string text;
    nlohmann::ordered_json json;
};

/// Where a value comes from: follows all links of a feature that its value, its limits and its access depend
/// on. The text is empty where there is nothing to tell but the feature itself.
[[nodiscard]] told_part find_sources(description& in, evaluation_guard& guard, GenICam::INode& feature);

}  // namespace selvane_inspect
