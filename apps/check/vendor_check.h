#pragma once

#include "apps/check/driver_watch.h"

namespace selvane_check {

/// Reads every vendor property that leads to a control and that the driver supports, and tells which answers
/// keep an item off the pages or empty.
void check_vendor_properties(driver_watch& driver, finding_book& findings);

}  // namespace selvane_check
