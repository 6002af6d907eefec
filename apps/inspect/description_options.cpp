#include "apps/inspect/description_options.h"

#include "apps/inspect/inspect_error.h"
#include "apps/inspect/similar_name.h"

#include <CLI/CLI.hpp>

namespace selvane_inspect {

void add_file(CLI::App& command, std::string& file) {
    command.add_option("FILE", file, "A device description")->required()->type_name("");
}

void add_description_options(CLI::App& command, description_options& options) {
    add_file(command, options.file);
    add_memory_options(command, options.memory);
}

std::unique_ptr<description> open(const description_options& options) {
    std::unique_ptr<description> opened = open_loaded(options.file);
    fill_memory(options.memory, opened->memory());
    return opened;
}

std::vector<GenICam::INode*> find_features(const description& in, const std::vector<std::string>& names) {
    std::vector<GenICam::INode*> found;
    for (const std::string& name : names) {
        GenICam::INode* node = in.document()->find_node(name);
        if (node == nullptr) {
            std::vector<std::string_view> known;
            for (const node_element& element : in.tree().elements()) {
                if (element.made != nullptr) known.push_back(element.name);
            }
            const std::string_view meant = find_similar(name, known);
            throw wrong_use(in.path() + " has no feature " + name +
                            (meant.empty() ? "" : " (did you mean " + std::string(meant) + "?)"));
        }
        found.push_back(node);
    }
    return found;
}

}  // namespace selvane_inspect
