#pragma once

#include "platform/reference_count.h"

namespace platform {

/// Counts the references to an object. It is made with none; the last `Release` deletes it.
template <class Interface>
class com_object : public Interface {
public:
    com_object() noexcept = default;
    com_object(const com_object&) = delete;
    com_object& operator=(const com_object&) = delete;

    ULONG STDMETHODCALLTYPE AddRef() override { return references_.add(); }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = references_.give_up();
        if (left == 0) delete this;
        return left;
    }

protected:
    virtual ~com_object() = default;

private:
    reference_count references_;
};

}  // namespace platform
