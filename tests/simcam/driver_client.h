#pragma once

#include "simcam/simulated_camera.h"
#include "wire/device_set.h"

#include <cstdint>
#include <cstring>
#include <string_view>

namespace simcam_test {

using simcam::bytes;

struct answer {
    HRESULT result;
    DWORD returned;
    bytes data;
};

/// A `Get` with its own buffer for the data, filled with `fill` before.
inline answer get_property(simcam::simulated_camera& camera, REFGUID set, DWORD id, bytes instance,
                           std::size_t size, std::uint8_t fill = 0) {
    answer got = {E_FAIL, 0, bytes(size, fill)};
    got.result = camera.property_set()->Get(set, id, instance.data(), static_cast<DWORD>(instance.size()),
                                            got.data.data(), static_cast<DWORD>(size), &got.returned);
    return got;
}

inline HRESULT set_property(simcam::simulated_camera& camera, REFGUID set, DWORD id, bytes instance,
                            bytes data) {
    return camera.property_set()->Set(set, id, instance.data(), static_cast<DWORD>(instance.size()),
                                      data.data(), static_cast<DWORD>(data.size()));
}

template <class Value>
bytes bytes_of(const Value& value) {
    bytes made(sizeof(value));
    std::memcpy(made.data(), &value, sizeof(value));
    return made;
}

template <class Value>
Value value_of(const bytes& data) {
    Value value = {};
    if (data.size() >= sizeof(value)) std::memcpy(&value, data.data(), sizeof(value));
    return value;
}

inline bytes text_bytes(std::string_view text) { return bytes(text.begin(), text.end()); }

/// The instance data of named access: 8 zeros, the path, 64 zeros.
inline bytes path_request(std::string_view path) {
    bytes request(8);
    request.insert(request.end(), path.begin(), path.end());
    request.resize(request.size() + 64);
    return request;
}

inline answer get_path(simcam::simulated_camera& camera, std::string_view path, std::size_t size = 8) {
    return get_property(camera, wire::device_set, SELVANE_NAMED_ACCESS, path_request(path), size);
}

inline HRESULT set_path(simcam::simulated_camera& camera, std::string_view path, bytes data) {
    return set_property(camera, wire::device_set, SELVANE_NAMED_ACCESS, path_request(path), std::move(data));
}

inline answer get_register(simcam::simulated_camera& camera, std::uint64_t address, std::size_t size) {
    return get_property(camera, wire::device_set, SELVANE_REGISTER_ACCESS, bytes_of(address), size);
}

inline HRESULT set_register(simcam::simulated_camera& camera, std::uint64_t address, bytes data) {
    return set_property(camera, wire::device_set, SELVANE_REGISTER_ACCESS, bytes_of(address),
                        std::move(data));
}

constexpr HRESULT property_unknown = static_cast<HRESULT>(0x80070490);
constexpr HRESULT set_unknown = static_cast<HRESULT>(0x80070492);
constexpr HRESULT buffer_too_small = static_cast<HRESULT>(0x8007007A);

}  // namespace simcam_test
