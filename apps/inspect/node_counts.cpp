#include "apps/inspect/node_counts.h"

#include <nlohmann/json.hpp>

namespace selvane_inspect {

node_counts count_nodes(const description_tree& tree) {
    node_counts counts;
    for (const GenICam::node_class& known : GenICam::all_node_classes())
        counts.classes[known.name] = {&known, 0};
    for (const node_element& element : tree.elements()) {
        if (element.made == nullptr) continue;
        ++counts.elements[element.xml.name()];
        ++counts.classes[element.made->name].count;
        ++counts.nodes;
    }
    return counts;
}

nlohmann::ordered_json elements_json(const node_counts& counts) {
    auto json = nlohmann::ordered_json::object();
    for (const auto& [name, count] : counts.elements) json[std::string(name)] = count;
    return json;
}

nlohmann::ordered_json classes_json(const node_counts& counts) {
    auto json = nlohmann::ordered_json::array();
    for (const auto& [name, counted] : counts.classes) {
        json.push_back({{"name", name},
                        {"count", counted.count},
                        {"size", counted.made->size},
                        {"destructor", counted.made->has_destructor}});
    }
    return json;
}

}  // namespace selvane_inspect
