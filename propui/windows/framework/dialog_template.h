#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace ZELPropUI::Framework {

/// The head of a dialog resource, of the old form or the extended one.
struct DialogTemplate {
    SIZE size{};            ///< dialog units
    int points = 0;         ///< height of the font, 0 without one
    std::wstring typeface;  ///< empty without a font
};

/// Empty where the module has no such resource.
[[nodiscard]] std::optional<DialogTemplate> ReadDialogTemplate(HMODULE module, int id);

/// The size of a page in pixels. Pages are measured with the font of the platform's own property sheet, where
/// there is one.
[[nodiscard]] SIZE PageSize(const DialogTemplate& page);

}  // namespace ZELPropUI::Framework
