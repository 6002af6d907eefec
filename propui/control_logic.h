#pragma once

#include "items/item_contract.h"
#include "propui/slider_controller.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

/// What the controls of a page ask their elements, and what they do to them: the same in a window and in
/// whatever else shows a page. A driver that throws counts as one that fails.
namespace ZELPropUI {

// Sliders, edits and up-down controls.
[[nodiscard]] bool IsEditable(ISliderController& controller);

// Lists, check boxes and buttons.
/// False also when the item fails to tell.
[[nodiscard]] bool IsItemAvailable(CZELItemDataBase& item, InterfaceKey key) noexcept;

/// The entries of a list; none when the item fails to tell.
[[nodiscard]] std::vector<ZELAdapterHelper::SharedString> EntriesOf(CZELItemDataBase& item, InterfaceKey key);
/// Index of the selected entry; not set when the item fails to tell.
[[nodiscard]] std::optional<std::int32_t> SelectionOf(CZELItemDataBase& item, InterfaceKey key) noexcept;
/// The refresh that follows shows what became of it.
void SelectEntry(CZELItemDataBase& item, InterfaceKey key, std::int32_t index) noexcept;

[[nodiscard]] bool IsSwitchedOn(CZELItemDataBase& item, InterfaceKey key) noexcept;
/// Whether a click toggles a check box: one that is read-only stays as it is, and is not disabled by that.
[[nodiscard]] bool MayToggle(CZELItemDataBase& item, InterfaceKey key) noexcept;
void SetSwitchTo(CZELItemDataBase& item, InterfaceKey key, bool on) noexcept;

void PushButton(CZELItemDataBase& item, InterfaceKey key) noexcept;

/// Whether a typed character reaches the text of an edit: the digits and what stands between them.
[[nodiscard]] constexpr bool IsEditCharacter(std::uint32_t character) noexcept {
    return character >= ',' && character <= '9';
}

// The box behind a text that is no value.
constexpr std::wstring_view edit_error_text = L"Error parsing value!";
constexpr std::wstring_view edit_error_caption = L"Error";

}  // namespace ZELPropUI
