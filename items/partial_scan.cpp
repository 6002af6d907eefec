#include "items/builtin_factories.h"
#include "items/property_item.h"

#include <algorithm>

namespace ZELAdapterHelper {
namespace {

constexpr std::int32_t smallest_offset_step = 4;

// The driver tells a binning of 4 by its factor, where the list of texts has it at 3.
constexpr std::int32_t driver_binning_four = 4;
constexpr std::int32_t item_binning_four = 3;

constexpr PropertyRow Offset(selvane_vendor_property property) noexcept {
    return PropertyRow(property, InterfaceType::Range, Vendor(property))
        .Is(Available::UnlessKnownOn, SELVANE_PARTIAL_SCAN_AUTO_CENTER);
}

constexpr PropertyRow partial_scan_rows[] = {
    PropertyRow(SELVANE_PARTIAL_SCAN_AUTO_CENTER, InterfaceType::Switch,
                Vendor(SELVANE_PARTIAL_SCAN_AUTO_CENTER)),
    Offset(SELVANE_PARTIAL_SCAN_X),
    Offset(SELVANE_PARTIAL_SCAN_Y),
};

DWORD PropertyOf(InterfaceKey key) noexcept { return static_cast<DWORD>(key); }

bool IsOffset(InterfaceKey key) noexcept {
    return key == SELVANE_PARTIAL_SCAN_X || key == SELVANE_PARTIAL_SCAN_Y;
}

// Partial scan and binning: each key is the number of the property behind it, also one without a row.
class partial_scan_impl final : public CPropertyItem {
public:
    explicit partial_scan_impl(Device device) : CPropertyItem(std::move(device), AllOf(partial_scan_rows)) {}

    bool SupportsInterface(InterfaceKey key) override {
        return PropertySupported(Properties(), PropertyOf(key));
    }
    HRESULT GetRange(InterfaceKey key, RangeInfo& range) override;
    HRESULT GetValue(InterfaceKey key, std::int32_t& value) override;
    HRESULT SetValue(InterfaceKey key, std::int32_t value) override;
    HRESULT GetMapStrings(InterfaceKey key, std::vector<SharedString>& strings) override;
};

HRESULT partial_scan_impl::GetRange(InterfaceKey key, RangeInfo& range) {
    const HRESULT hr = GetPropertyRange(Properties(), PropertyOf(key), range);
    if (SUCCEEDED(hr) && IsOffset(key)) {
        range.step = std::max(range.step, smallest_offset_step);
    }
    return hr;
}

HRESULT partial_scan_impl::GetValue(InterfaceKey key, std::int32_t& value) {
    const HRESULT hr = GetPropertyValue(Properties(), PropertyOf(key), value);
    if (SUCCEEDED(hr) && key == SELVANE_BINNING && value == driver_binning_four) {
        value = item_binning_four;
    }
    return hr;
}

HRESULT partial_scan_impl::SetValue(InterfaceKey key, std::int32_t value) {
    const bool four = key == SELVANE_BINNING && value == item_binning_four;
    return SetPropertyValue(Properties(), PropertyOf(key), four ? driver_binning_four : value);
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
        *result = new partial_scan_impl({std::move(properties), {}, {}});
    }
}

}  // namespace ZELAdapterHelper
