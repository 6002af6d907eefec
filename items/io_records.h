#pragma once

#include <cstddef>
#include <cstdint>

namespace ZELAdapterHelper {

/// The record of the digital inputs and outputs.
struct GpioRecord {
    std::uint8_t header[24];
    std::int32_t input;
    std::int32_t output;
    std::int32_t max_input;   ///< 0: no inputs
    std::int32_t max_output;  ///< 0: no outputs
};
static_assert(sizeof(GpioRecord) == 40);
static_assert(offsetof(GpioRecord, input) == 24);
static_assert(offsetof(GpioRecord, output) == 28);
static_assert(offsetof(GpioRecord, max_input) == 32);
static_assert(offsetof(GpioRecord, max_output) == 36);

/// The record of the strobe.
struct StrobeRecord {
    std::uint8_t header[24];
    std::uint32_t enable;
    std::int32_t delay;
    std::int32_t delay_min;
    std::int32_t delay_max;
    std::int32_t delay_default;
    std::int32_t duration;
    std::int32_t duration_min;
    std::int32_t duration_max;
    std::int32_t duration_default;
    std::uint32_t polarity;
    std::uint32_t unused_64;
    std::uint32_t follow_exposure;
    std::uint32_t unused_72;
    std::uint32_t restrictions;
    std::uint8_t unused_80[8];
};
static_assert(sizeof(StrobeRecord) == 88);
static_assert(offsetof(StrobeRecord, enable) == 24);
static_assert(offsetof(StrobeRecord, delay) == 28);
static_assert(offsetof(StrobeRecord, duration) == 44);
static_assert(offsetof(StrobeRecord, polarity) == 60);
static_assert(offsetof(StrobeRecord, follow_exposure) == 68);
static_assert(offsetof(StrobeRecord, restrictions) == 76);

}  // namespace ZELAdapterHelper
