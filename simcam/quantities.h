#pragma once

#include "simcam/vendor_model.h"

namespace simcam {

/// Where a driver shows a quantity.
enum class view_source { integer, real, camera_control, video_proc_amp };

/// Exposure, its automatic limit and gain each show in several properties. After one of them was set, this
/// gives the others the same value, in their units and limits, and the same mode. Any other property is left
/// alone.
void follow_view(vendor_model& model, view_source source, LONG id);

/// Whether the quantity behind an integer property is in automatic mode; false for a property that shows
/// none.
[[nodiscard]] bool is_quantity_automatic(const vendor_model& model, LONG id);

}  // namespace simcam
