#pragma once

#include <windows.h>

#include <new>

namespace platform {

/// The edge of a COM operation: what a body throws becomes a code.
template <class Body>
[[nodiscard]] HRESULT at_com_edge(Body&& body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

}  // namespace platform
