#include "apps/host/trace_filter.h"

#include "apps/host/call_printer.h"
#include "platform/com_object.h"
#include "simcam/call_reading.h"
#include "simcam/driver_behind.h"
#include "wire/device_set.h"

#include <algorithm>

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

// Makes the calls of the faces on a driver, as far as it has the interface, and prints each.
class traced_driver {
public:
    traced_driver(IUnknown& driver, line_sink sink) : printer_(std::move(sink)), driver_(driver) {}

    [[nodiscard]] const simcam::driver_behind& driver() const noexcept { return driver_; }

    HRESULT set(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data, DWORD data_size) {
        driver_call call = transfer_call(call_kind::set, set, id, instance, instance_size, data, data_size);
        return printer_.run(call, [&] {
            return driver_.property_set->Set(set, id, instance, instance_size, data, data_size);
        });
    }

    HRESULT get(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data, DWORD data_size,
                DWORD* returned) {
        driver_call call = transfer_call(call_kind::get, set, id, instance, instance_size, data, data_size);
        const HRESULT result = printer_.run(call, [&] {
            const HRESULT hr =
                driver_.property_set->Get(set, id, instance, instance_size, data, data_size, returned);
            if (SUCCEEDED(hr)) call.answer = simcam::copy_of(data, data_size);
            if (SUCCEEDED(hr) && returned != nullptr) call.returned = *returned;
            return hr;
        });
        if (SUCCEEDED(result) && hands_out_description(call)) {
            printer_.learn(call, {static_cast<const char*>(data), std::min(call.returned, data_size)});
        }
        return result;
    }

    HRESULT query(REFGUID set, DWORD id, DWORD* support) {
        driver_call call = property_call(call_kind::query_supported, set, id);
        return printer_.run(call, [&] {
            const HRESULT hr = driver_.property_set->QuerySupported(set, id, support);
            if (SUCCEEDED(hr) && support != nullptr) call.support = *support;
            return hr;
        });
    }

    HRESULT control_range(call_kind kind, LONG property, const simcam::range_outputs& out) {
        return run_control(kind, property, {out[0], out[1], out[2], out[3], out[4]}, [&](auto& control) {
            return control.GetRange(property, out[0], out[1], out[2], out[3], out[4]);
        });
    }
    HRESULT control_get(call_kind kind, LONG property, LONG* value, LONG* flags) {
        return run_control(kind, property, {value, flags},
                           [&](auto& control) { return control.Get(property, value, flags); });
    }
    HRESULT control_set(call_kind kind, LONG property, LONG value, LONG flags) {
        return run_control(kind, property, {&value, &flags},
                           [&](auto& control) { return control.Set(property, value, flags); });
    }

private:
    template <class Work>
    HRESULT run_control(call_kind kind, LONG property, std::initializer_list<const LONG*> numbers,
                        Work work) {
        driver_call call;
        call.kind = kind;
        call.id = static_cast<DWORD>(property);
        return printer_.run(call, [&] {
            const HRESULT hr = driver_.with_control(kind, work);
            const bool set = kind == call_kind::camera_set || kind == call_kind::amp_set;
            const bool readable = std::find(numbers.begin(), numbers.end(), nullptr) == numbers.end();
            if ((SUCCEEDED(hr) || set) && readable) {
                for (const LONG* number : numbers) call.numbers.push_back(*number);
            }
            return hr;
        });
    }

    call_printer printer_;
    simcam::driver_behind driver_;
};

class trace_filter final : public platform::com_object<IUnknown> {
public:
    trace_filter(IUnknown& driver, line_sink sink)
        : driver_(&driver), traced_(driver, std::move(sink)), faces_(*this, traced_) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (out == nullptr) return E_POINTER;
        *out =
            iid == platform::iid_unknown ? static_cast<IUnknown*>(this) : traced_.driver().face(iid, faces_);
        if (*out == nullptr) return driver_->QueryInterface(iid, out);
        AddRef();
        return S_OK;
    }

private:
    com_ptr<IUnknown> driver_;
    traced_driver traced_;
    simcam::driver_faces<traced_driver> faces_;
};

}  // namespace

com_ptr<IUnknown> make_trace_filter(IUnknown& driver, line_sink sink) {
    return com_ptr<IUnknown>(new trace_filter(driver, std::move(sink)));
}

}  // namespace selvane_host
