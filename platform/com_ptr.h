#pragma once

#include "platform/com.h"

#include <utility>

namespace platform {

/// A counted reference to a COM object or to anything else with AddRef and Release.
template <class T>
class com_ptr {
public:
    com_ptr() noexcept = default;
    /// Takes a reference of its own.
    explicit com_ptr(T* object) noexcept : object_(object) {
        if (object_ != nullptr) object_->AddRef();
    }
    com_ptr(const com_ptr& other) noexcept : com_ptr(other.object_) {}
    com_ptr(com_ptr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    com_ptr& operator=(com_ptr other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~com_ptr() {
        if (object_ != nullptr) object_->Release();
    }

    /// Takes over a reference that the caller holds.
    [[nodiscard]] static com_ptr attach(T* object) noexcept {
        com_ptr made;
        made.object_ = object;
        return made;
    }
    /// Hands the reference over to the caller.
    [[nodiscard]] T* detach() noexcept { return std::exchange(object_, nullptr); }

    void reset() noexcept { *this = com_ptr(); }
    [[nodiscard]] T* get() const noexcept { return object_; }
    T* operator->() const noexcept { return object_; }
    T& operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

    /// Drops what is held and gives the place where a function puts a reference for the caller.
    [[nodiscard]] T** put() noexcept {
        reset();
        return &object_;
    }
    [[nodiscard]] void** put_void() noexcept { return reinterpret_cast<void**>(put()); }

private:
    T* object_ = nullptr;
};

/// Asks an object, null allowed, for an interface; null when it has none.
template <class Interface>
[[nodiscard]] com_ptr<Interface> query(IUnknown* object) {
    com_ptr<Interface> found;
    if (object != nullptr &&
        FAILED(object->QueryInterface(interface_id<Interface>::value, found.put_void()))) {
        found.reset();
    }
    return found;
}

}  // namespace platform
