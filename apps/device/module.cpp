#include "apps/device/module.h"

#include <atomic>

namespace selvane_camera {
namespace {

std::atomic<LONG> references{0};

}  // namespace

module_reference::module_reference() noexcept { ++references; }
module_reference::~module_reference() { --references; }

LONG module_references() noexcept { return references; }
void lock_module(bool lock) noexcept { references += lock ? 1 : -1; }

HMODULE own_module(DWORD flags) noexcept {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flags, reinterpret_cast<LPCWSTR>(&references),
                       &module);
    return module;
}

}  // namespace selvane_camera
