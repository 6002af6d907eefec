#include "tests/support/scripted_property_set.h"

#include "platform/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <ostream>

namespace test_support {
namespace {

using Kind = DriverRequest::Kind;

Bytes CopyOf(const void* memory, std::uint32_t size) {
    if (memory == nullptr) {
        return {};
    }
    const auto* first = static_cast<const std::uint8_t*>(memory);
    return Bytes(first, first + size);
}

DriverRequest PropertyRequest(Kind kind, REFGUID set, DWORD id) {
    DriverRequest request;
    request.kind = kind;
    request.set = set;
    request.id = static_cast<std::uint32_t>(id);
    return request;
}

DriverRequest ControlRequest(Kind kind, LONG property, LONG value = 0, LONG flags = 0) {
    DriverRequest request;
    request.kind = kind;
    request.id = static_cast<std::uint32_t>(property);
    request.value = static_cast<std::int32_t>(value);
    request.flags = static_cast<std::int32_t>(flags);
    return request;
}

// In the order of `call_kind`.
constexpr const char* kind_names[] = {"QuerySupported", "Get",       "Set",
                                      "CameraGetRange", "CameraGet", "CameraSet",
                                      "AmpGetRange",    "AmpGet",    "AmpSet"};

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

HRESULT AnswerFrom(const Bytes& bytes, GetArguments& arguments) {
    arguments.returned = std::min(arguments.size, static_cast<std::uint32_t>(bytes.size()));
    if (arguments.returned != 0) {
        std::memcpy(arguments.data, bytes.data(), arguments.returned);
    }
    return S_OK;
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

ScriptedControl* ScriptedFilter::FindControl(Kind kind, LONG property) {
    std::optional<ScriptedControls>& controls = kind < Kind::amp_range ? camera_ : amp_;
    if (!controls) return nullptr;
    const auto found = controls->find(static_cast<std::int32_t>(property));
    return found == controls->end() ? nullptr : &found->second;
}

DriverCall& ScriptedFilter::RecordControl(Kind kind, LONG property, HRESULT ScriptedControl::*scripted,
                                          LONG value, LONG flags) {
    DriverCall& call = Record(ControlRequest(kind, property, value, flags));
    if (SUCCEEDED(call.result)) {
        const ScriptedControl* control = FindControl(kind, property);
        call.result = control == nullptr ? property_unknown : control->*scripted;
    }
    return call;
}

HRESULT ScriptedFilter::Driver::control_range(Kind kind, LONG property, const simcam::range_outputs& out) {
    const HRESULT result = filter.RecordControl(kind, property, &ScriptedControl::range_result).result;
    if (SUCCEEDED(result)) {
        const ScriptedControl& control = *filter.FindControl(kind, property);
        const std::int32_t told[] = {control.min, control.max, control.step, control.default_value,
                                     control.capabilities};
        for (std::size_t at = 0; at < out.size(); ++at) *out[at] = told[at];
    }
    return result;
}

HRESULT ScriptedFilter::Driver::control_get(Kind kind, LONG property, LONG* value, LONG* flags) {
    const HRESULT result = filter.RecordControl(kind, property, &ScriptedControl::get_result).result;
    if (SUCCEEDED(result)) {
        const ScriptedControl& control = *filter.FindControl(kind, property);
        *value = control.value;
        *flags = control.flags;
    }
    return result;
}

HRESULT ScriptedFilter::Driver::control_set(Kind kind, LONG property, LONG value, LONG flags) {
    const HRESULT result =
        filter.RecordControl(kind, property, &ScriptedControl::set_result, value, flags).result;
    if (SUCCEEDED(result)) {
        ScriptedControl& control = *filter.FindControl(kind, property);
        control.value = static_cast<std::int32_t>(value);
        control.flags = static_cast<std::int32_t>(flags);
    }
    return result;
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
    failing_call_ = n == 0 ? 0 : calls_.size() + n;
    failure_ = result;
}

std::vector<DriverRequest> ScriptedFilter::TakeRequests() {
    std::vector<DriverRequest> requests;
    for (; taken_ < calls_.size(); ++taken_) {
        requests.push_back(calls_[taken_].request);
    }
    return requests;
}

DriverCall& ScriptedFilter::Record(DriverRequest request) {
    if (before_call) {
        before_call(request);
    }
    DriverCall& call = calls_.emplace_back();
    call.request = std::move(request);
    call.result = calls_.size() == failing_call_ ? failure_ : S_OK;
    return call;
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
    DriverRequest request = PropertyRequest(Kind::set, set, id);
    request.instance = CopyOf(instance, static_cast<std::uint32_t>(instance_size));
    request.data = CopyOf(data, static_cast<std::uint32_t>(data_size));
    request.shared_memory = instance != nullptr && instance == data;
    const Bytes sent_instance = request.instance;
    const Bytes sent = request.data;
    DriverCall& call = Record(std::move(request));
    ScriptedProperty* property = Find(set, static_cast<std::uint32_t>(id));
    if (FAILED(call.result)) {
        return call.result;
    }
    if (property == nullptr) {
        call.result = property_unknown;
    } else if (property->set) {
        call.result = property->set(sent_instance, sent);
    } else {
        call.result = property->set_result;
        if (SUCCEEDED(call.result)) {
            StoreInto(property->bytes, sent);
        }
    }
    return call.result;
}

HRESULT STDMETHODCALLTYPE ScriptedFilter::Get(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size,
                                              LPVOID data, DWORD data_size, DWORD* returned) {
    DriverRequest request = PropertyRequest(Kind::get, set, id);
    request.instance = CopyOf(instance, static_cast<std::uint32_t>(instance_size));
    request.data = CopyOf(data, static_cast<std::uint32_t>(data_size));
    request.shared_memory = instance != nullptr && instance == data;
    const Bytes sent_instance = request.instance;
    DriverCall& call = Record(std::move(request));
    const ScriptedProperty* property = Find(set, static_cast<std::uint32_t>(id));
    if (FAILED(call.result)) {
        return call.result;
    }
    GetArguments arguments{sent_instance, static_cast<std::uint8_t*>(data),
                           static_cast<std::uint32_t>(data_size), 0};
    if (property == nullptr) {
        call.result = property_unknown;
    } else if (property->get) {
        call.result = property->get(arguments);
    } else {
        call.result = property->get_result;
        if (SUCCEEDED(call.result)) {
            (void)AnswerFrom(property->bytes, arguments);
        }
    }
    call.returned = arguments.returned;
    call.answer = CopyOf(data, static_cast<std::uint32_t>(data_size));
    if (returned != nullptr) {
        *returned = arguments.returned;
    }
    return call.result;
}

HRESULT STDMETHODCALLTYPE ScriptedFilter::QuerySupported(REFGUID set, DWORD id, DWORD* support) {
    DriverCall& call = Record(PropertyRequest(Kind::query_supported, set, id));
    const ScriptedProperty* property = Find(set, static_cast<std::uint32_t>(id));
    if (FAILED(call.result)) {
        return call.result;
    }
    if (property == nullptr) {
        call.result = property_unknown;
        return call.result;
    }
    call.result = property->support_result;
    call.support = property->support;
    *support = property->support;
    return call.result;
}

}  // namespace test_support
