#pragma once

#include "simcam/register_memory.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace selvane_inspect {

/// What the registers hold, as the command line says. Zero where it says nothing.
struct memory_options {
    std::vector<std::string> images;     ///< FILE@ADDRESS: bytes; FILE: lines "address: contents"
    std::vector<std::string> registers;  ///< ADDRESS=BYTES
    bool defaults = false;               ///< whether features begin with the defaults that they state
};

/// Puts everything into the memory in the order images, registers. Throws `inspect_error`.
void fill_memory(const memory_options& options, simcam::register_memory& memory);

/// Writes the memory to a file in the form that --memory takes: FILE@ADDRESS as bytes from that address to
/// the last one that is not zero, and no less than the image that was read there; FILE as lines. Throws
/// `inspect_error`.
void save_memory(const std::string& argument, const memory_options& options,
                 const simcam::register_memory& memory);

/// A decimal number, or a hexadecimal one behind 0x; nothing else.
[[nodiscard]] std::optional<std::uint64_t> parse_address(std::string_view text);

/// Bytes in hexadecimal, with or without blanks between them.
[[nodiscard]] std::optional<simcam::bytes> parse_bytes(std::string_view text);

}  // namespace selvane_inspect
