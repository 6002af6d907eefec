#pragma once

#include "items/item_contract.h"

namespace ZELAdapterHelper {

/// The driver's property set behind the built-in items.
constexpr GUID vendor_property_set = {
    0x515E97D1, 0xC453, 0x4772, {0xA4, 0x89, 0xCC, 0x07, 0x0A, 0x5A, 0x24, 0x42}};

/// The property set of the colour enhancement switch, property 0.
constexpr GUID color_enhancement_set = {
    0x8CBCF1C6, 0x53C3, 0x4D79, {0x8E, 0xDB, 0xC0, 0x64, 0x65, 0x75, 0xDA, 0xC8}};

/// Properties of the former, by the numbers that the driver knows them by.
enum VendorProperty : DWORD {
    property_white_balance_blue = 101,
    property_white_balance_red = 102,
    property_auto_exposure_reference = 106,
    property_white_balance_one_push = 107,
    property_exposure_ticks = 109,  ///< in 1/10000 s
    property_trigger = 115,
    property_partial_scan_x = 118,
    property_partial_scan_y = 119,
    property_gpio = 122,
    property_focus_one_push = 124,
    property_strobe = 125,
    property_exposure_float = 200,  ///< in seconds
    property_auto_max_ticks = 201,  ///< in 1/10000 s
    property_auto_max_automatic = 202,
    property_white_balance_green = 206,
    property_partial_scan_auto_center = 211,
    property_binning = 212,
    property_software_trigger = 213,
    property_trigger_delay = 238,  ///< in microseconds
    property_exposure_microseconds = 239,
    property_auto_max_microseconds = 240,
    property_gain = 241,  ///< in 1/100 dB
    property_focus_auto_min = 244,
    property_focus_auto_max = 245,
    property_auto_max_float = 246,  ///< in seconds
    property_focus_region_top = 247,
    property_focus_region_left = 248,
    property_focus_region_bottom = 249,
    property_focus_region_right = 250,
    property_focus_region_enable = 251,
};

// Flags of the records below and of the standard control interfaces.
constexpr std::uint32_t flag_automatic = 1;
constexpr std::uint32_t flag_manual = 2;

/// The record of an integer property, as it goes to the driver and comes back.
struct PropertyRecord {
    std::uint8_t header[24];  ///< a KSPROPERTY that the driver fills or ignores
    std::int32_t value;
    std::uint32_t flags;
    std::uint32_t capabilities;
    std::int32_t min;
    std::int32_t max;
    std::int32_t default_value;
};
static_assert(sizeof(PropertyRecord) == 48);
static_assert(offsetof(PropertyRecord, value) == 24);
static_assert(offsetof(PropertyRecord, flags) == 28);
static_assert(offsetof(PropertyRecord, capabilities) == 32);
static_assert(offsetof(PropertyRecord, min) == 36);
static_assert(offsetof(PropertyRecord, max) == 40);
static_assert(offsetof(PropertyRecord, default_value) == 44);

/// The record of a float property.
struct FloatPropertyRecord {
    std::uint8_t header[24];
    float value;
    float min;
    float max;
    float default_value;
    std::uint32_t flags;
    std::uint32_t capabilities;  ///< bit 0: automatic possible
    std::uint8_t unused[8];
};
static_assert(sizeof(FloatPropertyRecord) == 56);
static_assert(offsetof(FloatPropertyRecord, value) == 24);
static_assert(offsetof(FloatPropertyRecord, min) == 28);
static_assert(offsetof(FloatPropertyRecord, max) == 32);
static_assert(offsetof(FloatPropertyRecord, default_value) == 36);
static_assert(offsetof(FloatPropertyRecord, flags) == 40);
static_assert(offsetof(FloatPropertyRecord, capabilities) == 44);

/// Whether the driver can read or write a property of a set.
[[nodiscard]] bool IsSupported(IKsPropertySet& filter, REFGUID set, DWORD id);

/// Reads a record of a set: zeroed first, and handed over as instance and data at once. What a driver leaves
/// out of its answer stays zero.
template <class Record>
[[nodiscard]] HRESULT ReadRecord(IKsPropertySet& filter, REFGUID set, DWORD id, Record& record) {
    record = {};
    DWORD returned = 0;
    return filter.Get(set, id, &record, sizeof(record), &record, sizeof(record), &returned);
}

/// Writes a record of a set, as instance and data at once. A copy goes out: drivers may write into it.
template <class Record>
HRESULT WriteRecord(IKsPropertySet& filter, REFGUID set, DWORD id, Record record) {
    return filter.Set(set, id, &record, sizeof(record), &record, sizeof(record));
}

// The rest works on the vendor property set. A failing driver's code is handed on and leaves out values
// alone.

[[nodiscard]] bool PropertySupported(IKsPropertySet& filter, DWORD id);
[[nodiscard]] HRESULT GetProperty(IKsPropertySet& filter, DWORD id, PropertyRecord& record);
HRESULT SetProperty(IKsPropertySet& filter, DWORD id, const PropertyRecord& record);
[[nodiscard]] HRESULT GetFloatProperty(IKsPropertySet& filter, DWORD id, FloatPropertyRecord& record);
HRESULT SetFloatProperty(IKsPropertySet& filter, DWORD id, const FloatPropertyRecord& record);

[[nodiscard]] HRESULT GetPropertyValue(IKsPropertySet& filter, DWORD id, std::int32_t& value);
/// The step is 1: the record tells none.
[[nodiscard]] HRESULT GetPropertyRange(IKsPropertySet& filter, DWORD id, RangeInfo& range);
/// Writes the value with the manual flag and nothing else.
HRESULT SetPropertyValue(IKsPropertySet& filter, DWORD id, std::int32_t value);

/// A switch is on where the value is not 0.
[[nodiscard]] HRESULT GetPropertySwitch(IKsPropertySet& filter, DWORD id, bool& on);
HRESULT SetPropertySwitch(IKsPropertySet& filter, DWORD id, bool on);

// Integer properties that stand for physical values: `per_unit` ticks make one unit. Writes truncate.
[[nodiscard]] HRESULT GetScaledRange(IKsPropertySet& filter, DWORD id, double per_unit, AbsRangeInfo& range);
[[nodiscard]] HRESULT GetScaledValue(IKsPropertySet& filter, DWORD id, double per_unit, double& value);
HRESULT SetScaledValue(IKsPropertySet& filter, DWORD id, double per_unit, double value);

// Float properties hold physical values as they are, in 32 bits. Writes set the manual flag.
[[nodiscard]] HRESULT GetFloatRange(IKsPropertySet& filter, DWORD id, AbsRangeInfo& range);
[[nodiscard]] HRESULT GetFloatValue(IKsPropertySet& filter, DWORD id, double& value);
HRESULT SetFloatValue(IKsPropertySet& filter, DWORD id, float value);

/// Truncates toward zero. What does not fit, and what is no number, gives the smallest integer, as the
/// processor does.
[[nodiscard]] std::int32_t TruncateToInt32(double value) noexcept;

/// Enabled unless an automatic mode has the say: where the item supports the switch and the switch is on, not
/// available. A failed read of the switch is handed on with `available` true.
[[nodiscard]] HRESULT AvailableUnlessOn(CZELItemDataBase& item, InterfaceKey switch_key, bool& available);

}  // namespace ZELAdapterHelper
