#pragma once

#include "platform/reference_count.h"

#include <cstdint>

namespace ZELAdapterHelper {

/// The object's own IUnknown operations, which an outer object that aggregates it does not replace.
class INonDelegatingUnknown {
public:
    virtual HRESULT NonDelegatingQueryInterface(REFIID iid, void** out) = 0;
    virtual ULONG NonDelegatingAddRef() = 0;
    virtual ULONG NonDelegatingRelease() = 0;

protected:
    ~INonDelegatingUnknown() = default;
};

/// The base of all objects of the component: counts its references, supports aggregation, and counts itself
/// among the live objects of the process, which keep the component loaded.
class CUnknown : public INonDelegatingUnknown {
public:
    /// `outer` is the object that aggregates this one, or null. The reference count starts at 0.
    explicit CUnknown(IUnknown* outer) noexcept;
    CUnknown(const CUnknown&) = delete;
    CUnknown& operator=(const CUnknown&) = delete;

    /// E_POINTER for a null `out`; `IUnknown` gives the object with a reference; anything else E_NOINTERFACE
    /// and null.
    HRESULT NonDelegatingQueryInterface(REFIID iid, void** out) override;
    ULONG NonDelegatingAddRef() override;
    /// Deletes the object with its last reference.
    ULONG NonDelegatingRelease() override;
    virtual ~CUnknown();

    /// The outer object, or this one.
    [[nodiscard]] IUnknown* GetOwner() const noexcept { return controlling_; }

    /// References through the controlling unknown.
    ULONG AddRef() { return controlling_->AddRef(); }
    ULONG Release() { return controlling_->Release(); }

    /// Objects of this class that exist in the process.
    [[nodiscard]] static std::int32_t LiveObjects() noexcept;

protected:
    /// Takes a reference away and gives what `NonDelegatingRelease` answers. At 0 the count stands at 1
    /// again, so that the end may hand the object around without deleting it a second time.
    [[nodiscard]] ULONG GiveUpReference() noexcept;

private:
    // What others see of this object as an IUnknown: forwards to the operations above.
    class Face final : public IUnknown {
    public:
        explicit Face(CUnknown& self) noexcept : self_(self) {}
        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
            return self_.NonDelegatingQueryInterface(iid, out);
        }
        ULONG STDMETHODCALLTYPE AddRef() override { return self_.NonDelegatingAddRef(); }
        ULONG STDMETHODCALLTYPE Release() override { return self_.NonDelegatingRelease(); }

    private:
        CUnknown& self_;
    };

    IUnknown* controlling_;
    platform::reference_count references_;
    Face face_;
};

}  // namespace ZELAdapterHelper
