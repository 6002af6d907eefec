#include "apps/host/devices.h"

#include "apps/host/console.h"
#include "apps/host/host_error.h"
#include "platform/text.h"
#include "platform/visible_text.h"
#include "platform/windows/owned.h"

#include <strmif.h>
#include <uuids.h>

#include <vector>

namespace selvane_host {
namespace {

using platform::com_ptr;

struct device {
    std::string name;
    com_ptr<IMoniker> moniker;
};

std::string friendly_name(IMoniker& moniker) {
    com_ptr<IPropertyBag> properties;
    if (FAILED(moniker.BindToStorage(nullptr, nullptr, IID_IPropertyBag, properties.put_void()))) return {};
    VARIANT value;
    VariantInit(&value);
    std::string name;
    if (SUCCEEDED(properties->Read(L"FriendlyName", &value, nullptr)) && value.vt == VT_BSTR) {
        name = platform::narrow({value.bstrVal, SysStringLen(value.bstrVal)});
    }
    VariantClear(&value);
    return name;
}

// No enumerator is the system's way to say that there is no device.
com_ptr<IEnumMoniker> enumerate_devices() {
    com_ptr<ICreateDevEnum> system;
    com_ptr<IEnumMoniker> devices;
    HRESULT hr = CoCreateInstance(CLSID_SystemDeviceEnum, nullptr, CLSCTX_INPROC_SERVER, IID_ICreateDevEnum,
                                  system.put_void());
    if (SUCCEEDED(hr)) {
        hr = system->CreateClassEnumerator(CLSID_VideoInputDeviceCategory, devices.put(), 0);
    }
    if (FAILED(hr)) {
        throw wrong_use("the system does not name its devices: " + system_message(static_cast<DWORD>(hr)));
    }
    return devices;
}

std::vector<device> find_devices() {
    std::vector<device> found;
    const com_ptr<IEnumMoniker> devices = enumerate_devices();
    com_ptr<IMoniker> moniker;
    while (devices && devices->Next(1, moniker.put(), nullptr) == S_OK) {
        found.push_back({friendly_name(*moniker), moniker});
    }
    if (found.empty()) throw wrong_use("this system has no video capture device");
    return found;
}

}  // namespace

std::string list_devices() {
    std::string text;
    for (const device& one : find_devices()) text += platform::visible_text(one.name) + "\n";
    return text;
}

com_ptr<IUnknown> open_device(const std::string& name) {
    for (const device& one : find_devices()) {
        if (one.name != name) continue;
        com_ptr<IUnknown> filter;
        const HRESULT hr = one.moniker->BindToObject(nullptr, nullptr, IID_IBaseFilter, filter.put_void());
        if (SUCCEEDED(hr)) return filter;
        throw wrong_use("the device \"" + name +
                        "\" cannot be opened: " + system_message(static_cast<DWORD>(hr)));
    }
    throw wrong_use("there is no video capture device named \"" + name + "\" (--list names them)");
}

std::string vendor_information(IUnknown& filter) {
    com_ptr<IBaseFilter> asked;
    platform::task_memory<wchar_t> text;
    if (FAILED(filter.QueryInterface(IID_IBaseFilter, asked.put_void()))) return {};
    if (FAILED(asked->QueryVendorInfo(text.put())) || !text) return {};
    return platform::narrow(text.get());
}

}  // namespace selvane_host
