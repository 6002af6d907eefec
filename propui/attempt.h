#pragma once

#include "platform/hresult.h"

namespace ZELPropUI {

/// Runs something that ends in an item or a factory, behind which a driver may throw: that too is E_FAIL.
template <class Call>
[[nodiscard]] HRESULT Attempt(Call&& call) noexcept {
    try {
        return call();
    } catch (...) {
        return E_FAIL;
    }
}

/// The same for something that tells of success itself.
template <class Call>
[[nodiscard]] bool Succeeds(Call&& call) noexcept {
    try {
        return call();
    } catch (...) {
        return false;
    }
}

}  // namespace ZELPropUI
