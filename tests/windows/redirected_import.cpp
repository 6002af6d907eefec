#include "tests/windows/redirected_import.h"

#include <cstddef>
#include <cstring>

namespace page_test {
namespace {

void** FindSlot(HMODULE module, const char* name) {
    auto* const base = reinterpret_cast<char*>(module);
    const auto at = [base](std::size_t offset) { return static_cast<void*>(base + offset); };
    const auto* const head = static_cast<const IMAGE_DOS_HEADER*>(at(0));
    const auto* const image =
        static_cast<const IMAGE_NT_HEADERS*>(at(static_cast<std::size_t>(head->e_lfanew)));
    const auto& directory = image->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* library = static_cast<const IMAGE_IMPORT_DESCRIPTOR*>(at(directory.VirtualAddress));
    for (; library->Name != 0; ++library) {
        const auto* names = static_cast<const IMAGE_THUNK_DATA*>(at(library->OriginalFirstThunk));
        auto* const slots = static_cast<void**>(at(library->FirstThunk));
        for (std::size_t i = 0; names[i].u1.AddressOfData != 0; ++i) {
            if (IMAGE_SNAP_BY_ORDINAL(names[i].u1.Ordinal)) continue;
            const auto* const import =
                static_cast<const IMAGE_IMPORT_BY_NAME*>(at(names[i].u1.AddressOfData));
            if (std::strcmp(import->Name, name) == 0) return slots + i;
        }
    }
    return nullptr;
}

}  // namespace

RedirectedImport::RedirectedImport(HMODULE module, const char* name, void* replacement)
    : slot_(FindSlot(module, name)), before_(slot_ != nullptr ? Put(replacement) : nullptr) {}

RedirectedImport::~RedirectedImport() {
    if (slot_ != nullptr) Put(before_);
}

void* RedirectedImport::Put(void* function) const {
    DWORD protection = 0;
    VirtualProtect(slot_, sizeof *slot_, PAGE_READWRITE, &protection);
    void* const before = *slot_;
    *slot_ = function;
    VirtualProtect(slot_, sizeof *slot_, protection, &protection);
    return before;
}

}  // namespace page_test
