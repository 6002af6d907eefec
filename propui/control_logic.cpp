#include "propui/control_logic.h"

#include "propui/guarded_item.h"

namespace ZELPropUI {

using ZELAdapterHelper::SharedString;

bool IsEditable(ISliderController& controller) {
    return controller.IsAvailable() && !controller.IsReadOnly();
}

bool IsItemAvailable(CZELItemDataBase& item, InterfaceKey key) noexcept {
    bool available = false;
    return SUCCEEDED(GuardedItem(item).IsAvailable(key, available)) && available;
}

std::vector<SharedString> EntriesOf(CZELItemDataBase& item, InterfaceKey key) {
    std::vector<SharedString> entries;
    if (FAILED(GuardedItem(item).GetMapStrings(key, entries))) entries.clear();
    return entries;
}

std::optional<std::int32_t> SelectionOf(CZELItemDataBase& item, InterfaceKey key) noexcept {
    std::int32_t index = 0;
    if (FAILED(GuardedItem(item).GetValue(key, index))) return std::nullopt;
    return index;
}

void SelectEntry(CZELItemDataBase& item, InterfaceKey key, std::int32_t index) noexcept {
    static_cast<void>(GuardedItem(item).SetValue(key, index));
}

bool IsSwitchedOn(CZELItemDataBase& item, InterfaceKey key) noexcept {
    bool on = false;
    return SUCCEEDED(GuardedItem(item).GetSwitch(key, on)) && on;
}

bool MayToggle(CZELItemDataBase& item, InterfaceKey key) noexcept {
    bool read_only = false;
    static_cast<void>(GuardedItem(item).IsReadOnly(key, read_only));
    return !read_only;
}

void SetSwitchTo(CZELItemDataBase& item, InterfaceKey key, bool on) noexcept {
    static_cast<void>(GuardedItem(item).SetSwitch(key, on));
}

void PushButton(CZELItemDataBase& item, InterfaceKey key) noexcept {
    static_cast<void>(GuardedItem(item).Push(key));
}

}  // namespace ZELPropUI
