#pragma once

#include "adapter/item_discovery.h"
#include "apps/inspect/description.h"

#include <vector>

namespace selvane_inspect {

/// The items that the pages find, in their order; none without a Root that is a category.
[[nodiscard]] std::vector<genicam_adapter::item_candidate> find_items(const description& in);

/// The categories of items, each once however often it is listed.
[[nodiscard]] std::vector<GenICam::ICategory*> categories_of(
    const std::vector<genicam_adapter::item_candidate>& items);

}  // namespace selvane_inspect
