#include "items/builtin_factories.h"
#include "items/interface_keys.h"
#include "items/property_item.h"

#include <algorithm>
#include <iterator>

namespace ZELAdapterHelper {
namespace {

constexpr PropertyRow trigger_rows[] = {
    PropertyRow(trigger_key::software_trigger, InterfaceType::Button, Vendor(SELVANE_SOFTWARE_TRIGGER))
        .Needs(Need::ReadableProperty)
        .Is(Available::WhileOn, trigger_key::enable),
    PropertyRow(trigger_key::delay, InterfaceType::AbsoluteValue, VendorFloat(SELVANE_TRIGGER_DELAY))
        .Needs(Need::ReadableProperty),
};

// Two states in the flags of the trigger property.
struct FlagRow {
    InterfaceKey key;
    std::uint32_t bits;        // what a write replaces
    std::uint32_t on;          // what of these stands for on,
    std::uint32_t off;         // and what for off
    std::uint32_t capability;  // that the device must have; 0: none
};

constexpr FlagRow flag_rows[] = {
    {trigger_key::enable, wire::trigger_mode_bits, 0, wire::trigger_off, 0},
    {trigger_key::polarity, wire::trigger_polarity, wire::trigger_polarity, 0, wire::trigger_polarity},
    {trigger_key::operation, wire::trigger_operation, wire::trigger_operation, 0, wire::trigger_operation},
};

const FlagRow* FindFlag(InterfaceKey key) noexcept {
    const auto* found = std::find_if(std::begin(flag_rows), std::end(flag_rows),
                                     [key](const FlagRow& row) { return row.key == key; });
    return found != std::end(flag_rows) ? found : nullptr;
}

// The operation has two states as well, and shows them as a list.
const FlagRow* FindSwitch(InterfaceKey key) noexcept {
    return key != trigger_key::operation ? FindFlag(key) : nullptr;
}

class CUVCTrigger final : public CPropertyItem {
public:
    explicit CUVCTrigger(Device device) : CPropertyItem(std::move(device), AllOf(trigger_rows)) {}

    bool SupportsInterface(InterfaceKey key) override;
    HRESULT GetSwitch(InterfaceKey key, bool& on) override;
    HRESULT SetSwitch(InterfaceKey key, bool on) override;
    HRESULT GetRange(InterfaceKey key, RangeInfo& range) override;
    HRESULT GetValue(InterfaceKey key, std::int32_t& value) override;
    HRESULT SetValue(InterfaceKey key, std::int32_t value) override;
    HRESULT GetAbsUnit(InterfaceKey key, SharedString& unit, std::int32_t& scale) override;
    HRESULT Push(InterfaceKey key) override;
    HRESULT GetMapStrings(InterfaceKey key, std::vector<SharedString>& strings) override;

private:
    [[nodiscard]] HRESULT Read(const FlagRow& row, bool& on) const;
    [[nodiscard]] HRESULT Write(const FlagRow& row, bool on) const;
};

HRESULT CUVCTrigger::Read(const FlagRow& row, bool& on) const {
    wire::integer_record record = {};
    const HRESULT hr = GetProperty(Properties(), SELVANE_TRIGGER, record);
    if (SUCCEEDED(hr)) {
        const std::uint32_t told = row.on | row.off;
        on = (record.flags & told) == row.on;
    }
    return hr;
}

HRESULT CUVCTrigger::Write(const FlagRow& row, bool on) const {
    wire::integer_record record = {};
    const HRESULT hr = GetProperty(Properties(), SELVANE_TRIGGER, record);
    if (FAILED(hr)) {
        return hr;
    }
    record.flags = (record.flags & ~row.bits) | (on ? row.on : row.off);
    return SetProperty(Properties(), SELVANE_TRIGGER, record);
}

bool CUVCTrigger::SupportsInterface(InterfaceKey key) {
    const FlagRow* row = FindFlag(key);
    if (row == nullptr) {
        return CPropertyItem::SupportsInterface(key);
    }
    if (!PropertySupported(Properties(), SELVANE_TRIGGER)) {
        return false;
    }
    wire::integer_record record = {};
    return row->capability == 0 || (SUCCEEDED(GetProperty(Properties(), SELVANE_TRIGGER, record)) &&
                                    (record.capabilities & row->capability) != 0);
}

HRESULT CUVCTrigger::GetSwitch(InterfaceKey key, bool& on) {
    const FlagRow* row = FindSwitch(key);
    return row != nullptr ? Read(*row, on) : E_NOTIMPL;
}

HRESULT CUVCTrigger::SetSwitch(InterfaceKey key, bool on) {
    const FlagRow* row = FindSwitch(key);
    return row != nullptr ? Write(*row, on) : E_NOTIMPL;
}

HRESULT CUVCTrigger::GetRange(InterfaceKey key, RangeInfo& range) {
    if (key != trigger_key::operation) {
        return E_NOTIMPL;
    }
    range = {0, 1, 0, 1};
    return S_OK;
}

HRESULT CUVCTrigger::GetValue(InterfaceKey key, std::int32_t& value) {
    if (key != trigger_key::operation) {
        return E_NOTIMPL;
    }
    bool global_reset = false;
    const HRESULT hr = Read(*FindFlag(key), global_reset);
    if (SUCCEEDED(hr)) {
        value = global_reset ? 1 : 0;
    }
    return hr;
}

// A driver that fails to tell the flags is heard of before a value that is none.
HRESULT CUVCTrigger::SetValue(InterfaceKey key, std::int32_t value) {
    if (key != trigger_key::operation) {
        return E_NOTIMPL;
    }
    const FlagRow& row = *FindFlag(key);
    if (value == 0 || value == 1) {
        return Write(row, value == 1);
    }
    bool global_reset = false;
    const HRESULT hr = Read(row, global_reset);
    return FAILED(hr) ? hr : E_INVALIDARG;
}

HRESULT CUVCTrigger::GetAbsUnit(InterfaceKey, SharedString& unit, std::int32_t& scale) {
    unit = SharedString(L"\u00B5s");
    scale = scale_linear;
    return S_OK;
}

HRESULT CUVCTrigger::Push(InterfaceKey) {
    wire::integer_record record = {};
    record.flags = wire::software_trigger_fire;
    return SetProperty(Properties(), SELVANE_SOFTWARE_TRIGGER, record);
}

HRESULT CUVCTrigger::GetMapStrings(InterfaceKey key, std::vector<SharedString>& strings) {
    if (key != trigger_key::operation) {
        return E_NOTIMPL;
    }
    for (const wchar_t* text : {L"Default", L"Global Reset Release"}) {
        strings.emplace_back(text);
    }
    return S_OK;
}

}  // namespace

void MakeUVCTrigger(CZELItemDataBase** result, IUnknown* filter, const ItemRecord&) {
    *result = nullptr;
    auto properties = platform::query<IKsPropertySet>(filter);
    if (properties) {
        *result = new CUVCTrigger({std::move(properties), {}, {}});
    }
}

}  // namespace ZELAdapterHelper
