#include "server/class_factory.h"

#include "server/counters.h"

#include <memory>
#include <new>

namespace selvane_server {
namespace {

bool IsFactoryInterface(REFIID iid) noexcept { return iid == IID_IUnknown || iid == IID_IClassFactory; }

}  // namespace

HRESULT CClassFactory::QueryInterface(REFIID iid, void** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (!IsFactoryInterface(iid)) return E_NOINTERFACE;
    AddRef();
    *out = static_cast<IClassFactory*>(this);
    return S_OK;
}

ULONG CClassFactory::AddRef() { return references_.add(); }

ULONG CClassFactory::Release() {
    const ULONG left = references_.give_up();
    if (left == 0) {
        --ServerCounters().live_factories;
        delete this;
    }
    return left;
}

HRESULT CClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** out) {
    if (out == nullptr) return E_POINTER;
    if (outer != nullptr && iid != IID_IUnknown) return E_NOINTERFACE;
    ZELAdapterHelper::CUnknown* made = nullptr;
    const HRESULT created = page_.create(outer, &made);
    std::unique_ptr<ZELAdapterHelper::CUnknown> object(made);
    if (object == nullptr) return FAILED(created) ? created : E_OUTOFMEMORY;
    if (FAILED(created)) return created;
    object->NonDelegatingAddRef();
    const HRESULT queried = object->NonDelegatingQueryInterface(iid, out);
    object.release()->NonDelegatingRelease();
    return queried;
}

HRESULT CClassFactory::LockServer(BOOL lock) {
    ServerCounters().server_locks += lock != 0 ? 1 : -1;
    return S_OK;
}

HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** out) noexcept {
    if (!IsFactoryInterface(iid)) return E_NOINTERFACE;
    const PageRecord* const page = FindPage(clsid);
    if (page == nullptr) return CLASS_E_CLASSNOTAVAILABLE;
    if (out == nullptr) return E_POINTER;
    auto* const factory = new (std::nothrow) CClassFactory(*page);
    if (factory == nullptr) return E_OUTOFMEMORY;
    ++ServerCounters().live_factories;
    factory->AddRef();
    *out = static_cast<IClassFactory*>(factory);
    return S_OK;
}

}  // namespace selvane_server
