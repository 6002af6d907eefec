#include "items/unknown.h"

#include <atomic>

namespace ZELAdapterHelper {
namespace {

std::atomic<std::int32_t> live_objects{0};

}  // namespace

CUnknown::CUnknown(IUnknown* outer) noexcept : controlling_(outer != nullptr ? outer : &face_), face_(*this) {
    ++live_objects;
}

CUnknown::~CUnknown() { --live_objects; }

HRESULT CUnknown::NonDelegatingQueryInterface(REFIID iid, void** out) {
    if (out == nullptr) return E_POINTER;
    if (iid != platform::iid_unknown) {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    face_.AddRef();
    *out = static_cast<IUnknown*>(&face_);
    return S_OK;
}

ULONG CUnknown::NonDelegatingAddRef() { return references_.add(); }

ULONG CUnknown::NonDelegatingRelease() {
    const ULONG left = GiveUpReference();
    if (left == 0) delete this;
    return left;
}

ULONG CUnknown::GiveUpReference() noexcept { return references_.give_up(); }

std::int32_t CUnknown::LiveObjects() noexcept { return live_objects; }

}  // namespace ZELAdapterHelper
