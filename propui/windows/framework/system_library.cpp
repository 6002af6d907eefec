#include "propui/windows/framework/system_library.h"

namespace ZELPropUI::Framework {

HMODULE LoadSystemLibrary(const wchar_t* name) noexcept {
    return LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
}

}  // namespace ZELPropUI::Framework
