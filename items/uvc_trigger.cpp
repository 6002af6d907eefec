#include "items/builtin_factories.h"
#include "items/interface_keys.h"
#include "items/vendor_properties.h"

namespace ZELAdapterHelper {
namespace {

std::uint32_t WithBit(std::uint32_t flags, std::uint32_t bit, bool on) noexcept {
    return on ? flags | bit : flags & ~bit;
}

class CUVCTrigger final : public CZELItemDataBase {
public:
    explicit CUVCTrigger(platform::com_ptr<IKsPropertySet> filter) : filter_(std::move(filter)) {}

    bool SupportsInterface(InterfaceKey key) override;
    HRESULT IsAvailable(InterfaceKey key, bool& available) override;
    HRESULT GetSwitch(InterfaceKey key, bool& on) override;
    HRESULT SetSwitch(InterfaceKey key, bool on) override;
    HRESULT GetRange(InterfaceKey key, RangeInfo& range) override;
    HRESULT GetValue(InterfaceKey key, std::int32_t& value) override;
    HRESULT SetValue(InterfaceKey key, std::int32_t value) override;
    HRESULT GetAbsRange(InterfaceKey key, AbsRangeInfo& range) override;
    HRESULT GetAbsValue(InterfaceKey key, double& value) override;
    HRESULT SetAbsValue(InterfaceKey key, double value) override;
    HRESULT GetAbsUnit(InterfaceKey key, SharedString& unit, std::int32_t& scale) override;
    HRESULT Push(InterfaceKey key) override;
    HRESULT GetMapStrings(InterfaceKey key, std::vector<SharedString>& strings) override;

private:
    [[nodiscard]] bool CanSet(std::uint32_t capability);
    template <class Record>
    [[nodiscard]] bool IsReadable(selvane_vendor_property property);

    platform::com_ptr<IKsPropertySet> filter_;
};

bool CUVCTrigger::CanSet(std::uint32_t capability) {
    wire::integer_record record = {};
    return PropertySupported(*filter_, SELVANE_TRIGGER) &&
           SUCCEEDED(GetProperty(*filter_, SELVANE_TRIGGER, record)) &&
           (record.capabilities & capability) != 0;
}

template <class Record>
bool CUVCTrigger::IsReadable(selvane_vendor_property property) {
    Record record = {};
    return PropertySupported(*filter_, property) &&
           SUCCEEDED(ReadRecord(*filter_, wire::vendor_set, property, record));
}

bool CUVCTrigger::SupportsInterface(InterfaceKey key) {
    switch (key) {
        case trigger_key::enable:
            return PropertySupported(*filter_, SELVANE_TRIGGER);
        case trigger_key::polarity:
            return CanSet(wire::trigger_polarity);
        case trigger_key::software_trigger:
            return IsReadable<wire::integer_record>(SELVANE_SOFTWARE_TRIGGER);
        case trigger_key::delay:
            return IsReadable<wire::float_record>(SELVANE_TRIGGER_DELAY);
        case trigger_key::operation:
            return CanSet(wire::trigger_operation);
        default:
            return false;
    }
}

HRESULT CUVCTrigger::IsAvailable(InterfaceKey key, bool& available) {
    return key == trigger_key::software_trigger ? GetSwitch(trigger_key::enable, available)
                                                : CZELItemDataBase::IsAvailable(key, available);
}

HRESULT CUVCTrigger::GetSwitch(InterfaceKey key, bool& on) {
    if (key != trigger_key::enable && key != trigger_key::polarity) {
        return E_NOTIMPL;
    }
    wire::integer_record record = {};
    const HRESULT hr = GetProperty(*filter_, SELVANE_TRIGGER, record);
    if (SUCCEEDED(hr)) {
        on = key == trigger_key::enable ? (record.flags & wire::trigger_off) == 0
                                        : (record.flags & wire::trigger_polarity) != 0;
    }
    return hr;
}

HRESULT CUVCTrigger::SetSwitch(InterfaceKey key, bool on) {
    if (key != trigger_key::enable && key != trigger_key::polarity) {
        return E_NOTIMPL;
    }
    wire::integer_record record = {};
    const HRESULT hr = GetProperty(*filter_, SELVANE_TRIGGER, record);
    if (FAILED(hr)) {
        return hr;
    }
    record.flags = key == trigger_key::enable
                       ? WithBit(record.flags & ~wire::trigger_mode_bits, wire::trigger_off, !on)
                       : WithBit(record.flags, wire::trigger_polarity, on);
    return SetProperty(*filter_, SELVANE_TRIGGER, record);
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
    wire::integer_record record = {};
    const HRESULT hr = GetProperty(*filter_, SELVANE_TRIGGER, record);
    if (SUCCEEDED(hr)) {
        value = (record.flags & wire::trigger_operation) != 0 ? 1 : 0;
    }
    return hr;
}

HRESULT CUVCTrigger::SetValue(InterfaceKey key, std::int32_t value) {
    if (key != trigger_key::operation) {
        return E_NOTIMPL;
    }
    wire::integer_record record = {};
    const HRESULT hr = GetProperty(*filter_, SELVANE_TRIGGER, record);
    if (FAILED(hr)) {
        return hr;
    }
    if (value != 0 && value != 1) {
        return E_INVALIDARG;
    }
    record.flags = WithBit(record.flags, wire::trigger_operation, value == 1);
    return SetProperty(*filter_, SELVANE_TRIGGER, record);
}

HRESULT CUVCTrigger::GetAbsRange(InterfaceKey key, AbsRangeInfo& range) {
    return key == trigger_key::delay ? GetFloatRange(*filter_, SELVANE_TRIGGER_DELAY, range) : E_NOTIMPL;
}

HRESULT CUVCTrigger::GetAbsValue(InterfaceKey key, double& value) {
    return key == trigger_key::delay ? GetFloatValue(*filter_, SELVANE_TRIGGER_DELAY, value) : E_NOTIMPL;
}

HRESULT CUVCTrigger::SetAbsValue(InterfaceKey key, double value) {
    return key == trigger_key::delay
               ? SetFloatValue(*filter_, SELVANE_TRIGGER_DELAY, static_cast<float>(value))
               : E_NOTIMPL;
}

HRESULT CUVCTrigger::GetAbsUnit(InterfaceKey, SharedString& unit, std::int32_t& scale) {
    unit = SharedString(L"\u00B5s");
    scale = scale_linear;
    return S_OK;
}

HRESULT CUVCTrigger::Push(InterfaceKey) {
    wire::integer_record record = {};
    record.flags = wire::software_trigger_fire;
    return SetProperty(*filter_, SELVANE_SOFTWARE_TRIGGER, record);
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
        *result = new CUVCTrigger(std::move(properties));
    }
}

}  // namespace ZELAdapterHelper
