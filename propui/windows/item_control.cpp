#include "propui/windows/item_control.h"

#include "propui/attempt.h"

namespace ZELPropUI {

bool CItemControl::IsItemAvailable() const noexcept {
    bool available = false;
    const HRESULT hr = Attempt([&] { return Item().IsAvailable(Key(), available); });
    return SUCCEEDED(hr) && available;
}

}  // namespace ZELPropUI
