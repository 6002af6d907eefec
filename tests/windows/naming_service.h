#pragma once

#include <windows.h>

#include <objbase.h>

#include <initguid.h>
#include <oleacc.h>

#include <map>
#include <string>

namespace page_test {

/// Stands in for the platform's service of accessible names, for everyone in this process, while it lives.
class NamingService final : public IAccPropServices, public IClassFactory {
public:
    NamingService() {
        CoInitialize(nullptr);
        CoRegisterClassObject(CLSID_AccPropServices, static_cast<IClassFactory*>(this), CLSCTX_INPROC_SERVER,
                              REGCLS_MULTIPLEUSE, &cookie_);
    }
    NamingService(const NamingService&) = delete;
    NamingService& operator=(const NamingService&) = delete;
    ~NamingService() {
        CoRevokeClassObject(cookie_);
        CoUninitialize();
    }

    std::map<HWND, std::wstring> names;  ///< of windows that have one

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        *out = nullptr;
        if (iid == IID_IUnknown || iid == IID_IClassFactory) *out = static_cast<IClassFactory*>(this);
        if (iid == IID_IAccPropServices) *out = static_cast<IAccPropServices*>(this);
        return *out != nullptr ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** out) override {
        return QueryInterface(iid, out);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

    HRESULT STDMETHODCALLTYPE SetHwndPropStr(HWND window, DWORD object, DWORD child, MSAAPROPID property,
                                             LPCWSTR text) override {
        if (!IsName(window, object, child, property)) return E_INVALIDARG;
        names[window] = text;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE ClearHwndProps(HWND window, DWORD object, DWORD child,
                                             const MSAAPROPID* properties, int count) override {
        if (count != 1 || !IsName(window, object, child, *properties)) return E_INVALIDARG;
        names.erase(window);
        return S_OK;
    }

    // What nobody asks for.
    HRESULT STDMETHODCALLTYPE SetPropValue(const BYTE*, DWORD, MSAAPROPID, VARIANT) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetPropServer(const BYTE*, DWORD, const MSAAPROPID*, int, IAccPropServer*,
                                            AnnoScope) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ClearProps(const BYTE*, DWORD, const MSAAPROPID*, int) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetHwndProp(HWND, DWORD, DWORD, MSAAPROPID, VARIANT) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetHwndPropServer(HWND, DWORD, DWORD, const MSAAPROPID*, int, IAccPropServer*,
                                                AnnoScope) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ComposeHwndIdentityString(HWND, DWORD, DWORD, BYTE**, DWORD*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE DecomposeHwndIdentityString(const BYTE*, DWORD, HWND*, DWORD*,
                                                          DWORD*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetHmenuProp(HMENU, DWORD, MSAAPROPID, VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetHmenuPropStr(HMENU, DWORD, MSAAPROPID, LPCWSTR) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetHmenuPropServer(HMENU, DWORD, const MSAAPROPID*, int, IAccPropServer*,
                                                 AnnoScope) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ClearHmenuProps(HMENU, DWORD, const MSAAPROPID*, int) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ComposeHmenuIdentityString(HMENU, DWORD, BYTE**, DWORD*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE DecomposeHmenuIdentityString(const BYTE*, DWORD, HMENU*, DWORD*) override {
        return E_NOTIMPL;
    }

private:
    static bool IsName(HWND window, DWORD object, DWORD child, const MSAAPROPID& property) {
        return IsWindow(window) != 0 && object == static_cast<DWORD>(OBJID_CLIENT) && child == CHILDID_SELF &&
               property == PROPID_ACC_NAME;
    }

    DWORD cookie_ = 0;
};

}  // namespace page_test
