#include "apps/inspect/commands.h"
#include "genicam/ieval.h"
#include "inspection/description.h"

#include <algorithm>
#include <map>
#include <sstream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

using nlohmann::ordered_json;

/// How many nodes of each class a description has.
struct class_count {
    const GenICam::node_class* made = nullptr;
    std::uint64_t count = 0;
};

// What a description consists of, by names in order; classes that do not occur with a count of 0.
void put_counts(ordered_json& json, const description_tree& tree) {
    std::map<std::string, std::uint64_t> elements;
    std::map<std::string_view, class_count> classes;
    for (const GenICam::node_class& known : GenICam::all_node_classes()) classes[known.name].made = &known;
    for (const node_element& element : tree.elements()) {
        if (element.made == nullptr) continue;
        ++elements[element.xml.name()];
        ++classes[element.made->name].count;
    }
    json["elements"] = elements;
    json["classes"] = ordered_json::array();
    for (const auto& [name, counted] : classes) {
        json["classes"].push_back({{"name", name},
                                   {"count", counted.count},
                                   {"size", counted.made->size},
                                   {"destructor", counted.made->has_destructor}});
    }
}

constexpr std::string_view standard_words[] = {"None", "IIDC", "GEV", "CL", "U3V", "CXP", "CLHS"};

std::string version_of(GenICam::IGenICamDoc& document) {
    return fmt::format("{}.{}.{}", document.get_major_version(), document.get_minor_version(),
                       document.get_subminor_version());
}

// The engine reads every version of the schema alike, and so does not look at it.
std::string schema_of(pugi::xml_node root) {
    const char* const major = root.attribute("SchemaMajorVersion").value();
    if (*major == 0) return {};
    return fmt::format("{}.{}.{}", major, root.attribute("SchemaMinorVersion").value(),
                       root.attribute("SchemaSubMinorVersion").value());
}

std::uint64_t count_nodes(const description_tree& tree) {
    const auto& elements = tree.elements();
    return static_cast<std::uint64_t>(
        std::count_if(elements.begin(), elements.end(),
                      [](const node_element& element) { return element.made != nullptr; }));
}

ordered_json info_json(const description& opened) {
    GenICam::IGenICamDoc& document = *opened.document();
    ordered_json json;
    json["command"] = "info";
    json["file"] = opened.path();
    json["vendor"] = document.get_vendor_name();
    json["model"] = document.get_model_name();
    json["tool_tip"] = document.get_tooltip();
    json["version"] = version_of(document);
    json["schema"] = schema_of(opened.tree().root());
    json["standard"] = standard_words[static_cast<std::size_t>(document.get_standard_name_space())];
    json["bytes"] = opened.source().bytes().size();
    json["nodes"] = count_nodes(opened.tree());
    json["memory"]["text"] = opened.source().bytes().size();
    json["memory"]["nodes"] = opened.tree().arena_bytes();
    json["load_microseconds"] = opened.load_time().count();
    json["load_messages"] = opened.load_messages().size();
    put_counts(json, opened.tree());
    return json;
}

void print_counts(std::ostream& out, const ordered_json& counts) {
    out << "\nelements" << fmt::format("{:>37}\n", "count");
    for (const auto& [name, count] : counts["elements"].items())
        write_line(out, fmt::format("    {:<34} {:>6}", name, count.get<std::uint64_t>()));
    out << "\nclasses" << fmt::format("{:>38} {:>14}\n", "count", "bytes each");
    for (const ordered_json& one : counts["classes"]) {
        if (one["count"] == 0) continue;
        out << fmt::format("    {:<34} {:>6} {:>14}\n", one["name"].get<std::string>(),
                           one["count"].get<std::uint64_t>(), one["size"].get<std::uint64_t>());
    }
}

struct info_line {
    const char* title;
    const char* key;
};
constexpr info_line info_lines[] = {{"file", "file"},         {"vendor", "vendor"},   {"model", "model"},
                                    {"tool tip", "tool_tip"}, {"version", "version"}, {"schema", "schema"},
                                    {"standard", "standard"}};

void print_info(std::ostream& out, const ordered_json& info) {
    const auto line = [&](std::string_view what, const std::string& is) {
        write_line(out, fmt::format("{:<14}{}", what, is.empty() ? "-" : is));
    };
    for (const info_line& one : info_lines) line(one.title, info[one.key].get<std::string>());
    const auto nodes = info["nodes"].get<std::uint64_t>();
    const auto arena = info["memory"]["nodes"].get<std::uint64_t>();
    line("nodes", std::to_string(nodes));
    line("memory", fmt::format("{} bytes of text, {} bytes of nodes ({} a node)",
                               info["bytes"].get<std::uint64_t>(), arena, nodes != 0 ? arena / nodes : 0));
    line("load time", fmt::format("{:.3f} ms", info["load_microseconds"].get<double>() / 1000));
    line("messages", fmt::format("{} while loading", info["load_messages"].get<std::uint64_t>()));
    print_counts(out, info);
}

constexpr std::int32_t statistics_mode = 0;
constexpr std::int32_t node_list_mode = 1;

ordered_json dump_json(const description& opened, const std::string& what) {
    ordered_json json = {{"command", "dump"}, {"file", opened.path()}, {"what", what}};
    if (what != dump_nodes) {
        put_counts(json, opened.tree());
        return json;
    }
    json["nodes"] = ordered_json::array();
    opened.document()->for_each_node([&](GenICam::INode* node) {
        json["nodes"].push_back(
            {{"name", node->get_name()}, {"dependents", node->get_eval()->get_dependent_count()}});
    });
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

int info(const info_options& options, const channels& to) {
    const auto opened = open_loaded(options.file);
    const ordered_json json = info_json(*opened);
    if (to.json) {
        write_json(to.out, json);
    } else {
        print_info(to.out, json);
    }
    return exit_code::fine;
}

int dump(const dump_options& options, const channels& to) {
    const auto opened = open_loaded(options.file);
    if (to.json) {
        write_json(to.out, dump_json(*opened, options.what));
    } else if (options.what == dump_statistics) {
        print_statistics(to.out, *opened->document());
    } else {
        print_nodes(to.out, *opened->document());
    }
    return exit_code::fine;
}

}  // namespace selvane_inspect
