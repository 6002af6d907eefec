#include "apps/inspect/commands.h"
#include "apps/inspect/description.h"
#include "apps/inspect/node_counts.h"
#include "genicam/ieval.h"

#include <sstream>

#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

constexpr std::int32_t statistics_mode = 0;
constexpr std::int32_t node_list_mode = 1;

nlohmann::ordered_json nodes_json(GenICam::IGenICamDoc& document) {
    auto json = nlohmann::ordered_json::array();
    document.for_each_node([&](GenICam::INode* node) {
        json.push_back({{"name", node->get_name()}, {"dependents", node->get_eval()->get_dependent_count()}});
    });
    return json;
}

nlohmann::ordered_json as_json(const description& opened, const std::string& what) {
    nlohmann::ordered_json json;
    json["command"] = "dump";
    json["file"] = opened.path();
    json["what"] = what;
    if (what == dump_nodes) {
        json["nodes"] = nodes_json(*opened.document());
    } else {
        const node_counts counts = count_nodes(opened.tree());
        json["elements"] = elements_json(counts);
        json["classes"] = classes_json(counts);
    }
    return json;
}

void print_statistics(std::ostream& out, GenICam::IGenICamDoc& document) {
    std::istringstream lines(document.dump(statistics_mode));
    for (std::string line; std::getline(lines, line);) write_line(out, line);
}

// A name may hold a line break of its own, which is not the end of its line.
void print_nodes(std::ostream& out, GenICam::IGenICamDoc& document) {
    const std::string text = document.dump(node_list_mode);
    std::size_t start = 0;
    document.for_each_node([&](GenICam::INode* node) {
        const std::string_view name = node->get_name();
        const std::size_t end = text.find('\n', text.find(name, start) + name.size());
        write_line(out, std::string_view(text).substr(start, end - start));
        start = end + 1;
    });
}

}  // namespace

int dump(const dump_options& options, const channels& to) {
    const auto opened = open_loaded(options.file);
    if (to.json) {
        write_json(to.out, as_json(*opened, options.what));
    } else if (options.what == dump_statistics) {
        print_statistics(to.out, *opened->document());
    } else {
        print_nodes(to.out, *opened->document());
    }
    return exit_code::fine;
}

}  // namespace selvane_inspect
