#include "apps/device/class_factory.h"
#include "apps/device/module.h"
#include "apps/device/registration.h"
#include "platform/windows/runtime_memory.h"

#include <olectl.h>

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* out) {
    return selvane_camera::get_class_object(clsid, iid, out);
}

STDAPI DllCanUnloadNow() { return selvane_camera::module_references() == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return selvane_camera::register_devices(); }

STDAPI DllUnregisterServer() { return selvane_camera::unregister_devices(); }

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID process_ends) {
    if (reason == DLL_PROCESS_ATTACH) {
        if (!platform::has_runtime_memory()) return FALSE;
        DisableThreadLibraryCalls(module);
    } else if (reason == DLL_PROCESS_DETACH && process_ends == nullptr) {
        platform::release_runtime_memory();
    }
    return TRUE;
}
