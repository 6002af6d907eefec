#pragma once

#include "apps/device/module.h"
#include "platform/com_object.h"

namespace selvane_camera {

/// An object that keeps the module loaded. It has one interface, unless a class behind it says otherwise.
template <class Interface>
class module_object : public platform::com_object<Interface> {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (out == nullptr) return E_POINTER;
        const bool known = iid == platform::iid_unknown || iid == __uuidof(Interface);
        *out = known ? static_cast<Interface*>(this) : nullptr;
        if (!known) return E_NOINTERFACE;
        this->AddRef();
        return S_OK;
    }

private:
    module_reference module_;
};

}  // namespace selvane_camera
