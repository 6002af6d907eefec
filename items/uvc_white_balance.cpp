#include "items/builtin_factories.h"
#include "items/interface_keys.h"
#include "items/property_item.h"

namespace ZELAdapterHelper {
namespace {

constexpr PropertyRow white_balance_rows[] = {
    PropertyRow(white_balance_key::red, InterfaceType::Range, Vendor(SELVANE_WHITE_BALANCE_RED)),
    PropertyRow(white_balance_key::blue, InterfaceType::Range, Vendor(SELVANE_WHITE_BALANCE_BLUE)),
    // Nothing is read before a change of mode, so that it writes 0 as value.
    PropertyRow(white_balance_key::automatic, InterfaceType::Switch,
                OnProcAmp(wire::video_proc_amp_white_balance))
        .Needs(Need::AutomaticMode)
        .Writes(ModeWrite::Unread),
    PropertyRow(white_balance_key::one_push, InterfaceType::Button, Vendor(SELVANE_WHITE_BALANCE_ONE_PUSH)),
    PropertyRow(white_balance_key::green, InterfaceType::Range, Vendor(SELVANE_WHITE_BALANCE_GREEN)),
};

// Three colour gains, which the automatic mode and a push of the button set by themselves.
class CUVCWhiteBalanceData final : public CPropertyItem {
public:
    explicit CUVCWhiteBalanceData(Device device)
        : CPropertyItem(std::move(device), AllOf(white_balance_rows)) {}

    // The mode governs every other key, unknown ones too.
    HRESULT IsAvailable(InterfaceKey key, bool& available) override {
        return key == white_balance_key::automatic
                   ? CPropertyItem::IsAvailable(key, available)
                   : AvailableUnlessOn(*this, white_balance_key::automatic, available);
    }
};

}  // namespace

void MakeUVCWhiteBalance(CZELItemDataBase** result, IUnknown* filter, const ItemRecord&) {
    *result = nullptr;
    auto properties = platform::query<IKsPropertySet>(filter);
    auto amp = platform::query<IAMVideoProcAmp>(filter);
    if (properties && amp) {
        *result = new CUVCWhiteBalanceData({std::move(properties), {}, std::move(amp)});
    }
}

}  // namespace ZELAdapterHelper
