#include "tests/support/scripted_property_set.h"

#include "platform/text.h"
#include "simcam/call_reading.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <ostream>

namespace test_support {
namespace {

using Kind = DriverRequest::Kind;

// In the order of `call_kind`.
constexpr const char* kind_names[] = {"QuerySupported", "Get",       "Set",
                                      "CameraGetRange", "CameraGet", "CameraSet",
                                      "AmpGetRange",    "AmpGet",    "AmpSet"};

simcam::driver_call OpenCall(Kind kind, std::uint32_t id) {
    simcam::driver_call call;
    call.kind = kind;
    call.id = id;
    return call;
}

void PrintBytes(const char* name, const Bytes& bytes, std::ostream& out) {
    static constexpr char digits[] = "0123456789ABCDEF";
    out << ' ' << name << '[' << bytes.size() << "]=";
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        if (at != 0 && at % 4 == 0) {
            out << '.';
        }
        out << digits[bytes[at] >> 4] << digits[bytes[at] & 0xF];
    }
}

HRESULT AnswerGet(const ScriptedProperty* property, GetArguments& arguments) {
    if (property == nullptr) return property_unknown;
    if (property->get) return property->get(arguments);
    if (FAILED(property->get_result)) return property->get_result;
    arguments.returned = std::min(arguments.size, static_cast<std::uint32_t>(property->bytes.size()));
    if (arguments.returned != 0) std::memcpy(arguments.data, property->bytes.data(), arguments.returned);
    return property->get_result;
}

void StoreInto(Bytes& bytes, const Bytes& data) {
    if (bytes.size() < data.size()) {
        bytes.resize(data.size());
    }
    std::copy(data.begin(), data.end(), bytes.begin());
}

}  // namespace

bool DriverRequest::operator==(const DriverRequest& other) const {
    return kind == other.kind && set == other.set && id == other.id && instance == other.instance &&
           data == other.data && shared_memory == other.shared_memory && value == other.value &&
           flags == other.flags;
}

void PrintTo(const DriverRequest& request, std::ostream* out) {
    *out << kind_names[static_cast<std::size_t>(request.kind)] << ' ';
    if (request.kind <= Kind::set) {
        *out << platform::narrow(platform::format_guid(request.set)) << ' ' << request.id;
        PrintBytes("instance", request.instance, *out);
        PrintBytes("data", request.data, *out);
        *out << (request.shared_memory ? " shared" : "");
    } else {
        *out << request.id << " value=" << request.value << " flags=" << request.flags;
    }
}

DriverRequest RequestOf(const simcam::driver_call& call) {
    DriverRequest request;
    request.kind = call.kind;
    request.set = call.set;
    request.id = static_cast<std::uint32_t>(call.id);
    request.instance = call.instance;
    request.data = call.data;
    request.shared_memory = call.one_buffer;
    if (call.kind == Kind::camera_set || call.kind == Kind::amp_set) {
        request.value = static_cast<std::int32_t>(call.numbers.at(0));
        request.flags = static_cast<std::int32_t>(call.numbers.at(1));
    }
    return request;
}

template <class Work>
HRESULT ScriptedFilter::Answer(simcam::driver_call& call, Work work) {
    if (before_call) before_call(RequestOf(call));
    call.number = book_.open();
    const std::optional<simcam::fault> struck = book_.strike(call);
    const HRESULT result = struck ? struck->result.value_or(S_OK) : work();
    call.result = result;
    book_.close(std::move(call));
    return result;
}

ScriptedControl* ScriptedFilter::FindControl(Kind kind, LONG property) {
    std::optional<ScriptedControls>& controls = kind < Kind::amp_range ? camera_ : amp_;
    if (!controls) return nullptr;
    const auto found = controls->find(static_cast<std::int32_t>(property));
    return found == controls->end() ? nullptr : &found->second;
}

template <class Work>
HRESULT ScriptedFilter::AnswerControl(simcam::driver_call call, HRESULT ScriptedControl::*scripted,
                                      Work work) {
    return Answer(call, [&] {
        ScriptedControl* const control = FindControl(call.kind, static_cast<LONG>(call.id));
        if (control == nullptr) return property_unknown;
        if (SUCCEEDED(control->*scripted)) work(*control);
        return control->*scripted;
    });
}

HRESULT ScriptedFilter::Driver::control_range(Kind kind, LONG property, const simcam::range_outputs& out) {
    return filter.AnswerControl(OpenCall(kind, static_cast<std::uint32_t>(property)),
                                &ScriptedControl::range_result, [&](const ScriptedControl& control) {
                                    const std::int32_t told[] = {control.min, control.max, control.step,
                                                                 control.default_value, control.capabilities};
                                    for (std::size_t at = 0; at < out.size(); ++at) *out[at] = told[at];
                                });
}

HRESULT ScriptedFilter::Driver::control_get(Kind kind, LONG property, LONG* value, LONG* flags) {
    return filter.AnswerControl(OpenCall(kind, static_cast<std::uint32_t>(property)),
                                &ScriptedControl::get_result, [&](const ScriptedControl& control) {
                                    *value = control.value;
                                    *flags = control.flags;
                                });
}

HRESULT ScriptedFilter::Driver::control_set(Kind kind, LONG property, LONG value, LONG flags) {
    simcam::driver_call call = OpenCall(kind, static_cast<std::uint32_t>(property));
    call.numbers = {value, flags};
    return filter.AnswerControl(std::move(call), &ScriptedControl::set_result, [&](ScriptedControl& control) {
        control.value = static_cast<std::int32_t>(value);
        control.flags = static_cast<std::int32_t>(flags);
    });
}

ScriptedFilter::ScriptedFilter() = default;

ScriptedFilter::~ScriptedFilter() {
    EXPECT_EQ(OutstandingReferences(), 0) << "references to the filter that were not given back";
}

bool ScriptedFilter::GuidLess::operator()(const std::pair<GUID, std::uint32_t>& left,
                                          const std::pair<GUID, std::uint32_t>& right) const {
    const int order = std::memcmp(&left.first, &right.first, sizeof(GUID));
    return order != 0 ? order < 0 : left.second < right.second;
}

ScriptedProperty& ScriptedFilter::Property(REFGUID set, std::uint32_t id) { return properties_[{set, id}]; }

void ScriptedFilter::RemoveProperty(REFGUID set, std::uint32_t id) { properties_.erase({set, id}); }

ScriptedControls& ScriptedFilter::CameraControl() {
    if (!camera_) camera_.emplace();
    return *camera_;
}

ScriptedControls& ScriptedFilter::VideoProcAmp() {
    if (!amp_) amp_.emplace();
    return *amp_;
}

void ScriptedFilter::FailCall(std::size_t n, HRESULT result) {
    book_.clear_faults();
    if (n != 0) book_.add_fault(simcam::fail_nth(n, result));
}

std::vector<DriverRequest> ScriptedFilter::TakeRequests() {
    std::vector<DriverRequest> requests;
    for (; taken_ < Calls().size(); ++taken_) requests.push_back(RequestOf(Calls()[taken_]));
    return requests;
}

ScriptedProperty* ScriptedFilter::Find(REFGUID set, std::uint32_t id) {
    const auto found = properties_.find({set, id});
    return found == properties_.end() ? nullptr : &found->second;
}

HRESULT STDMETHODCALLTYPE ScriptedFilter::QueryInterface(REFIID iid, void** out) {
    *out = nullptr;
    if (iid == platform::iid_unknown) {
        *out = static_cast<IUnknown*>(this);
    } else if (iid == platform::iid_property_set && has_property_set) {
        *out = static_cast<IKsPropertySet*>(this);
    } else if (iid == platform::iid_camera_control && camera_) {
        *out = faces_.camera_control();
    } else if (iid == platform::iid_video_proc_amp && amp_) {
        *out = faces_.video_proc_amp();
    } else {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG STDMETHODCALLTYPE ScriptedFilter::AddRef() { return static_cast<ULONG>(++references_); }

ULONG STDMETHODCALLTYPE ScriptedFilter::Release() { return static_cast<ULONG>(--references_); }

HRESULT STDMETHODCALLTYPE ScriptedFilter::Set(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size,
                                              LPVOID data, DWORD data_size) {
    simcam::driver_call call = OpenCall(Kind::set, static_cast<std::uint32_t>(id));
    call.set = set;
    call.instance = simcam::copy_of(instance, instance_size);
    call.data = simcam::copy_of(data, data_size);
    call.one_buffer = instance != nullptr && instance == data;
    return Answer(call, [&] {
        ScriptedProperty* const property = Find(call.set, static_cast<std::uint32_t>(id));
        if (property == nullptr) return property_unknown;
        if (property->set) return property->set(call.instance, call.data);
        if (SUCCEEDED(property->set_result)) StoreInto(property->bytes, call.data);
        return property->set_result;
    });
}

HRESULT STDMETHODCALLTYPE ScriptedFilter::Get(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size,
                                              LPVOID data, DWORD data_size, DWORD* returned) {
    simcam::driver_call call = OpenCall(Kind::get, static_cast<std::uint32_t>(id));
    call.set = set;
    call.instance = simcam::copy_of(instance, instance_size);
    call.data = simcam::copy_of(data, data_size);
    call.one_buffer = instance != nullptr && instance == data;
    return Answer(call, [&] {
        GetArguments arguments{call.instance, static_cast<std::uint8_t*>(data),
                               static_cast<std::uint32_t>(data_size), 0};
        const HRESULT result = AnswerGet(Find(call.set, static_cast<std::uint32_t>(id)), arguments);
        if (returned != nullptr) *returned = arguments.returned;
        return result;
    });
}

HRESULT STDMETHODCALLTYPE ScriptedFilter::QuerySupported(REFGUID set, DWORD id, DWORD* support) {
    simcam::driver_call call = OpenCall(Kind::query_supported, static_cast<std::uint32_t>(id));
    call.set = set;
    return Answer(call, [&] {
        const ScriptedProperty* const property = Find(call.set, static_cast<std::uint32_t>(id));
        if (property == nullptr) return property_unknown;
        *support = property->support;
        return property->support_result;
    });
}

}  // namespace test_support
