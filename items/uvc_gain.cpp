#include "items/builtin_factories.h"
#include "items/interface_keys.h"
#include "items/property_item.h"

namespace ZELAdapterHelper {
namespace {

constexpr PropertyAddress amp_gain = OnProcAmp(wire::video_proc_amp_gain);

constexpr PropertyRow gain_rows[] = {
    PropertyRow(gain_key::value, InterfaceType::Range, amp_gain).Is(Available::UnlessOn, gain_key::automatic),
    PropertyRow(gain_key::abs_value, InterfaceType::AbsoluteValue, Vendor(SELVANE_GAIN))
        .Needs(Need::Nothing)
        .Ticks(100)
        .Is(Available::UnlessOn, gain_key::automatic),
    PropertyRow(gain_key::automatic, InterfaceType::Switch, amp_gain).Writes(ModeWrite::Always),
};

// Gain: the raw value and its mode over the proc amp, decibels over the driver's property.
class CUVCGain final : public CPropertyItem {
public:
    CUVCGain(Device device, LONG modes)
        : CPropertyItem(std::move(device), AllOf(gain_rows), L"dB"), modes_(modes) {}

    bool SupportsInterface(InterfaceKey key) override;

private:
    LONG modes_;  // as the proc amp told them when the item was made
};

bool CUVCGain::SupportsInterface(InterfaceKey key) {
    switch (key) {
        case gain_key::value:
            return (modes_ & control_manual) != 0;
        case gain_key::automatic:
            return (modes_ & control_automatic) != 0;
        default:
            return CPropertyItem::SupportsInterface(key);
    }
}

}  // namespace

void MakeUVCGain(CZELItemDataBase** result, IUnknown* filter, const ItemRecord&) {
    *result = nullptr;
    auto properties = platform::query<IKsPropertySet>(filter);
    if (!properties || !PropertySupported(*properties, SELVANE_GAIN)) {
        return;
    }
    auto amp = platform::query<IAMVideoProcAmp>(filter);
    // Drivers see this read before anything else of the item; what it says is not needed.
    wire::integer_record gain = {};
    (void)GetProperty(*properties, SELVANE_GAIN, gain);
    const LONG modes = ControlCapabilities(amp.get(), wire::video_proc_amp_gain);
    *result = new CUVCGain({std::move(properties), {}, std::move(amp)}, modes);
}

}  // namespace ZELAdapterHelper
