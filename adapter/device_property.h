#pragma once

#include "platform/com.h"
#include "wire/device_set.h"

namespace genicam_adapter {

/// Set of the device set. The interface has no const, but the driver only reads what it is sent.
[[nodiscard]] inline HRESULT set_device_property(IKsPropertySet& filter, DWORD property, void* instance,
                                                 DWORD instance_size, const void* data, DWORD data_size) {
    void* const sent = const_cast<void*>(data);  // NOLINT(cppcoreguidelines-pro-type-const-cast)
    return filter.Set(wire::device_set, property, instance, instance_size, sent, data_size);
}

}  // namespace genicam_adapter
