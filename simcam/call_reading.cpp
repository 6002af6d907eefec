#include "simcam/call_reading.h"

#include "adapter/device_property_set.h"

#include <algorithm>
#include <cstring>

namespace simcam {
namespace {

using namespace genicam_adapter;

constexpr std::size_t kept_bytes = 0x10000;

// The reserved bytes must be zero and the path terminated inside the request.
bool read_path(const bytes& request, std::string& path) {
    if (request.size() < named_property_request::size_without_path) return false;
    const auto start = request.begin() + named_property_request::path_offset;
    if (std::any_of(request.begin(), start, [](std::uint8_t byte) { return byte != 0; })) return false;
    const auto end = std::find(start, request.end(), std::uint8_t{0});
    path.assign(start, end);
    return end != request.end();
}

}  // namespace

bytes copy_of(const void* data, DWORD size) {
    if (data == nullptr) return {};
    const auto* first = static_cast<const std::uint8_t*>(data);
    return {first, first + std::min<std::size_t>(size, kept_bytes)};
}

bool read_instance(driver_call& call) {
    if (call.set != device_property_set) return true;
    if (call.id == device_property::named_access) return read_path(call.instance, call.path);
    if (call.id == device_property::register_access) {
        if (call.instance.size() < sizeof(call.address)) return false;
        std::memcpy(&call.address, call.instance.data(), sizeof(call.address));
    }
    return true;
}

}  // namespace simcam
