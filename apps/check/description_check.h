#pragma once

#include "apps/check/driver_watch.h"
#include "apps/check/register_names.h"

#include <string>
#include <vector>

namespace selvane_check {

/// The descriptions that pages would get.
struct fetched_descriptions {
    std::size_t count = 0;
    bool usable = true;      ///< no page would fall over them
    bool survivable = true;  ///< nor over what they ask of registers
    register_names registers;
};

/// Fetches the descriptions as pages do, and tells what is wrong with them and on the way.
[[nodiscard]] fetched_descriptions check_descriptions(driver_watch& driver, finding_book& findings);

}  // namespace selvane_check
