#include "simcam/call_reading.h"

#include "wire/device_set.h"

#include <algorithm>
#include <cstring>

namespace simcam {
namespace {

constexpr std::size_t kept_bytes = 0x10000;

bool read_path(const bytes& request, std::string& path) {
    const char* const found =
        selvane_read_named_request(request.data(), static_cast<std::uint32_t>(request.size()));
    if (found != nullptr) path = found;
    return found != nullptr;
}

}  // namespace

bytes copy_of(const void* data, DWORD size) {
    if (data == nullptr) return {};
    const auto* first = static_cast<const std::uint8_t*>(data);
    return {first, first + std::min<std::size_t>(size, kept_bytes)};
}

bool read_instance(driver_call& call) {
    if (call.set != wire::device_set) return true;
    if (call.id == SELVANE_NAMED_ACCESS) return read_path(call.instance, call.path);
    if (call.id == SELVANE_REGISTER_ACCESS) {
        if (call.instance.size() < sizeof(call.address)) return false;
        std::memcpy(&call.address, call.instance.data(), sizeof(call.address));
    }
    return true;
}

}  // namespace simcam
