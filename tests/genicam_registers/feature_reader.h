#pragma once

#include "genicam/genicam_doc.h"
#include "genicam/idevice_port.h"

#include <cstdint>
#include <string>
#include <vector>

namespace register_test {

/// A device whose memory is a function of the address: nothing but zeros, or a pattern made from a seed.
/// Remembers what it was asked.
class patterned_device final : public GenICam::IDevicePort {
public:
    struct access {
        std::uint64_t address;
        std::int64_t length;
        bool operator==(const access& other) const {
            return address == other.address && length == other.length;
        }
    };

    /// Seed 0 makes zeros.
    explicit patterned_device(std::uint64_t seed) : seed_(seed) {}
    std::error_code read(std::uint64_t address, void* buffer, std::int64_t length,
                         std::uint32_t flags) override;
    /// Refused: reading must not write.
    std::error_code write(std::uint64_t address, const void* buffer, std::int64_t length,
                          std::uint32_t flags) override;

    std::vector<access> accesses;
    int writes = 0;

private:
    std::uint64_t seed_;
};

/// Binds the device to every port that takes one, and a block of the same pattern to every other.
void bind_ports(GenICam::IGenICamDoc& doc, patterned_device& device, std::vector<unsigned char>& block);

/// Asks the node for everything that reading can tell, whatever comes of it. Gives all answers as one text,
/// to be compared with those of another time.
std::string read_feature(GenICam::INode& node, std::uint32_t flags);

}  // namespace register_test
