#include "items/item_contract.h"

namespace ZELAdapterHelper {

CZELItemDataBase::CZELItemDataBase(IUnknown* outer) : CUnknown(outer) { AddRef(); }

HRESULT CZELItemDataBase::NonDelegatingQueryInterface(REFIID iid, void** out) {
    return iid == platform::null_guid ? S_OK : CUnknown::NonDelegatingQueryInterface(iid, out);
}

HRESULT CZELItemDataBase::Refresh(InterfaceKey) { return S_OK; }

HRESULT CZELItemDataBase::IsAvailable(InterfaceKey, bool& available) {
    available = true;
    return S_OK;
}

HRESULT CZELItemDataBase::IsReadOnly(InterfaceKey, bool& read_only) {
    read_only = false;
    return S_OK;
}

HRESULT CZELItemDataBase::GetSwitch(InterfaceKey, bool&) { return E_NOTIMPL; }

HRESULT CZELItemDataBase::SetSwitch(InterfaceKey, bool) { return E_NOTIMPL; }

HRESULT CZELItemDataBase::GetSwitchDefault(InterfaceKey, bool&) { return E_NOTIMPL; }

HRESULT CZELItemDataBase::GetRange(InterfaceKey, RangeInfo&) { return E_NOTIMPL; }

HRESULT CZELItemDataBase::GetValue(InterfaceKey, std::int32_t&) { return E_NOTIMPL; }

HRESULT CZELItemDataBase::SetValue(InterfaceKey, std::int32_t) { return E_NOTIMPL; }

HRESULT CZELItemDataBase::GetAbsRange(InterfaceKey, AbsRangeInfo&) { return E_NOTIMPL; }

HRESULT CZELItemDataBase::GetAbsValue(InterfaceKey, double&) { return E_NOTIMPL; }

HRESULT CZELItemDataBase::SetAbsValue(InterfaceKey, double) { return E_NOTIMPL; }

HRESULT CZELItemDataBase::GetAbsUnit(InterfaceKey, SharedString&, std::int32_t&) { return E_NOTIMPL; }

HRESULT CZELItemDataBase::Push(InterfaceKey) { return E_NOTIMPL; }

HRESULT CZELItemDataBase::GetMapStrings(InterfaceKey, std::vector<SharedString>&) { return E_NOTIMPL; }

HRESULT CZELItemDataBase::Reserved1(InterfaceKey) { return E_NOTIMPL; }

HRESULT CZELItemDataBase::Reserved2(InterfaceKey) { return E_NOTIMPL; }

HRESULT CZELItemDataBase::Reserved3(InterfaceKey) { return E_NOTIMPL; }

bool CZELItemDataBase::IsDoNotSerialize(InterfaceKey) { return false; }

HRESULT CZELItemDataBase::Closing1(InterfaceKey) { return 1; }

HRESULT CZELItemDataBase::Closing2(InterfaceKey) { return 1; }

RecordSpan<ElementRecord> ElementsOf(const ItemRecord& record) noexcept {
    return {record.element_count == 1 ? &record.inline_element : record.elements, record.element_count};
}

RecordSpan<InterfaceEntry> InterfacesOf(const ElementRecord& record) noexcept {
    if (record.interface_count < 2) {
        return {&record.inline_interface, 1};
    }
    return {record.interfaces, record.interface_count};
}

}  // namespace ZELAdapterHelper
