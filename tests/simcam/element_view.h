#pragma once

#include "tests/simcam/page_view.h"

#include <string>
#include <vector>

namespace simcam_test {

/// A marked feature with the item that serves it.
struct element {
    std::string name;
    platform::com_ptr<ZELAdapterHelper::CZELItemDataBase> item;
    ZELAdapterHelper::InterfaceKey key;
    ZELAdapterHelper::InterfaceType type;
};

/// All marked features of a camera, in the order of its item table.
[[nodiscard]] std::vector<element> elements_of(camera_on_pages& seen);

/// Everything that a page shows of an element, with the results of asking for it.
[[nodiscard]] std::string view_of(const element& shown);
[[nodiscard]] std::vector<std::string> view_of(const std::vector<element>& shown);

}  // namespace simcam_test
