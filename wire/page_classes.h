#pragma once

#include "platform/guid.h"
#include "wire/selvane_driver.h"

#include <array>

namespace wire {

constexpr CLSID exposure_page = SELVANE_EXPOSURE_PAGE;
constexpr CLSID feature_page = SELVANE_FEATURE_PAGE;
constexpr CLSID lens_page = SELVANE_LENS_PAGE;
constexpr CLSID color_page = SELVANE_COLOR_PAGE;

/// In the order in which a driver names them and hosts show them.
constexpr std::array<CLSID, 4> page_classes = {{exposure_page, feature_page, lens_page, color_page}};

}  // namespace wire
