#include "items/builtin_factories.h"
#include "items/interface_keys.h"
#include "items/standard_controls.h"

namespace ZELAdapterHelper {
namespace {

constexpr double ticks_per_decibel = 100.0;

// Gain: the raw value and its mode over the proc amp, decibels over the driver's property.
class CUVCGain final : public CZELItemDataBase {
public:
    CUVCGain(platform::com_ptr<IKsPropertySet> filter, IUnknown* whole_filter);

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

private:
    platform::com_ptr<IKsPropertySet> filter_;
    platform::com_ptr<IAMVideoProcAmp> amp_;
    bool has_auto_ = false;
    bool has_manual_ = false;
};

CUVCGain::CUVCGain(platform::com_ptr<IKsPropertySet> filter, IUnknown* whole_filter)
    : filter_(std::move(filter)), amp_(platform::query<IAMVideoProcAmp>(whole_filter)) {
    // Drivers see this read before anything else of the item; what it says is not needed.
    wire::integer_record gain = {};
    (void)GetProperty(*filter_, SELVANE_GAIN, gain);
    const LONG modes = ControlCapabilities(amp_.get(), wire::video_proc_amp_gain);
    has_auto_ = (modes & control_automatic) != 0;
    has_manual_ = (modes & control_manual) != 0;
}

bool CUVCGain::SupportsInterface(InterfaceKey key) {
    switch (key) {
        case gain_key::value:
            return has_manual_;
        case gain_key::abs_value:
            return true;
        case gain_key::automatic:
            return has_auto_;
        default:
            return false;
    }
}

HRESULT CUVCGain::IsAvailable(InterfaceKey key, bool& available) {
    if (key == gain_key::value || key == gain_key::abs_value) {
        return AvailableUnlessOn(*this, gain_key::automatic, available);
    }
    return CZELItemDataBase::IsAvailable(key, available);
}

HRESULT CUVCGain::GetSwitch(InterfaceKey key, bool& on) {
    return key == gain_key::automatic ? GetControlAutomatic(amp_.get(), wire::video_proc_amp_gain, on)
                                      : E_NOTIMPL;
}

HRESULT CUVCGain::SetSwitch(InterfaceKey key, bool on) {
    return key == gain_key::automatic
               ? SetControlAutomatic(amp_.get(), wire::video_proc_amp_gain, on, ModeWrite::Always)
               : E_NOTIMPL;
}

HRESULT CUVCGain::GetRange(InterfaceKey key, RangeInfo& range) {
    return key == gain_key::value ? GetControlRange(amp_.get(), wire::video_proc_amp_gain, range) : E_NOTIMPL;
}

HRESULT CUVCGain::GetValue(InterfaceKey key, std::int32_t& value) {
    return key == gain_key::value ? GetControlValue(amp_.get(), wire::video_proc_amp_gain, value) : E_NOTIMPL;
}

HRESULT CUVCGain::SetValue(InterfaceKey key, std::int32_t value) {
    return key == gain_key::value ? SetControlValue(amp_.get(), wire::video_proc_amp_gain, value) : E_NOTIMPL;
}

HRESULT CUVCGain::GetAbsRange(InterfaceKey key, AbsRangeInfo& range) {
    return key == gain_key::abs_value ? GetScaledRange(*filter_, SELVANE_GAIN, ticks_per_decibel, range)
                                      : E_NOTIMPL;
}

HRESULT CUVCGain::GetAbsValue(InterfaceKey key, double& value) {
    return key == gain_key::abs_value ? GetScaledValue(*filter_, SELVANE_GAIN, ticks_per_decibel, value)
                                      : E_NOTIMPL;
}

HRESULT CUVCGain::SetAbsValue(InterfaceKey key, double value) {
    return key == gain_key::abs_value ? SetScaledValue(*filter_, SELVANE_GAIN, ticks_per_decibel, value)
                                      : E_NOTIMPL;
}

HRESULT CUVCGain::GetAbsUnit(InterfaceKey key, SharedString& unit, std::int32_t& scale) {
    unit = SharedString(L"dB");
    if (key == gain_key::abs_value) {
        scale = scale_linear;
    }
    return S_OK;
}

}  // namespace

void MakeUVCGain(CZELItemDataBase** result, IUnknown* filter, const ItemRecord&) {
    *result = nullptr;
    auto properties = platform::query<IKsPropertySet>(filter);
    if (!properties || !PropertySupported(*properties, SELVANE_GAIN)) {
        return;
    }
    *result = new CUVCGain(std::move(properties), filter);
}

}  // namespace ZELAdapterHelper
