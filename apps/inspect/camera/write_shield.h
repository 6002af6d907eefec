#pragma once

#include "genicam/idevice_port.h"

#include <cstdint>
#include <map>

namespace selvane_inspect {

/// A device that is read and never written: what is written stays here, and is read back from here.
class write_shield final : public GenICam::IDevicePort {
public:
    explicit write_shield(GenICam::IDevicePort& device) : device_(device) {}

    [[nodiscard]] std::error_code read(std::uint64_t address, void* buffer, std::int64_t length,
                                       std::uint32_t flags) override;
    [[nodiscard]] std::error_code write(std::uint64_t address, const void* buffer, std::int64_t length,
                                        std::uint32_t flags) override;

    /// Reads are the device's again.
    void forget() noexcept { written_.clear(); }

private:
    GenICam::IDevicePort& device_;
    std::map<std::uint64_t, std::uint8_t> written_;
};

}  // namespace selvane_inspect
