#pragma once

#include "apps/inspect/description_tree.h"

#include <cstdint>
#include <map>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace selvane_inspect {

/// How many nodes of each class a description has.
struct class_count {
    const GenICam::node_class* made = nullptr;
    std::uint64_t count = 0;
};

/// What a description consists of, by names in order; classes that do not occur among them with a count of 0.
struct node_counts {
    std::map<std::string_view, std::uint64_t> elements;
    std::map<std::string_view, class_count> classes;
    std::uint64_t nodes = 0;
};

[[nodiscard]] node_counts count_nodes(const description_tree& tree);
[[nodiscard]] nlohmann::ordered_json elements_json(const node_counts& counts);
[[nodiscard]] nlohmann::ordered_json classes_json(const node_counts& counts);

}  // namespace selvane_inspect
