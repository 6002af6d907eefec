#include "tests/device/camera_module.h"

#include "adapter/named_access.h"
#include "tests/host/host_process.h"

#include <stdexcept>

namespace device_test {

using platform::com_ptr;

std::filesystem::path camera_module::path() {
    return host_test::HostProgram().parent_path() / "selvane_camera.ax";
}

camera_module::camera_module() : module_(LoadLibraryW(path().c_str())) {
    if (module_ == nullptr) throw std::runtime_error("selvane_camera.ax cannot be loaded");
}

camera_module::~camera_module() { FreeLibrary(module_); }

template <class Function>
Function* camera_module::entry(const char* name) const {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
}

HRESULT camera_module::get_class(REFCLSID clsid, REFIID iid, void** out) const {
    return entry<HRESULT STDMETHODCALLTYPE(REFCLSID, REFIID, void**)>("DllGetClassObject")(clsid, iid, out);
}

bool camera_module::can_unload() const {
    return entry<HRESULT STDMETHODCALLTYPE()>("DllCanUnloadNow")() == S_OK;
}

filter_ptr camera_module::make_filter(const selvane_camera::device_record& device) const {
    com_ptr<IClassFactory> factory;
    filter_ptr filter;
    if (SUCCEEDED(get_class(device.clsid, IID_IClassFactory, factory.put_void())))
        factory->CreateInstance(nullptr, IID_IBaseFilter, filter.put_void());
    return filter;
}

pin_ptr pin_of(const filter_ptr& filter) {
    pin_ptr pin;
    filter->FindPin(L"Capture", pin.put());
    return pin;
}

HRESULT set_feature(IUnknown& filter, const char* feature, double value) {
    const auto driver = platform::query<IKsPropertySet>(&filter);
    return genicam_adapter::set_named_property(driver.get(), {feature, "/Value"}, &value, sizeof value);
}

HRESULT get_feature(IUnknown& filter, const char* feature, double& value) {
    const auto driver = platform::query<IKsPropertySet>(&filter);
    return genicam_adapter::get_named_value(driver.get(), {feature, "/Value"}, value);
}

}  // namespace device_test
