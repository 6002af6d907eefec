#include "propui/windows/framework/module.h"

namespace ZELPropUI::Framework {
namespace {

HINSTANCE module_handle = nullptr;

}  // namespace

HINSTANCE ModuleHandle() noexcept { return module_handle; }

void SetModuleHandle(HINSTANCE module) noexcept { module_handle = module; }

}  // namespace ZELPropUI::Framework
