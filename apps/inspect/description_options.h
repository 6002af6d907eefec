#pragma once

#include "apps/inspect/memory_options.h"
#include "inspection/description.h"

#include <memory>
#include <string>
#include <vector>

namespace selvane_inspect {

/// One description over registers, as the command line says.
struct description_options {
    std::string file;
    memory_options memory;
};

/// Loads the description and fills its registers. Throws `inspect_error`.
[[nodiscard]] std::unique_ptr<description> open(const description_options& options);

/// Fills the registers of a description that is loaded. Writes a default past access mode and range, as a
/// camera does when it is switched on, but not where the engine would not survive it.
void prepare(description& loaded, const memory_options& options);

/// The node of that name. Throws `inspect_error` for an unknown one, with the name that may have been meant.
[[nodiscard]] GenICam::INode* find_feature(const description& in, const std::string& name);
/// The same for several.
[[nodiscard]] std::vector<GenICam::INode*> find_features(const description& in,
                                                         const std::vector<std::string>& names);

}  // namespace selvane_inspect
