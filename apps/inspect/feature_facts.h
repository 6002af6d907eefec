#pragma once

#include "apps/inspect/feature_reader.h"
#include "apps/inspect/value_sources.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace selvane_inspect {

/// An element inside a feature's, or inside the frame that a feature shares with others.
struct shown_element {
    std::size_t depth;
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::string text;
    text_position at;
};

/// An entry of an enumeration.
struct shown_entry {
    std::string name;
    std::string display_name;
    std::int64_t value;
    std::optional<double> number;  ///< its `NumericValue`
    std::string_view access;       ///< NI and NA as for a feature
};

/// A feature, or an entry of an enumeration, whose elements name a feature.
struct dependent {
    std::string name;
    std::string enumeration;  ///< of an entry
    std::string role;
};

/// Everything about a feature that is not its state.
struct feature_facts {
    element_index element;
    std::vector<shown_element> elements;
    std::vector<shown_entry> entries;
    value_source sources;
    std::vector<dependent> direct;         ///< in document order
    std::vector<std::string> invalidated;  ///< what the engine holds for stale after a write
};

[[nodiscard]] feature_facts find_facts(description& in, evaluation_guard& guard, GenICam::INode& feature);

[[nodiscard]] nlohmann::ordered_json to_json(const shown_element& element);
[[nodiscard]] nlohmann::ordered_json to_json(const shown_entry& entry);
[[nodiscard]] nlohmann::ordered_json to_json(const dependent& one);

}  // namespace selvane_inspect
