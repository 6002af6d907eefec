#pragma once

#include "items/item_contract.h"
#include "platform/com_ptr.h"
#include "propui/windows/control_window.h"

namespace ZELPropUI {

/// A control that speaks to its item directly.
class CItemControl : public CControlWindow {
protected:
    CItemControl(ZELAdapterHelper::CZELItemDataBase* item, ZELAdapterHelper::InterfaceKey key)
        : item_(item), key_(key) {}

    [[nodiscard]] ZELAdapterHelper::CZELItemDataBase& Item() const noexcept { return *item_; }
    [[nodiscard]] ZELAdapterHelper::InterfaceKey Key() const noexcept { return key_; }

private:
    platform::com_ptr<ZELAdapterHelper::CZELItemDataBase> item_;
    ZELAdapterHelper::InterfaceKey key_;
};

}  // namespace ZELPropUI
