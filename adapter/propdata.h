#pragma once

#include "adapter/interface_key.h"
#include "genicam/inode.h"
#include "items/item_contract.h"
#include "platform/com_ptr.h"

#include <cstdint>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

namespace genicam_adapter {

/// An entry that an enumeration offers.
struct enum_entry_text {
    std::string name;          ///< what the driver knows it by
    std::string display_name;  ///< what the user sees
};

/// What the items of described features have in common, wherever their values come from. Interface keys are
/// the nodes of the adapter's documents, so an item must not outlive the adapter.
class genicam_propdata : public ZELAdapterHelper::CZELItemDataBase {
public:
    using InterfaceKey = ZELAdapterHelper::InterfaceKey;

    /// Always true: what the device lacks was left out when the table was made.
    [[nodiscard]] bool SupportsInterface(InterfaceKey key) override;
    HRESULT Refresh(InterfaceKey key) override;
    [[nodiscard]] HRESULT GetAbsUnit(InterfaceKey key, ZELAdapterHelper::SharedString& unit,
                                     std::int32_t& scale) override;
    [[nodiscard]] HRESULT GetMapStrings(InterfaceKey key,
                                        std::vector<ZELAdapterHelper::SharedString>& strings) override;
    [[nodiscard]] bool IsDoNotSerialize(InterfaceKey key) override;

protected:
    explicit genicam_propdata(platform::com_ptr<IKsPropertySet> filter);

    /// Whether an entry stands in the list that the user chooses from.
    [[nodiscard]] virtual bool offers_entry(GenICam::IEnumeration& enumeration,
                                            GenICam::IEnumEntry& entry) = 0;

    [[nodiscard]] IKsPropertySet* filter() const noexcept { return filter_.get(); }

    /// The entries that an enumeration offers, loaded when there are none yet.
    const std::vector<enum_entry_text>& refresh_entries(GenICam::IEnumeration& enumeration);
    /// The indices of that list; E_NOTIMPL when it is empty.
    [[nodiscard]] HRESULT get_entry_range(GenICam::IEnumeration& enumeration,
                                          ZELAdapterHelper::RangeInfo& range);
    /// The entry at an index of that list; null outside of it.
    [[nodiscard]] const enum_entry_text* find_offered_entry(GenICam::IEnumeration& enumeration,
                                                            std::int32_t index);

private:
    platform::com_ptr<IKsPropertySet> filter_;
    std::map<GenICam::INode*, std::vector<enum_entry_text>> entry_cache_;
};

/// What every factory of these items does: asks the page's object for its property set, with whatever comes
/// of it.
template <class Item>
void make_propdata(ZELAdapterHelper::CZELItemDataBase** result, IUnknown* filter) {
    *result = new Item(platform::query<IKsPropertySet>(filter));
}

/// The low 32 bits.
[[nodiscard]] constexpr std::int32_t low_half(std::int64_t value) noexcept {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

/// Half of what lies between two limits, truncated toward zero; the difference wraps.
template <class Integer>
[[nodiscard]] constexpr Integer half_span(Integer min, Integer max) noexcept {
    using bits = std::make_unsigned_t<Integer>;
    return static_cast<Integer>(static_cast<bits>(max) - static_cast<bits>(min)) / 2;
}

/// The same for physical units.
[[nodiscard]] constexpr double half_span_of(const ZELAdapterHelper::AbsRangeInfo& range) noexcept {
    return (range.max - range.min) * 0.5;
}

}  // namespace genicam_adapter
