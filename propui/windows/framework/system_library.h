#pragma once

#include <windows.h>

namespace ZELPropUI::Framework {

/// Loads a library of the platform, for the life of the process, from the system's folder alone: by its name,
/// one that lies beside the host would be taken. Null where there is none.
HMODULE LoadSystemLibrary(const wchar_t* name) noexcept;

}  // namespace ZELPropUI::Framework
