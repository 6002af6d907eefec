#pragma once

#include "items/item_contract.h"
#include "platform/com_ptr.h"
#include "propui/windows/control_window.h"

#include <string>
#include <utility>

namespace ZELPropUI {

/// A control that speaks to its item directly.
class CItemControl : public CControlWindow {
public:
    CItemControl(ZELAdapterHelper::CZELItemDataBase* item, ZELAdapterHelper::InterfaceKey key,
                 std::wstring caption = {})
        : item_(item), key_(key), caption_(std::move(caption)) {}

protected:
    [[nodiscard]] ZELAdapterHelper::CZELItemDataBase& Item() const noexcept { return *item_; }
    [[nodiscard]] ZELAdapterHelper::InterfaceKey Key() const noexcept { return key_; }
    [[nodiscard]] const std::wstring& Caption() const noexcept { return caption_; }

private:
    platform::com_ptr<ZELAdapterHelper::CZELItemDataBase> item_;
    ZELAdapterHelper::InterfaceKey key_;
    std::wstring caption_;
};

}  // namespace ZELPropUI
