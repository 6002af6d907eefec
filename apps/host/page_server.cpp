#include "apps/host/page_server.h"

#include "apps/host/console.h"
#include "apps/host/host_error.h"
#include "platform/com_ptr.h"
#include "wire/page_classes.h"

#include <ole2.h>

#include <array>
#include <cstring>
#include <string>

namespace selvane_host {
namespace {

constexpr std::size_t longest_path = 32768;

using get_class_object = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
using can_unload_now = HRESULT(STDAPICALLTYPE*)();

host_error unusable(const std::filesystem::path& dll, const std::string& why) {
    return wrong_use("cannot use " + dll.u8string() + ": " + why);
}

template <class Function>
Function find_entry(HMODULE module, const char* name) noexcept {
    const FARPROC entry = GetProcAddress(module, name);
    Function function = nullptr;
    std::memcpy(&function, &entry, sizeof(function));
    return function;
}

}  // namespace

com_apartment::com_apartment() {
    if (FAILED(OleInitialize(nullptr))) throw wrong_use("COM cannot be initialised");
}

com_apartment::~com_apartment() { OleUninitialize(); }

page_server::page_server(const std::filesystem::path& dll) : module_(LoadLibraryW(dll.c_str())) {
    if (module_ == nullptr) throw unusable(dll, system_message(GetLastError()));
    try {
        offer_classes(dll);
    } catch (...) {
        withdraw();
        throw;
    }
}

page_server::~page_server() { withdraw(); }

void page_server::offer_classes(const std::filesystem::path& dll) {
    const auto entry = find_entry<get_class_object>(module_, "DllGetClassObject");
    if (entry == nullptr) throw unusable(dll, "it has no DllGetClassObject");
    for (const CLSID& clsid : wire::page_classes) {
        platform::com_ptr<IUnknown> factory;
        DWORD cookie = 0;
        HRESULT hr = entry(clsid, IID_IClassFactory, factory.put_void());
        if (SUCCEEDED(hr)) {
            hr = CoRegisterClassObject(clsid, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                       &cookie);
        }
        if (FAILED(hr)) throw unusable(dll, system_message(static_cast<DWORD>(hr)));
        cookies_.push_back(cookie);
    }
}

void page_server::withdraw() noexcept {
    for (const DWORD cookie : cookies_) CoRevokeClassObject(cookie);
    // A frame that a failure has cut short leaves pages behind, and they need their code.
    const auto may_unload = find_entry<can_unload_now>(module_, "DllCanUnloadNow");
    if (may_unload == nullptr || may_unload() == S_OK) FreeLibrary(module_);
}

std::filesystem::path page_server_path() {
    std::wstring program(longest_path, L'\0');
    program.resize(GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size())));
    return std::filesystem::path(program).parent_path() / "selvane_page.dll";
}

}  // namespace selvane_host
