#pragma once

#include "items/item_contract.h"

namespace selvane_server {

/// One class of the server.
struct PageRecord {
    GUID media_set;  ///< zero for a page that is bound to none
    GUID clsid;
    /// Makes an object that `outer`, or nobody for null, aggregates.
    HRESULT (*create)(IUnknown* outer, ZELAdapterHelper::CUnknown** object);
    wchar_t name[32];
};

[[nodiscard]] ZELAdapterHelper::RecordSpan<PageRecord> PageTable() noexcept;

/// Null for a class that the server does not have.
[[nodiscard]] const PageRecord* FindPage(REFCLSID clsid) noexcept;

}  // namespace selvane_server
