#pragma once

#include "items/item_contract.h"
#include "wire/vendor_set.h"

namespace ZELAdapterHelper {

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
[[nodiscard]] HRESULT GetProperty(IKsPropertySet& filter, DWORD id, wire::integer_record& record);
HRESULT SetProperty(IKsPropertySet& filter, DWORD id, const wire::integer_record& record);
[[nodiscard]] HRESULT GetFloatProperty(IKsPropertySet& filter, DWORD id, wire::float_record& record);
HRESULT SetFloatProperty(IKsPropertySet& filter, DWORD id, const wire::float_record& record);

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

/// The automatic mode of a float property. It is written only where it changes, with the value that was read.
[[nodiscard]] HRESULT GetFloatAutomatic(IKsPropertySet& filter, DWORD id, bool& on);
HRESULT SetFloatAutomatic(IKsPropertySet& filter, DWORD id, bool on);

// Float properties in ticks, `per_unit` of them to a unit: rounded in 32 bits, the minimum and the
// value at least 1.
[[nodiscard]] HRESULT GetTickRange(IKsPropertySet& filter, DWORD id, double per_unit, RangeInfo& range);
[[nodiscard]] HRESULT GetTicks(IKsPropertySet& filter, DWORD id, double per_unit, std::int32_t& value);
HRESULT SetTicks(IKsPropertySet& filter, DWORD id, double per_unit, std::int32_t value);

/// Truncates toward zero. What does not fit, and what is no number, gives the smallest integer, as the
/// processor does.
[[nodiscard]] std::int32_t TruncateToInt32(double value) noexcept;

/// Enabled unless an automatic mode has the say: where the item supports the switch and the switch is on, not
/// available. A failed read of the switch is handed on with `available` true.
[[nodiscard]] HRESULT AvailableUnlessOn(CZELItemDataBase& item, InterfaceKey switch_key, bool& available);
/// Enabled while the switch is on; a failed read is handed on and leaves `available` alone.
[[nodiscard]] HRESULT AvailableWhileOn(CZELItemDataBase& item, InterfaceKey switch_key, bool& available);
// The same two with a switch that counts as off where it cannot be read. They never fail.
[[nodiscard]] HRESULT AvailableUnlessKnownOn(CZELItemDataBase& item, InterfaceKey switch_key,
                                             bool& available);
[[nodiscard]] HRESULT AvailableWhileKnownOn(CZELItemDataBase& item, InterfaceKey switch_key, bool& available);

}  // namespace ZELAdapterHelper
