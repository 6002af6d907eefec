#include "apps/device/registration.h"

#include "apps/device/capture_pin.h"
#include "apps/device/device_table.h"
#include "apps/device/module.h"
#include "platform/com_ptr.h"
#include "platform/text.h"
#include "platform/windows/com_edge.h"

#include <strmif.h>
#include <uuids.h>

#include <iterator>
#include <string>

namespace selvane_camera {
namespace {

using platform::at_com_edge;
using platform::com_ptr;

constexpr std::size_t longest_path = 32768;

// Whoever registers has a COM of his own, or not.
class com_for_a_moment {
public:
    com_for_a_moment() noexcept : entered_(SUCCEEDED(CoInitialize(nullptr))) {}
    com_for_a_moment(const com_for_a_moment&) = delete;
    com_for_a_moment& operator=(const com_for_a_moment&) = delete;
    ~com_for_a_moment() {
        if (entered_) CoUninitialize();
    }

private:
    bool entered_;
};

std::wstring class_key(const device_record& device) {
    return L"CLSID\\" + platform::format_guid(device.clsid);
}

LSTATUS set_text(const std::wstring& key, const wchar_t* value, const std::wstring& text) {
    const auto size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    return RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), value, REG_SZ, text.c_str(), size);
}

HRESULT enter_class(const device_record& device, const std::wstring& module) {
    const std::wstring key = class_key(device);
    const std::wstring server = key + L"\\InprocServer32";
    LSTATUS status = set_text(key, nullptr, device.name);
    if (status == ERROR_SUCCESS) status = set_text(server, nullptr, module);
    if (status == ERROR_SUCCESS) status = set_text(server, L"ThreadingModel", L"Both");
    return HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

// Empty if the system does not tell or the path is longer than a path can be.
std::wstring module_path() {
    std::wstring path(longest_path, L'\0');
    const DWORD length = GetModuleFileNameW(own_module(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT),
                                            path.data(), static_cast<DWORD>(path.size()));
    path.resize(length < path.size() ? length : 0);
    return path;
}

HRESULT make_mapper(com_ptr<IFilterMapper2>& mapper) {
    return CoCreateInstance(CLSID_FilterMapper2, nullptr, CLSCTX_INPROC_SERVER, IID_IFilterMapper2,
                            mapper.put_void());
}

HRESULT enter_as_video_input(IFilterMapper2& mapper, const device_record& device) {
    const REGPINTYPES types[] = {{&MEDIATYPE_Video, &MEDIASUBTYPE_RGB24},
                                 {&MEDIATYPE_Video, &MEDIASUBTYPE_YUY2}};
    REGFILTERPINS pin{};
    pin.strName = const_cast<LPWSTR>(capture_pin::name);
    pin.bOutput = TRUE;
    pin.nMediaTypes = static_cast<UINT>(std::size(types));
    pin.lpMediaType = types;
    REGFILTER2 filter{};
    filter.dwVersion = 1;
    filter.dwMerit = MERIT_DO_NOT_USE;  // only where somebody asks for it
    filter.cPins = 1;
    filter.rgPins = &pin;
    return mapper.RegisterFilter(device.clsid, device.name, nullptr, &CLSID_VideoInputDeviceCategory, nullptr,
                                 &filter);
}

HRESULT enter_all() {
    const std::wstring path = module_path();
    if (path.empty()) return E_FAIL;
    com_ptr<IFilterMapper2> mapper;
    if (const HRESULT hr = make_mapper(mapper); FAILED(hr)) return hr;
    for (const device_record& device : devices) {
        HRESULT hr = enter_class(device, path);
        if (SUCCEEDED(hr)) hr = enter_as_video_input(*mapper, device);
        if (FAILED(hr)) return hr;
    }
    return S_OK;
}

HRESULT take_out_all() {
    com_ptr<IFilterMapper2> mapper;
    const HRESULT hr = make_mapper(mapper);
    for (const device_record& device : devices) {
        if (mapper) mapper->UnregisterFilter(&CLSID_VideoInputDeviceCategory, nullptr, device.clsid);
        RegDeleteTreeW(HKEY_CLASSES_ROOT, class_key(device).c_str());
    }
    return hr;
}

}  // namespace

HRESULT register_devices() noexcept {
    const com_for_a_moment com;
    const HRESULT hr = at_com_edge(enter_all);
    if (FAILED(hr)) static_cast<void>(at_com_edge(take_out_all));
    return hr;
}

HRESULT unregister_devices() noexcept {
    const com_for_a_moment com;
    return at_com_edge(take_out_all);
}

}  // namespace selvane_camera
