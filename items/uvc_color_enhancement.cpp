#include "items/builtin_factories.h"
#include "items/interface_keys.h"
#include "items/vendor_properties.h"

namespace ZELAdapterHelper {
namespace {

// A switch on a property set of its own, whose ids are the keys.
class CUVCColorEnhanceMtxEnable final : public CZELItemDataBase {
public:
    explicit CUVCColorEnhanceMtxEnable(platform::com_ptr<IKsPropertySet> filter)
        : filter_(std::move(filter)) {}

    bool SupportsInterface(InterfaceKey key) override {
        return key == color_enhancement_key::enable && IsSupported(*filter_, wire::color_enhancement_set, 0);
    }
    HRESULT GetSwitch(InterfaceKey key, bool& on) override;
    HRESULT SetSwitch(InterfaceKey key, bool on) override;

private:
    platform::com_ptr<IKsPropertySet> filter_;
};

HRESULT CUVCColorEnhanceMtxEnable::GetSwitch(InterfaceKey key, bool& on) {
    wire::integer_record record = {};
    const HRESULT hr = ReadRecord(*filter_, wire::color_enhancement_set, static_cast<DWORD>(key), record);
    if (SUCCEEDED(hr)) {
        on = record.value != 0;
    }
    return hr;
}

HRESULT CUVCColorEnhanceMtxEnable::SetSwitch(InterfaceKey key, bool on) {
    wire::integer_record record = {};
    record.value = on ? 1 : 0;
    return WriteRecord(*filter_, wire::color_enhancement_set, static_cast<DWORD>(key), record);
}

}  // namespace

void MakeUVCColorEnhancement(CZELItemDataBase** result, IUnknown* filter, const ItemRecord&) {
    *result = nullptr;
    auto properties = platform::query<IKsPropertySet>(filter);
    if (properties && IsSupported(*properties, wire::color_enhancement_set, 0)) {
        *result = new CUVCColorEnhanceMtxEnable(std::move(properties));
    }
}

}  // namespace ZELAdapterHelper
