#pragma once

#include "platform/com.h"

namespace platform {

/// An interface that is part of a larger object, which gives it its identity and its life.
template <class Interface>
class com_part : public Interface {
public:
    explicit com_part(IUnknown& whole) noexcept : whole_(whole) {}
    com_part(const com_part&) = delete;
    com_part& operator=(const com_part&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        return whole_.QueryInterface(iid, out);
    }
    ULONG STDMETHODCALLTYPE AddRef() final { return whole_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() final { return whole_.Release(); }

protected:
    ~com_part() = default;

private:
    IUnknown& whole_;
};

}  // namespace platform
