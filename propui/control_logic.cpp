#include "propui/control_logic.h"

#include "propui/attempt.h"

#include <tuple>

namespace ZELPropUI {

using ZELAdapterHelper::SharedString;

bool IsEditable(ISliderController& controller) {
    return controller.IsAvailable() && !controller.IsReadOnly();
}

bool IsItemAvailable(CZELItemDataBase& item, InterfaceKey key) noexcept {
    bool available = false;
    return SUCCEEDED(Attempt([&] { return item.IsAvailable(key, available); })) && available;
}

std::vector<SharedString> EntriesOf(CZELItemDataBase& item, InterfaceKey key) {
    std::vector<SharedString> entries;
    if (FAILED(Attempt([&] { return item.GetMapStrings(key, entries); }))) entries.clear();
    return entries;
}

std::optional<std::int32_t> SelectionOf(CZELItemDataBase& item, InterfaceKey key) noexcept {
    std::int32_t index = 0;
    if (FAILED(Attempt([&] { return item.GetValue(key, index); }))) return std::nullopt;
    return index;
}

void SelectEntry(CZELItemDataBase& item, InterfaceKey key, std::int32_t index) noexcept {
    std::ignore = Attempt([&] { return item.SetValue(key, index); });
}

bool IsSwitchedOn(CZELItemDataBase& item, InterfaceKey key) noexcept {
    bool on = false;
    return SUCCEEDED(Attempt([&] { return item.GetSwitch(key, on); })) && on;
}

bool MayToggle(CZELItemDataBase& item, InterfaceKey key) noexcept {
    bool read_only = false;
    std::ignore = Attempt([&] { return item.IsReadOnly(key, read_only); });
    return !read_only;
}

void SetSwitchTo(CZELItemDataBase& item, InterfaceKey key, bool on) noexcept {
    std::ignore = Attempt([&] { return item.SetSwitch(key, on); });
}

void PushButton(CZELItemDataBase& item, InterfaceKey key) noexcept {
    std::ignore = Attempt([&] { return item.Push(key); });
}

}  // namespace ZELPropUI
