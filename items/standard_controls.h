#pragma once

#include "items/item_contract.h"
#include "items/vendor_properties.h"

namespace ZELAdapterHelper {

// Helpers over IAMCameraControl and IAMVideoProcAmp, which have the same operations. Each takes the interface
// as it is held, null where the filter has none: that answers E_NOTIMPL. Failures leave out values alone.

constexpr LONG control_automatic = static_cast<LONG>(wire::automatic);
constexpr LONG control_manual = static_cast<LONG>(wire::manual);

/// `capabilities` tells the modes that the device has for the property.
template <class Control>
[[nodiscard]] HRESULT GetControlRange(Control* control, LONG property, RangeInfo& range, LONG& capabilities) {
    if (control == nullptr) {
        return E_NOTIMPL;
    }
    LONG min = 0;
    LONG max = 0;
    LONG step = 0;
    LONG default_value = 0;
    LONG flags = 0;
    const HRESULT hr = control->GetRange(property, &min, &max, &step, &default_value, &flags);
    if (SUCCEEDED(hr)) {
        range = {static_cast<std::int32_t>(min), static_cast<std::int32_t>(max),
                 static_cast<std::int32_t>(default_value), static_cast<std::int32_t>(step)};
        capabilities = flags;
    }
    return hr;
}

template <class Control>
[[nodiscard]] HRESULT GetControlRange(Control* control, LONG property, RangeInfo& range) {
    LONG capabilities = 0;
    return GetControlRange(control, property, range, capabilities);
}

/// The modes that the device has for a property; 0 where it cannot be asked.
template <class Control>
[[nodiscard]] LONG ControlCapabilities(Control* control, LONG property) {
    RangeInfo range;
    LONG capabilities = 0;
    return SUCCEEDED(GetControlRange(control, property, range, capabilities)) ? capabilities : 0;
}

template <class Control>
[[nodiscard]] HRESULT GetControl(Control* control, LONG property, LONG& value, LONG& flags) {
    if (control == nullptr) {
        return E_NOTIMPL;
    }
    LONG read_value = 0;
    LONG read_flags = 0;
    const HRESULT hr = control->Get(property, &read_value, &read_flags);
    if (SUCCEEDED(hr)) {
        value = read_value;
        flags = read_flags;
    }
    return hr;
}

template <class Control>
[[nodiscard]] HRESULT GetControlValue(Control* control, LONG property, std::int32_t& value) {
    LONG read_value = 0;
    LONG flags = 0;
    const HRESULT hr = GetControl(control, property, read_value, flags);
    if (SUCCEEDED(hr)) {
        value = static_cast<std::int32_t>(read_value);
    }
    return hr;
}

template <class Control>
[[nodiscard]] HRESULT GetControlAutomatic(Control* control, LONG property, bool& on) {
    LONG value = 0;
    LONG flags = 0;
    const HRESULT hr = GetControl(control, property, value, flags);
    if (SUCCEEDED(hr)) {
        on = (flags & control_automatic) != 0;
    }
    return hr;
}

template <class Control>
HRESULT SetControl(Control* control, LONG property, LONG value, LONG flags) {
    return control != nullptr ? control->Set(property, value, flags) : E_NOTIMPL;
}

/// What a write keeps of value and mode, and when a mode is written.
enum class ModeWrite : std::uint8_t {
    Always,    ///< keeps the other one of the two
    OnChange,  ///< the same, and a mode that is set already is not written
    Unread,    ///< reads nothing before: a value is written as manual, a mode with the value 0
};

/// Writes with the flags that the device has now, so that the mode stays.
template <class Control>
HRESULT SetControlValue(Control* control, LONG property, std::int32_t value,
                        ModeWrite when = ModeWrite::Always) {
    if (when == ModeWrite::Unread) {
        return SetControl(control, property, value, control_manual);
    }
    LONG old_value = 0;
    LONG flags = 0;
    const HRESULT hr = GetControl(control, property, old_value, flags);
    return SUCCEEDED(hr) ? control->Set(property, value, flags) : hr;
}

/// Changes the mode and writes the value back as it was read.
template <class Control>
HRESULT SetControlAutomatic(Control* control, LONG property, bool on, ModeWrite when) {
    const LONG wanted = on ? control_automatic : control_manual;
    if (when == ModeWrite::Unread) {
        return SetControl(control, property, 0, wanted);
    }
    LONG value = 0;
    LONG flags = 0;
    const HRESULT hr = GetControl(control, property, value, flags);
    if (FAILED(hr)) {
        return hr;
    }
    if (when == ModeWrite::OnChange && wanted == flags) {
        return hr;
    }
    return control->Set(property, value, wanted);
}

}  // namespace ZELAdapterHelper
