#include "apps/host/trace_filter.h"

#include "apps/host/call_printer.h"
#include "simcam/call_reading.h"
#include "wire/device_set.h"

#include <algorithm>
#include <atomic>

namespace selvane_host {
namespace {

using platform::com_ptr;
using simcam::call_kind;
using simcam::driver_call;

driver_call property_call(call_kind kind, REFGUID set, DWORD id) {
    driver_call call;
    call.kind = kind;
    call.set = set;
    call.id = id;
    return call;
}

driver_call transfer_call(call_kind kind, REFGUID set, DWORD id, const void* instance, DWORD instance_size,
                          const void* data, DWORD data_size) {
    driver_call call = property_call(kind, set, id);
    call.instance = simcam::copy_of(instance, instance_size);
    call.data = simcam::copy_of(data, data_size);
    call.one_buffer = instance == data;
    static_cast<void>(simcam::read_instance(call));  // what cannot be understood is forwarded all the same
    return call;
}

bool hands_out_description(const driver_call& call) {
    return call.set == wire::device_set && call.id == SELVANE_DESCRIPTION_DATA;
}

// The IUnknown operations of an interface that is part of the filter, and the driver's own interface.
template <class Interface>
class traced_face : public Interface {
public:
    traced_face(IUnknown& filter, call_printer& printer, IUnknown& driver)
        : filter_(filter), printer_(printer), driver_(platform::query<Interface>(&driver)) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) final {
        return filter_.QueryInterface(iid, out);
    }
    ULONG STDMETHODCALLTYPE AddRef() final { return filter_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() final { return filter_.Release(); }

    [[nodiscard]] bool is_there() const noexcept { return static_cast<bool>(driver_); }

protected:
    ~traced_face() = default;
    [[nodiscard]] Interface& driver() const noexcept { return *driver_; }
    [[nodiscard]] call_printer& printer() const noexcept { return printer_; }

private:
    IUnknown& filter_;
    call_printer& printer_;
    com_ptr<Interface> driver_;
};

class property_set_face final : public traced_face<IKsPropertySet> {
public:
    using traced_face::traced_face;
    HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                                  DWORD data_size) override {
        driver_call call = transfer_call(call_kind::set, set, id, instance, instance_size, data, data_size);
        return printer().run(call,
                             [&] { return driver().Set(set, id, instance, instance_size, data, data_size); });
    }

    HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                                  DWORD data_size, DWORD* returned) override {
        driver_call call = transfer_call(call_kind::get, set, id, instance, instance_size, data, data_size);
        const HRESULT result = printer().run(call, [&] {
            const HRESULT hr = driver().Get(set, id, instance, instance_size, data, data_size, returned);
            if (SUCCEEDED(hr)) call.answer = simcam::copy_of(data, data_size);
            if (SUCCEEDED(hr) && returned != nullptr) call.returned = *returned;
            return hr;
        });
        if (SUCCEEDED(result) && hands_out_description(call)) {
            printer().learn(call, {static_cast<const char*>(data), std::min(call.returned, data_size)});
        }
        return result;
    }

    HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID set, DWORD id, DWORD* support) override {
        driver_call call = property_call(call_kind::query_supported, set, id);
        return printer().run(call, [&] {
            const HRESULT hr = driver().QuerySupported(set, id, support);
            if (SUCCEEDED(hr) && support != nullptr) call.support = *support;
            return hr;
        });
    }
};

// IAMCameraControl and IAMVideoProcAmp have the same operations.
template <class Interface, call_kind range, call_kind get, call_kind set>
class control_face final : public traced_face<Interface> {
public:
    using traced_face<Interface>::traced_face;
    HRESULT STDMETHODCALLTYPE GetRange(LONG property, LONG* min, LONG* max, LONG* step, LONG* default_value,
                                       LONG* flags) override {
        return Run(range, property, {min, max, step, default_value, flags},
                   [&] { return this->driver().GetRange(property, min, max, step, default_value, flags); });
    }
    HRESULT STDMETHODCALLTYPE Set(LONG property, LONG value, LONG flags) override {
        return Run(set, property, {&value, &flags},
                   [&] { return this->driver().Set(property, value, flags); });
    }
    HRESULT STDMETHODCALLTYPE Get(LONG property, LONG* value, LONG* flags) override {
        return Run(get, property, {value, flags}, [&] { return this->driver().Get(property, value, flags); });
    }

private:
    template <class Work>
    HRESULT Run(call_kind kind, LONG property, std::initializer_list<const LONG*> numbers, Work work) {
        driver_call call;
        call.kind = kind;
        call.id = static_cast<DWORD>(property);
        return this->printer().run(call, [&] {
            const HRESULT hr = work();
            const bool readable = std::find(numbers.begin(), numbers.end(), nullptr) == numbers.end();
            if ((SUCCEEDED(hr) || kind == set) && readable) {
                for (const LONG* number : numbers) call.numbers.push_back(*number);
            }
            return hr;
        });
    }
};

using camera_face =
    control_face<IAMCameraControl, call_kind::camera_range, call_kind::camera_get, call_kind::camera_set>;
using amp_face = control_face<IAMVideoProcAmp, call_kind::amp_range, call_kind::amp_get, call_kind::amp_set>;

class trace_filter final : public IUnknown {
public:
    trace_filter(IUnknown& driver, line_sink sink)
        : driver_(&driver),
          printer_(std::move(sink)),
          property_set_(*this, printer_, driver),
          camera_control_(*this, printer_, driver),
          proc_amp_(*this, printer_, driver) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (out == nullptr) return E_POINTER;
        *out = nullptr;
        if (iid == platform::iid_unknown) *out = static_cast<IUnknown*>(this);
        if (iid == platform::iid_property_set) *out = present(property_set_);
        if (iid == platform::iid_camera_control) *out = present(camera_control_);
        if (iid == platform::iid_video_proc_amp) *out = present(proc_amp_);
        if (*out == nullptr) return driver_->QueryInterface(iid, out);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

private:
    ~trace_filter() = default;

    template <class Face>
    static Face* present(Face& face) noexcept {
        return face.is_there() ? &face : nullptr;
    }

    std::atomic<ULONG> references_{0};
    com_ptr<IUnknown> driver_;
    call_printer printer_;
    property_set_face property_set_;
    camera_face camera_control_;
    amp_face proc_amp_;
};

}  // namespace

com_ptr<IUnknown> make_trace_filter(IUnknown& driver, line_sink sink) {
    return com_ptr<IUnknown>(new trace_filter(driver, std::move(sink)));
}

}  // namespace selvane_host
