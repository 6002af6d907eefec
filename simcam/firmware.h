#pragma once

#include <cstdint>

namespace simcam {

class register_memory;

/// Register addresses of the bundled description that the camera itself acts on. Numbers are big-endian.
namespace firmware_register {
constexpr std::uint64_t status = 0x0100;       ///< 4 bytes, little-endian; bit 0: may be changed
constexpr std::uint64_t temperature = 0x0110;  ///< 2 bytes, signed, 1/100 degree
constexpr std::uint64_t frame_counter = 0x0114;
constexpr std::uint64_t user_set_command = 0x0120;
constexpr std::uint64_t reset = 0x0124;
constexpr std::uint64_t sensor_width = 0x1100;
constexpr std::uint64_t sensor_height = 0x1104;
constexpr std::uint64_t width = 0x1108;
constexpr std::uint64_t height = 0x110C;
constexpr std::uint64_t offset_x = 0x1110;
constexpr std::uint64_t offset_y = 0x1114;
constexpr std::uint64_t auto_center = 0x1118;
constexpr std::uint64_t trigger = 0x1200;  ///< 4 bytes, little-endian; bit 0: on
constexpr std::uint64_t software_trigger = 0x1208;
constexpr std::uint64_t zoom = 0x1308;  ///< 2 bytes, little-endian
constexpr std::uint64_t lens_command = 0x1310;
constexpr std::uint64_t look_up_table = 0x2000;  ///< 256 entries of 2 bytes, little-endian
}  // namespace firmware_register

/// Makes the registers of the bundled description behave like a camera's. Identity, status and limits can
/// only be read; reset and software trigger only written. The temperature climbs by 0.01 degree at each read
/// and falls back at 40; the frame counter counts its reads, and the software triggers that came while the
/// trigger was on. Commands for the lens and the user sets clear themselves. While auto-center is on the
/// offsets follow the size.
void install_firmware(register_memory& memory);

}  // namespace simcam
