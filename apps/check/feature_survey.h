#pragma once

#include "adapter/genicam_adapter_device.h"
#include "apps/check/driver_watch.h"
#include "apps/check/register_names.h"

namespace selvane_check {

/// Asks one marked feature after the other for its state, its value and its limits, over the access path that
/// the adapter has. What the driver refuses is told by the watch, what no page can show here.
void survey_features(driver_watch& driver, finding_book& findings,
                     genicam_adapter::GenICamAdapterDevice& adapter, const register_names& registers);

}  // namespace selvane_check
