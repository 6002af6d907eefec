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

Kind Next(Kind kind, int distance) { return static_cast<Kind>(static_cast<int>(kind) + distance); }

const char* NameOf(Kind kind) {
    switch (kind) {
        case Kind::Get:
            return "Get";
        case Kind::Set:
            return "Set";
        case Kind::QuerySupported:
            return "QuerySupported";
        case Kind::CameraGetRange:
            return "CameraGetRange";
        case Kind::CameraGet:
            return "CameraGet";
        case Kind::CameraSet:
            return "CameraSet";
        case Kind::AmpGetRange:
            return "AmpGetRange";
        case Kind::AmpGet:
            return "AmpGet";
        case Kind::AmpSet:
            return "AmpSet";
    }
    return "?";
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
    *out << NameOf(request.kind) << ' ';
    if (request.kind <= Kind::QuerySupported) {
        *out << platform::narrow(platform::format_guid(request.set)) << ' ' << request.id;
        PrintBytes("instance", request.instance, *out);
        PrintBytes("data", request.data, *out);
        *out << (request.shared_memory ? " shared" : "");
    } else {
        *out << request.id << " value=" << request.value << " flags=" << request.flags;
    }
}

template <class Interface, DriverRequest::Kind range_kind>
class ScriptedFilter::ControlFace final : public Interface {
public:
    explicit ControlFace(ScriptedFilter& filter) : filter_(filter) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        return filter_.QueryInterface(iid, out);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return filter_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return filter_.Release(); }

    HRESULT STDMETHODCALLTYPE GetRange(LONG property, LONG* min, LONG* max, LONG* step, LONG* default_value,
                                       LONG* flags) override {
        DriverCall& call = filter_.Record(ControlRequest(range_kind, property));
        const ScriptedControl* control = Find(property);
        call.result = Outcome(call, control, &ScriptedControl::range_result);
        if (SUCCEEDED(call.result)) {
            *min = control->min;
            *max = control->max;
            *step = control->step;
            *default_value = control->default_value;
            *flags = control->capabilities;
        }
        return call.result;
    }

    HRESULT STDMETHODCALLTYPE Get(LONG property, LONG* value, LONG* flags) override {
        DriverCall& call = filter_.Record(ControlRequest(Next(range_kind, 1), property));
        const ScriptedControl* control = Find(property);
        call.result = Outcome(call, control, &ScriptedControl::get_result);
        if (SUCCEEDED(call.result)) {
            *value = control->value;
            *flags = control->flags;
        }
        return call.result;
    }

    HRESULT STDMETHODCALLTYPE Set(LONG property, LONG value, LONG flags) override {
        DriverCall& call = filter_.Record(ControlRequest(Next(range_kind, 2), property, value, flags));
        ScriptedControl* control = Find(property);
        call.result = Outcome(call, control, &ScriptedControl::set_result);
        if (SUCCEEDED(call.result)) {
            control->value = static_cast<std::int32_t>(value);
            control->flags = static_cast<std::int32_t>(flags);
        }
        return call.result;
    }

    ScriptedControls controls;

private:
    ScriptedControl* Find(LONG property) {
        const auto found = controls.find(static_cast<std::int32_t>(property));
        return found == controls.end() ? nullptr : &found->second;
    }

    static HRESULT Outcome(const DriverCall& call, const ScriptedControl* control,
                           HRESULT ScriptedControl::*scripted) {
        if (FAILED(call.result)) {
            return call.result;
        }
        return control == nullptr ? property_unknown : control->*scripted;
    }

    ScriptedFilter& filter_;
};

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
    if (camera_ == nullptr) {
        camera_ = std::make_unique<CameraFace>(*this);
    }
    return camera_->controls;
}

ScriptedControls& ScriptedFilter::VideoProcAmp() {
    if (amp_ == nullptr) {
        amp_ = std::make_unique<AmpFace>(*this);
    }
    return amp_->controls;
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
    } else if (iid == platform::iid_camera_control && camera_ != nullptr) {
        *out = static_cast<IAMCameraControl*>(camera_.get());
    } else if (iid == platform::iid_video_proc_amp && amp_ != nullptr) {
        *out = static_cast<IAMVideoProcAmp*>(amp_.get());
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
    DriverRequest request = PropertyRequest(Kind::Set, set, id);
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
    DriverRequest request = PropertyRequest(Kind::Get, set, id);
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
    DriverCall& call = Record(PropertyRequest(Kind::QuerySupported, set, id));
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
