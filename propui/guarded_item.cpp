#include "propui/guarded_item.h"

namespace ZELPropUI {
namespace {

using ZELAdapterHelper::AbsRangeInfo;
using ZELAdapterHelper::RangeInfo;
using ZELAdapterHelper::SharedString;

template <class Call>
HRESULT Guard(Call&& call) noexcept {
    try {
        return call();
    } catch (...) {
        return E_FAIL;
    }
}

}  // namespace

GuardedItem GuardedItem::Make(const ZELAdapterHelper::ItemRecord& record, IUnknown* filter) noexcept {
    CZELItemDataBase* made = nullptr;
    const HRESULT result = Guard([&] {
        if (record.factory != nullptr) record.factory(&made, filter, record);
        return S_OK;
    });
    const auto item = platform::com_ptr<CZELItemDataBase>::attach(made);
    return GuardedItem(SUCCEEDED(result) ? item.get() : nullptr);
}

bool GuardedItem::SupportsInterface(InterfaceKey key) const noexcept {
    return Guard([&] { return item_->SupportsInterface(key) ? S_OK : S_FALSE; }) == S_OK;
}

HRESULT GuardedItem::IsAvailable(InterfaceKey key, bool& available) const noexcept {
    return Guard([&] { return item_->IsAvailable(key, available); });
}

HRESULT GuardedItem::IsReadOnly(InterfaceKey key, bool& read_only) const noexcept {
    return Guard([&] { return item_->IsReadOnly(key, read_only); });
}

HRESULT GuardedItem::GetSwitch(InterfaceKey key, bool& on) const noexcept {
    return Guard([&] { return item_->GetSwitch(key, on); });
}

HRESULT GuardedItem::SetSwitch(InterfaceKey key, bool on) const noexcept {
    return Guard([&] { return item_->SetSwitch(key, on); });
}

HRESULT GuardedItem::GetRange(InterfaceKey key, RangeInfo& range) const noexcept {
    return Guard([&] { return item_->GetRange(key, range); });
}

HRESULT GuardedItem::GetValue(InterfaceKey key, std::int32_t& value) const noexcept {
    return Guard([&] { return item_->GetValue(key, value); });
}

HRESULT GuardedItem::SetValue(InterfaceKey key, std::int32_t value) const noexcept {
    return Guard([&] { return item_->SetValue(key, value); });
}

HRESULT GuardedItem::GetAbsRange(InterfaceKey key, AbsRangeInfo& range) const noexcept {
    return Guard([&] { return item_->GetAbsRange(key, range); });
}

HRESULT GuardedItem::GetAbsValue(InterfaceKey key, double& value) const noexcept {
    return Guard([&] { return item_->GetAbsValue(key, value); });
}

HRESULT GuardedItem::SetAbsValue(InterfaceKey key, double value) const noexcept {
    return Guard([&] { return item_->SetAbsValue(key, value); });
}

HRESULT GuardedItem::GetAbsUnit(InterfaceKey key, SharedString& unit, std::int32_t& scale) const noexcept {
    return Guard([&] { return item_->GetAbsUnit(key, unit, scale); });
}

HRESULT GuardedItem::Push(InterfaceKey key) const noexcept {
    return Guard([&] { return item_->Push(key); });
}

HRESULT GuardedItem::GetMapStrings(InterfaceKey key, std::vector<SharedString>& strings) const noexcept {
    return Guard([&] { return item_->GetMapStrings(key, strings); });
}

}  // namespace ZELPropUI
