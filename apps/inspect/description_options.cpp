#include "apps/inspect/description_options.h"

#include "apps/inspect/similar_name.h"
#include "inspection/evaluation_guard.h"
#include "inspection/inspect_error.h"
#include "simcam/feature_server.h"

namespace selvane_inspect {
namespace {

using GenICam::INode;

bool states_default(const description_tree& tree, element_index element) {
    const pugi::xml_node extension = tree.at(element).xml.child("Extension");
    return extension.child("Default") || extension.child("pDefault");
}

void write_default(INode& node, evaluation_guard& guard) {
    const bool answers = guard.find(node, operation::access) == nullptr &&
                         guard.find(node, operation::default_value) == nullptr;
    if (answers) static_cast<void>(guard.find_in_store(node, [&] { simcam::write_default(node); }));
}

}  // namespace

std::unique_ptr<description> open(const description_options& options) {
    std::unique_ptr<description> opened = open_loaded(options.file);
    prepare(*opened, options.memory);
    return opened;
}

void prepare(description& loaded, const memory_options& options) {
    const bool has_contents = !options.images.empty() || !options.registers.empty() || options.defaults;
    if (has_contents && loaded.port().is_live())
        throw wrong_use(
            "a camera has registers of its own: --memory, --register and --defaults are for files");
    fill_memory(options, loaded.memory());
    if (!options.defaults || loaded.document() == nullptr) return;
    evaluation_guard guard(loaded);
    for (element_index element = 0; element < loaded.tree().elements().size(); ++element) {
        INode* node = loaded.node_of(element);
        if (node != nullptr && states_default(loaded.tree(), element)) write_default(*node, guard);
    }
}

INode* find_feature(const description& in, const std::string& name) {
    if (INode* const node = in.document()->find_node(name)) return node;
    std::vector<std::string_view> known;
    for (const node_element& element : in.tree().elements()) {
        if (element.made != nullptr) known.push_back(element.name);
    }
    throw wrong_use(in.path() + " has no feature " + name + did_you_mean(name, known));
}

std::vector<INode*> find_features(const description& in, const std::vector<std::string>& names) {
    std::vector<INode*> found;
    found.reserve(names.size());
    for (const std::string& name : names) found.push_back(find_feature(in, name));
    return found;
}

}  // namespace selvane_inspect
