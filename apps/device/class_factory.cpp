#include "apps/device/class_factory.h"

#include "apps/device/capture_filter.h"
#include "apps/device/device_table.h"
#include "apps/device/module_object.h"
#include "platform/windows/com_edge.h"

namespace selvane_camera {
namespace {

using platform::at_com_edge;
using platform::com_ptr;

class filter_factory final : public module_object<IClassFactory> {
public:
    explicit filter_factory(const device_record& device) noexcept : device_(device) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
        if (out == nullptr) return E_POINTER;
        *out = nullptr;
        if (outer != nullptr) return CLASS_E_NOAGGREGATION;
        return at_com_edge([&] { return make_capture_filter(device_)->QueryInterface(iid, out); });
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        lock_module(lock != 0);
        return S_OK;
    }

private:
    const device_record& device_;
};

}  // namespace

HRESULT get_class_object(REFCLSID clsid, REFIID iid, void** out) noexcept {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    const device_record* device = find_device(clsid);
    if (device == nullptr) return CLASS_E_CLASSNOTAVAILABLE;
    return at_com_edge(
        [&] { return com_ptr<IClassFactory>(new filter_factory(*device))->QueryInterface(iid, out); });
}

}  // namespace selvane_camera
