#include "platform/windows/runtime_memory.h"
#include "propui/windows/framework/module.h"
#include "server/class_factory.h"
#include "server/counters.h"
#include "server/registration.h"

#include <olectl.h>

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* out) {
    return selvane_server::GetClassObject(clsid, iid, out);
}

STDAPI DllCanUnloadNow() { return selvane_server::CanUnload() ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return selvane_server::RegisterServer(); }

STDAPI DllUnregisterServer() { return selvane_server::UnregisterServer(); }

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID process_ends) {
    if (reason == DLL_PROCESS_ATTACH) {
        if (!platform::has_runtime_memory()) return FALSE;
        ZELPropUI::Framework::SetModuleHandle(module);
        DisableThreadLibraryCalls(module);
    } else if (reason == DLL_PROCESS_DETACH) {
        ZELPropUI::Framework::SetModuleHandle(nullptr);
        if (process_ends == nullptr) platform::release_runtime_memory();
    }
    return TRUE;
}
