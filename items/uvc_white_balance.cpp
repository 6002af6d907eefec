#include "items/builtin_factories.h"
#include "items/interface_keys.h"
#include "items/standard_controls.h"

#include <optional>

namespace ZELAdapterHelper {
namespace {

std::optional<selvane_vendor_property> GainProperty(InterfaceKey key) noexcept {
    switch (key) {
        case white_balance_key::red:
            return SELVANE_WHITE_BALANCE_RED;
        case white_balance_key::green:
            return SELVANE_WHITE_BALANCE_GREEN;
        case white_balance_key::blue:
            return SELVANE_WHITE_BALANCE_BLUE;
        default:
            return std::nullopt;
    }
}

// Three colour gains, which the automatic mode and a push of the button set by themselves.
class CUVCWhiteBalanceData final : public CZELItemDataBase {
public:
    CUVCWhiteBalanceData(platform::com_ptr<IKsPropertySet> filter, platform::com_ptr<IAMVideoProcAmp> amp)
        : filter_(std::move(filter)), amp_(std::move(amp)) {}

    bool SupportsInterface(InterfaceKey key) override;
    HRESULT IsAvailable(InterfaceKey key, bool& available) override;
    HRESULT GetSwitch(InterfaceKey key, bool& on) override;
    HRESULT SetSwitch(InterfaceKey key, bool on) override;
    HRESULT GetRange(InterfaceKey key, RangeInfo& range) override;
    HRESULT GetValue(InterfaceKey key, std::int32_t& value) override;
    HRESULT SetValue(InterfaceKey key, std::int32_t value) override;
    HRESULT Push(InterfaceKey key) override;

private:
    platform::com_ptr<IKsPropertySet> filter_;
    platform::com_ptr<IAMVideoProcAmp> amp_;
};

bool CUVCWhiteBalanceData::SupportsInterface(InterfaceKey key) {
    if (key == white_balance_key::automatic) {
        return (ControlCapabilities(amp_.get(), wire::video_proc_amp_white_balance) & control_automatic) != 0;
    }
    if (key == white_balance_key::one_push) {
        return PropertySupported(*filter_, SELVANE_WHITE_BALANCE_ONE_PUSH);
    }
    const auto property = GainProperty(key);
    return property && PropertySupported(*filter_, *property);
}

HRESULT CUVCWhiteBalanceData::IsAvailable(InterfaceKey key, bool& available) {
    return key == white_balance_key::automatic
               ? CZELItemDataBase::IsAvailable(key, available)
               : AvailableUnlessOn(*this, white_balance_key::automatic, available);
}

HRESULT CUVCWhiteBalanceData::GetSwitch(InterfaceKey key, bool& on) {
    return key == white_balance_key::automatic
               ? GetControlAutomatic(amp_.get(), wire::video_proc_amp_white_balance, on)
               : E_NOTIMPL;
}

HRESULT CUVCWhiteBalanceData::SetSwitch(InterfaceKey key, bool on) {
    // Nothing is read first: a change of mode writes 0 as value.
    return key == white_balance_key::automatic
               ? amp_->Set(wire::video_proc_amp_white_balance, 0, on ? control_automatic : control_manual)
               : E_NOTIMPL;
}

HRESULT CUVCWhiteBalanceData::GetRange(InterfaceKey key, RangeInfo& range) {
    const auto property = GainProperty(key);
    return property ? GetPropertyRange(*filter_, *property, range) : E_NOTIMPL;
}

HRESULT CUVCWhiteBalanceData::GetValue(InterfaceKey key, std::int32_t& value) {
    const auto property = GainProperty(key);
    return property ? GetPropertyValue(*filter_, *property, value) : E_NOTIMPL;
}

HRESULT CUVCWhiteBalanceData::SetValue(InterfaceKey key, std::int32_t value) {
    const auto property = GainProperty(key);
    return property ? SetPropertyValue(*filter_, *property, value) : E_NOTIMPL;
}

HRESULT CUVCWhiteBalanceData::Push(InterfaceKey key) {
    return key == white_balance_key::one_push ? SetPropertyValue(*filter_, SELVANE_WHITE_BALANCE_ONE_PUSH, 1)
                                              : E_NOTIMPL;
}

}  // namespace

void MakeUVCWhiteBalance(CZELItemDataBase** result, IUnknown* filter, const ItemRecord&) {
    *result = nullptr;
    auto properties = platform::query<IKsPropertySet>(filter);
    auto amp = platform::query<IAMVideoProcAmp>(filter);
    if (properties && amp) {
        *result = new CUVCWhiteBalanceData(std::move(properties), std::move(amp));
    }
}

}  // namespace ZELAdapterHelper
