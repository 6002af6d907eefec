#include "adapter/named_access.h"

#include "adapter/device_property.h"

#include <algorithm>
#include <vector>

namespace genicam_adapter {
namespace {

std::vector<char> make_request(named_path path) {
    std::size_t size = selvane_named_request_size(0);
    for (const std::string_view part : path) size += part.size();
    std::vector<char> request(size);
    auto end = request.begin() + SELVANE_NAMED_PATH_OFFSET;
    for (const std::string_view part : path) end = std::copy(part.begin(), part.end(), end);
    return request;
}

}  // namespace

HRESULT get_named_property(IKsPropertySet* filter, named_path path, void* buffer, DWORD size) {
    if (filter == nullptr) return E_NOINTERFACE;
    std::vector<char> request = make_request(path);
    DWORD returned = 0;
    return filter->Get(wire::device_set, SELVANE_NAMED_ACCESS, request.data(),
                       static_cast<DWORD>(request.size()), buffer, size, &returned);
}

HRESULT set_named_property(IKsPropertySet* filter, named_path path, const void* data, DWORD size) {
    if (filter == nullptr) return E_NOINTERFACE;
    std::vector<char> request = make_request(path);
    return set_device_property(*filter, SELVANE_NAMED_ACCESS, request.data(),
                               static_cast<DWORD>(request.size()), data, size);
}

HRESULT set_named_value(IKsPropertySet* filter, named_path path, std::uint64_t value) {
    return set_named_property(filter, path, &value, sizeof(value));
}

bool get_named_bool(IKsPropertySet* filter, named_path path) {
    std::uint64_t value = 0;
    return SUCCEEDED(get_named_value(filter, path, value)) && value != 0;
}

}  // namespace genicam_adapter
