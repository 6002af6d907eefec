#pragma once

#include "simcam/register_memory.h"

#include <cstdint>
#include <string>
#include <system_error>
#include <vector>

namespace selvane_inspect {

/// One access of the engine to the registers.
struct port_access {
    bool is_write;
    std::uint64_t address;
    simcam::bytes data;  ///< what was read or written
    std::error_code failure;
};

/// "0x1000"
[[nodiscard]] std::string address_text(std::uint64_t address);
/// "00 00 01 2C"
[[nodiscard]] std::string bytes_text(const simcam::bytes& data);
/// "read 0x1000 4: 00 00 01 2C"
[[nodiscard]] std::string access_text(const port_access& access);

/// The port behind a description: hands everything to the memory and notes what came by.
class traced_port final : public GenICam::IDevicePort {
public:
    explicit traced_port(simcam::register_memory& memory) : memory_(memory) {}

    [[nodiscard]] std::error_code read(std::uint64_t address, void* buffer, std::int64_t length,
                                       std::uint32_t flags) override;
    [[nodiscard]] std::error_code write(std::uint64_t address, const void* buffer, std::int64_t length,
                                        std::uint32_t flags) override;

    /// The accesses since the last time.
    [[nodiscard]] std::vector<port_access> take();

private:
    void note(bool is_write, std::uint64_t address, const void* data, std::int64_t length,
              std::error_code failure);

    simcam::register_memory& memory_;
    std::vector<port_access> accesses_;
};

}  // namespace selvane_inspect
