#include "apps/host/driver_file.h"

#include "apps/host/console.h"
#include "apps/host/host_error.h"

#include <windows.h>

#include <system_error>

namespace selvane_host {
namespace {

constexpr const char* factory_name = "SelvaneCreateDriver";

host_error unusable_driver(const std::filesystem::path& file, const std::string& why) {
    return wrong_use("cannot use the driver " + file.u8string() + ": " + why);
}

}  // namespace

platform::com_ptr<IUnknown> open_driver(const std::filesystem::path& file) {
    // A name without a folder would be looked for where the system has its own DLLs.
    std::error_code failure;
    const std::filesystem::path path = std::filesystem::absolute(file, failure);
    const HMODULE module = failure ? nullptr : LoadLibraryW(path.c_str());
    if (module == nullptr) throw unusable_driver(file, system_message(GetLastError()));
    using factory = HRESULT(STDMETHODCALLTYPE*)(IUnknown**);
    const auto make =
        reinterpret_cast<factory>(reinterpret_cast<void*>(GetProcAddress(module, factory_name)));
    if (make == nullptr) throw unusable_driver(file, std::string("it has no ") + factory_name);
    platform::com_ptr<IUnknown> driver;
    HRESULT hr = E_FAIL;
    try {
        hr = make(driver.put());
    } catch (...) {
        throw unusable_driver(file, std::string(factory_name) + " left an exception");
    }
    if (FAILED(hr)) throw unusable_driver(file, system_message(static_cast<DWORD>(hr)));
    if (!driver) throw unusable_driver(file, std::string(factory_name) + " gave no object");
    return driver;
}

}  // namespace selvane_host
