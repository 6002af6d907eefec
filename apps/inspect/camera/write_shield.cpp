#include "apps/inspect/camera/write_shield.h"

namespace selvane_inspect {

std::error_code write_shield::read(std::uint64_t address, void* buffer, std::int64_t length,
                                   std::uint32_t flags) {
    if (const std::error_code failure = device_.read(address, buffer, length, flags)) return failure;
    auto* const bytes = static_cast<std::uint8_t*>(buffer);
    const auto size = static_cast<std::uint64_t>(length);
    for (auto at = written_.lower_bound(address); at != written_.end() && at->first - address < size; ++at)
        bytes[at->first - address] = at->second;
    return {};
}

std::error_code write_shield::write(std::uint64_t address, const void* buffer, std::int64_t length,
                                    std::uint32_t) {
    const auto* const bytes = static_cast<const std::uint8_t*>(buffer);
    for (std::int64_t at = 0; at < length; ++at)
        written_[address + static_cast<std::uint64_t>(at)] = bytes[at];
    return {};
}

}  // namespace selvane_inspect
