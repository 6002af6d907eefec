#include "apps/inspect/commands.h"
#include "apps/inspect/description.h"
#include "apps/inspect/node_counts.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

constexpr std::string_view standard_words[] = {"None", "IIDC", "GEV", "CL", "U3V", "CXP", "CLHS"};

std::string_view standard_of(GenICam::IGenICamDoc& document) {
    return standard_words[static_cast<std::size_t>(document.get_standard_name_space())];
}

std::string version_of(GenICam::IGenICamDoc& document) {
    return fmt::format("{}.{}.{}", document.get_major_version(), document.get_minor_version(),
                       document.get_subminor_version());
}

// The engine reads every version of the schema alike, and so does not look at it.
std::string schema_of(const description& opened) {
    const pugi::xml_node root = opened.tree().root();
    const char* const major = root.attribute("SchemaMajorVersion").value();
    if (*major == 0) return {};
    return fmt::format("{}.{}.{}", major, root.attribute("SchemaMinorVersion").value(),
                       root.attribute("SchemaSubMinorVersion").value());
}

std::uint64_t bytes_a_node(std::uint64_t bytes, std::uint64_t nodes) {
    return nodes != 0 ? bytes / nodes : 0;
}

nlohmann::ordered_json as_json(const description& opened, const node_counts& counts) {
    GenICam::IGenICamDoc& document = *opened.document();
    nlohmann::ordered_json json;
    json["command"] = "info";
    json["file"] = opened.path();
    json["vendor"] = document.get_vendor_name();
    json["model"] = document.get_model_name();
    json["tool_tip"] = document.get_tooltip();
    json["version"] = version_of(document);
    json["schema"] = schema_of(opened);
    json["standard"] = standard_of(document);
    json["bytes"] = opened.source().bytes().size();
    json["nodes"] = counts.nodes;
    json["memory"]["text"] = opened.source().bytes().size();
    json["memory"]["nodes"] = opened.tree().arena_bytes();
    json["load_microseconds"] = opened.load_time().count();
    json["load_messages"] = opened.load_messages().size();
    json["elements"] = elements_json(counts);
    json["classes"] = classes_json(counts);
    return json;
}

void print_counts(std::ostream& out, const node_counts& counts) {
    out << "\nelements" << fmt::format("{:>37}\n", "count");
    for (const auto& [name, count] : counts.elements)
        write_line(out, fmt::format("    {:<34} {:>6}", name, count));
    out << "\nclasses" << fmt::format("{:>38} {:>14}\n", "count", "bytes each");
    for (const auto& [name, counted] : counts.classes) {
        if (counted.count == 0) continue;
        out << fmt::format("    {:<34} {:>6} {:>14}\n", name, counted.count, counted.made->size);
    }
}

void print(std::ostream& out, const description& opened, const node_counts& counts) {
    GenICam::IGenICamDoc& document = *opened.document();
    const auto line = [&](std::string_view what, const std::string& is) {
        write_line(out, fmt::format("{:<14}{}", what, is.empty() ? "-" : is));
    };
    const std::uint64_t arena = opened.tree().arena_bytes();
    line("file", opened.path());
    line("vendor", std::string(document.get_vendor_name()));
    line("model", std::string(document.get_model_name()));
    line("tool tip", std::string(document.get_tooltip()));
    line("version", version_of(document));
    line("schema", schema_of(opened));
    line("standard", std::string(standard_of(document)));
    line("nodes", std::to_string(counts.nodes));
    line("memory", fmt::format("{} bytes of text, {} bytes of nodes ({} a node)",
                               opened.source().bytes().size(), arena, bytes_a_node(arena, counts.nodes)));
    line("load time", fmt::format("{:.3f} ms", static_cast<double>(opened.load_time().count()) / 1000));
    line("messages", fmt::format("{} while loading", opened.load_messages().size()));
    print_counts(out, counts);
}

}  // namespace

int info(const info_options& options, const channels& to) {
    const auto opened = open_loaded(options.file);
    const node_counts counts = count_nodes(opened->tree());
    if (to.json) {
        write_json(to.out, as_json(*opened, counts));
    } else {
        print(to.out, *opened, counts);
    }
    return exit_code::fine;
}

}  // namespace selvane_inspect
