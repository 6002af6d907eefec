#pragma once

#include "genicam/core/error.h"

#include <cstdint>
#include <system_error>

namespace test_support {

inline std::error_code code(std::uint32_t value) { return GenICam::make_error_code(value); }

}  // namespace test_support
