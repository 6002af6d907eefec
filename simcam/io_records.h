#pragma once

#include "platform/guid.h"

#include <cstddef>
#include <cstdint>

namespace simcam {

/// The property set of the colour enhancement switch, property 0.
constexpr GUID color_enhancement_set = {
    0x8CBCF1C6, 0x53C3, 0x4D79, {0x8E, 0xDB, 0xC0, 0x64, 0x65, 0x75, 0xDA, 0xC8}};

/// The record of the digital inputs and outputs.
struct gpio_record {
    std::uint8_t header[24];
    std::int32_t input;
    std::int32_t output;
    std::int32_t input_max;   ///< 0: no inputs
    std::int32_t output_max;  ///< 0: no outputs
};
static_assert(sizeof(gpio_record) == 40);
static_assert(offsetof(gpio_record, output_max) == 36);

struct strobe_record {
    std::uint8_t header[24];
    std::int32_t enable;
    std::int32_t delay, delay_min, delay_max, delay_default;
    std::int32_t duration, duration_min, duration_max, duration_default;
    std::int32_t polarity;
    std::int32_t unused_1;
    std::int32_t follow_exposure;
    std::int32_t unused_2;
    std::int32_t restrictions;
    std::int32_t unused_3[2];
};
static_assert(sizeof(strobe_record) == 88);
static_assert(offsetof(strobe_record, delay) == 28);
static_assert(offsetof(strobe_record, duration) == 44);
static_assert(offsetof(strobe_record, polarity) == 60);
static_assert(offsetof(strobe_record, follow_exposure) == 68);
static_assert(offsetof(strobe_record, restrictions) == 76);

}  // namespace simcam
