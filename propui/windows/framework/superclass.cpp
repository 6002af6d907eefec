#include "propui/windows/framework/superclass.h"

#include "propui/windows/framework/module.h"
#include "propui/windows/framework/process_lock.h"

namespace ZELPropUI::Framework {
namespace {

constexpr int slot_size = static_cast<int>(sizeof(void*));

// The base class keeps data of its own in the extra bytes, how many differs between versions of the platform.
// Ours stand behind them, at an aligned place.
constexpr int ExtraBytes(int base_extra) noexcept {
    return (base_extra + slot_size - 1) / slot_size * slot_size + slot_size;
}

int SlotOf(HWND window) noexcept {
    return static_cast<int>(GetClassLongPtrW(window, GCL_CBWNDEXTRA)) - slot_size;
}

}  // namespace

Superclass::~Superclass() {
    if (registered_) UnregisterClassW(name_, module_);
}

bool Superclass::Register() noexcept {
    const ProcessLock lock;
    if (registered_) return true;
    WNDCLASSEXW definition{};
    definition.cbSize = sizeof definition;
    if (GetClassInfoExW(nullptr, base_name_, &definition) == 0) return false;
    base_procedure_ = definition.lpfnWndProc;
    definition.lpfnWndProc = procedure_;
    definition.style &= ~static_cast<UINT>(CS_GLOBALCLASS);
    definition.cbWndExtra = ExtraBytes(definition.cbWndExtra);
    module_ = ModuleHandle();
    definition.hInstance = module_;
    definition.lpszClassName = name_;
    registered_ = RegisterClassExW(&definition) != 0;
    return registered_;
}

void* Superclass::Pointer(HWND window) noexcept {
    return reinterpret_cast<void*>(GetWindowLongPtrW(window, SlotOf(window)));
}

void Superclass::SetPointer(HWND window, void* pointer) noexcept {
    SetWindowLongPtrW(window, SlotOf(window), reinterpret_cast<LONG_PTR>(pointer));
}

}  // namespace ZELPropUI::Framework
