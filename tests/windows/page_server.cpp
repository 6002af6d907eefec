#include "tests/windows/page_server.h"

#include <stdexcept>

namespace page_test {

PageServer::PageServer() : module_(LoadLibraryW(Path().c_str())) {
    if (module_ == nullptr) throw std::runtime_error("selvane_page.dll is not beside the program");
    Find(get_class_object_, "DllGetClassObject");
    Find(can_unload_, "DllCanUnloadNow");
    Find(register_, "DllRegisterServer");
    Find(unregister_, "DllUnregisterServer");
}

PageServer::~PageServer() { FreeLibrary(module_); }

template <class Function>
void PageServer::Find(Function& function, const char* name) {
    const FARPROC found = GetProcAddress(module_, name);
    if (found == nullptr) throw std::runtime_error(std::string(name) + " is not exported");
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

std::wstring PageServer::Path() {
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const std::wstring path(program);
    return path.substr(0, path.find_last_of(L'\\') + 1) + L"selvane_page.dll";
}

platform::com_ptr<IClassFactory> PageServer::Factory(REFCLSID clsid) const {
    platform::com_ptr<IClassFactory> factory;
    GetClassObject(clsid, IID_IClassFactory, factory.put_void());
    return factory;
}

PagePtr PageServer::MakePage(REFCLSID clsid) const {
    PagePtr page;
    Factory(clsid)->CreateInstance(nullptr, IID_IPropertyPage, page.put_void());
    return page;
}

}  // namespace page_test
