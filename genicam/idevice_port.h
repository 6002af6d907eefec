#pragma once

#include <cstdint>
#include <system_error>

namespace GenICam {

/// Register access to a device, as port nodes call it. Bytes are in the device's order; the flags are the
/// access flags of the call and may be ignored. Any failure code travels unchanged to the caller of `get_val`
/// or `set_val`.
class IDevicePort {
public:
    virtual ~IDevicePort() = default;
    /// Fills `buffer` with `length` bytes from `address`.
    [[nodiscard]] virtual std::error_code read(std::uint64_t address, void* buffer, std::int64_t length,
                                               std::uint32_t flags) = 0;
    [[nodiscard]] virtual std::error_code write(std::uint64_t address, const void* buffer,
                                                std::int64_t length, std::uint32_t flags) = 0;
};

}  // namespace GenICam
