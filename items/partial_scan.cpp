#include "items/builtin_factories.h"
#include "items/vendor_properties.h"

#include <algorithm>

namespace ZELAdapterHelper {
namespace {

constexpr std::int32_t smallest_offset_step = 4;

// The driver tells a binning of 4 by its factor, where the list of texts has it at 3.
constexpr std::int32_t driver_binning_four = 4;
constexpr std::int32_t item_binning_four = 3;

DWORD PropertyOf(InterfaceKey key) noexcept { return static_cast<DWORD>(key); }

bool IsOffset(InterfaceKey key) noexcept {
    return key == SELVANE_PARTIAL_SCAN_X || key == SELVANE_PARTIAL_SCAN_Y;
}

// Partial scan and binning: each key is the number of the property behind it.
class partial_scan_impl final : public CZELItemDataBase {
public:
    explicit partial_scan_impl(platform::com_ptr<IKsPropertySet> filter) : filter_(std::move(filter)) {}

    bool SupportsInterface(InterfaceKey key) override { return PropertySupported(*filter_, PropertyOf(key)); }
    HRESULT IsAvailable(InterfaceKey key, bool& available) override;
    HRESULT GetSwitch(InterfaceKey key, bool& on) override;
    HRESULT SetSwitch(InterfaceKey key, bool on) override;
    HRESULT GetRange(InterfaceKey key, RangeInfo& range) override;
    HRESULT GetValue(InterfaceKey key, std::int32_t& value) override;
    HRESULT SetValue(InterfaceKey key, std::int32_t value) override;
    HRESULT GetMapStrings(InterfaceKey key, std::vector<SharedString>& strings) override;

private:
    platform::com_ptr<IKsPropertySet> filter_;
};

HRESULT partial_scan_impl::IsAvailable(InterfaceKey key, bool& available) {
    bool centered = false;
    if (IsOffset(key)) {
        (void)GetSwitch(SELVANE_PARTIAL_SCAN_AUTO_CENTER, centered);
    }
    available = !centered;
    return S_OK;
}

HRESULT partial_scan_impl::GetSwitch(InterfaceKey key, bool& on) {
    return key == SELVANE_PARTIAL_SCAN_AUTO_CENTER ? GetPropertySwitch(*filter_, PropertyOf(key), on)
                                                   : E_NOTIMPL;
}

HRESULT partial_scan_impl::SetSwitch(InterfaceKey key, bool on) {
    return key == SELVANE_PARTIAL_SCAN_AUTO_CENTER ? SetPropertySwitch(*filter_, PropertyOf(key), on)
                                                   : E_NOTIMPL;
}

HRESULT partial_scan_impl::GetRange(InterfaceKey key, RangeInfo& range) {
    const HRESULT hr = GetPropertyRange(*filter_, PropertyOf(key), range);
    if (SUCCEEDED(hr) && IsOffset(key)) {
        range.step = std::max(range.step, smallest_offset_step);
    }
    return hr;
}

HRESULT partial_scan_impl::GetValue(InterfaceKey key, std::int32_t& value) {
    const HRESULT hr = GetPropertyValue(*filter_, PropertyOf(key), value);
    if (SUCCEEDED(hr) && key == SELVANE_BINNING && value == driver_binning_four) {
        value = item_binning_four;
    }
    return hr;
}

HRESULT partial_scan_impl::SetValue(InterfaceKey key, std::int32_t value) {
    const bool four = key == SELVANE_BINNING && value == item_binning_four;
    return SetPropertyValue(*filter_, PropertyOf(key), four ? driver_binning_four : value);
}

HRESULT partial_scan_impl::GetMapStrings(InterfaceKey key, std::vector<SharedString>& strings) {
    if (key != SELVANE_BINNING) {
        return E_NOTIMPL;
    }
    for (const wchar_t* text : {L"1", L"2", L"4"}) {
        strings.emplace_back(text);
    }
    return S_OK;
}

}  // namespace

void MakePartialScan(CZELItemDataBase** result, IUnknown* filter, const ItemRecord&) {
    *result = nullptr;
    auto properties = platform::query<IKsPropertySet>(filter);
    if (properties) {
        *result = new partial_scan_impl(std::move(properties));
    }
}

}  // namespace ZELAdapterHelper
