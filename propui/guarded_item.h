#pragma once

#include "items/item_contract.h"
#include "platform/com_ptr.h"

#include <cstdint>
#include <vector>

namespace ZELPropUI {

using ZELAdapterHelper::CZELItemDataBase;
using ZELAdapterHelper::InterfaceKey;

/// An item as pages use it. Behind an item stands a driver, which may throw: that is E_FAIL here, and no
/// support. Nothing else in the pages has to think of it.
class GuardedItem {
public:
    explicit GuardedItem(CZELItemDataBase* item) noexcept : item_(item) {}
    explicit GuardedItem(CZELItemDataBase& item) noexcept : item_(&item) {}
    /// What the factory of a record makes for a filter; holds nothing where it declines or throws.
    [[nodiscard]] static GuardedItem Make(const ZELAdapterHelper::ItemRecord& record,
                                          IUnknown* filter) noexcept;

    [[nodiscard]] CZELItemDataBase* get() const noexcept { return item_.get(); }
    explicit operator bool() const noexcept { return get() != nullptr; }

    [[nodiscard]] bool SupportsInterface(InterfaceKey key) const noexcept;
    [[nodiscard]] HRESULT IsAvailable(InterfaceKey key, bool& available) const noexcept;
    [[nodiscard]] HRESULT IsReadOnly(InterfaceKey key, bool& read_only) const noexcept;
    [[nodiscard]] HRESULT GetSwitch(InterfaceKey key, bool& on) const noexcept;
    [[nodiscard]] HRESULT SetSwitch(InterfaceKey key, bool on) const noexcept;
    [[nodiscard]] HRESULT GetRange(InterfaceKey key, ZELAdapterHelper::RangeInfo& range) const noexcept;
    [[nodiscard]] HRESULT GetValue(InterfaceKey key, std::int32_t& value) const noexcept;
    [[nodiscard]] HRESULT SetValue(InterfaceKey key, std::int32_t value) const noexcept;
    [[nodiscard]] HRESULT GetAbsRange(InterfaceKey key, ZELAdapterHelper::AbsRangeInfo& range) const noexcept;
    [[nodiscard]] HRESULT GetAbsValue(InterfaceKey key, double& value) const noexcept;
    [[nodiscard]] HRESULT SetAbsValue(InterfaceKey key, double value) const noexcept;
    [[nodiscard]] HRESULT GetAbsUnit(InterfaceKey key, ZELAdapterHelper::SharedString& unit,
                                     std::int32_t& scale) const noexcept;
    [[nodiscard]] HRESULT Push(InterfaceKey key) const noexcept;
    [[nodiscard]] HRESULT GetMapStrings(InterfaceKey key,
                                        std::vector<ZELAdapterHelper::SharedString>& strings) const noexcept;

private:
    platform::com_ptr<CZELItemDataBase> item_;
};

}  // namespace ZELPropUI
