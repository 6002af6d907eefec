#pragma once

#include "platform/com_ptr.h"
#include "tests/support/on_stack.h"

#include <windows.h>

#include <ocidl.h>

namespace page_test {

/// A site that counts. Lives on the stack of the test.
class CountingSite final : public test_support::OnStack<IPropertyPageSite> {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        *out = nullptr;
        if (iid != IID_IUnknown && iid != IID_IPropertyPageSite) return E_NOINTERFACE;
        *out = this;
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnStatusChange(DWORD) override { return Note(); }
    HRESULT STDMETHODCALLTYPE GetLocaleID(LCID*) override { return Note(); }
    HRESULT STDMETHODCALLTYPE GetPageContainer(IUnknown**) override { return Note(); }
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*) override { return Note(); }

    int calls = 0;

private:
    HRESULT Note() {
        ++calls;
        return E_NOTIMPL;
    }
};

/// An object that aggregates another one, and answers for an interface of its own.
class Outer final : public test_support::OnStack<IUnknown> {
public:
    static constexpr IID own_interface = {0xC0FFEE00, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (iid == IID_IUnknown || iid == own_interface) {
            *out = this;
            AddRef();
            return S_OK;
        }
        return inner->QueryInterface(iid, out);
    }

    platform::com_ptr<IUnknown> inner;
};

/// An object that is no camera: it has nothing but IUnknown.
class PlainObject final : public test_support::OnStack<IUnknown> {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        *out = nullptr;
        if (iid != IID_IUnknown) return E_NOINTERFACE;
        *out = this;
        AddRef();
        return S_OK;
    }
};

/// References that an object says it has.
inline ULONG ReferencesOf(IUnknown& object) {
    object.AddRef();
    return object.Release();
}

}  // namespace page_test
