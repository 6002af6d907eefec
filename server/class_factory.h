#pragma once

#include "platform/reference_count.h"
#include "server/page_table.h"

#include <unknwn.h>

namespace selvane_server {

/// Makes the objects of one row of the page table. The reference count starts at 0; whoever hands the factory
/// out adds the first reference and counts it among the live factories, its last `Release` takes it out of
/// the count.
class CClassFactory final : public IClassFactory {
public:
    explicit CClassFactory(const PageRecord& page) noexcept : page_(page) {}
    CClassFactory(const CClassFactory&) = delete;
    CClassFactory& operator=(const CClassFactory&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

private:
    ~CClassFactory() = default;

    platform::reference_count references_;
    PageRecord page_;
};

/// What `DllGetClassObject` does: a new factory for a class of the page table.
[[nodiscard]] HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** out) noexcept;

}  // namespace selvane_server
