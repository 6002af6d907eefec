#pragma once

#include "propui/page_layout.h"

#include <vector>

namespace ZELPropUI {

/// The records that a page shows, one for an item id at most, in the order of its rows: by id, not by table.
[[nodiscard]] std::vector<const ZELAdapterHelper::ItemRecord*> ChooseItems(const PageSources& sources);

}  // namespace ZELPropUI
