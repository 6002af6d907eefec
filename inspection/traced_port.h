#pragma once

#include "genicam/idevice_port.h"
#include "simcam/register_memory.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <ostream>
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
    std::optional<std::chrono::nanoseconds> took;  ///< of a camera
};

/// "0x1000"
[[nodiscard]] std::string address_text(std::uint64_t address);
/// "00 00 01 2C"
[[nodiscard]] std::string bytes_text(const simcam::bytes& data);
[[nodiscard]] double microseconds(std::chrono::nanoseconds time);
/// "read 0x1000 4: 00 00 01 2C", of a camera with the time that it took: "(16 us)"
[[nodiscard]] std::string access_text(const port_access& access);

/// The port behind a description: hands everything to the memory, or to a camera, and notes what came by.
class traced_port final : public GenICam::IDevicePort {
public:
    explicit traced_port(simcam::register_memory& memory) : device_(&memory) {}

    /// From now on there is this camera in the place of the memory; each access is told in a line as it comes
    /// by, where there is a stream for that. Both outlive the port.
    void lead_to(GenICam::IDevicePort& camera, std::ostream* told_to = nullptr) noexcept {
        device_ = &camera;
        told_to_ = told_to;
        is_live_ = true;
    }
    [[nodiscard]] bool is_live() const noexcept { return is_live_; }

    [[nodiscard]] std::error_code read(std::uint64_t address, void* buffer, std::int64_t length,
                                       std::uint32_t flags) override;
    [[nodiscard]] std::error_code write(std::uint64_t address, const void* buffer, std::int64_t length,
                                        std::uint32_t flags) override;

    /// The accesses since the last time.
    [[nodiscard]] std::vector<port_access> take();

private:
    using time_point = std::chrono::steady_clock::time_point;
    void note(bool is_write, std::uint64_t address, const void* data, std::int64_t length,
              std::error_code failure, time_point start);

    GenICam::IDevicePort* device_;
    std::ostream* told_to_ = nullptr;
    bool is_live_ = false;
    std::vector<port_access> accesses_;
};

}  // namespace selvane_inspect
