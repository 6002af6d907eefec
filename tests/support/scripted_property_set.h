#pragma once

#include "simcam/call_book.h"
#include "simcam/driver_faces.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace test_support {

using Bytes = simcam::bytes;

/// What a filter answers for a property or a property set that it does not know.
constexpr HRESULT property_unknown = static_cast<HRESULT>(0x80070490);

/// What was asked of the driver, byte for byte.
struct DriverRequest {
    using Kind = simcam::call_kind;
    Kind kind = Kind::get;
    GUID set{};                  ///< zero for camera control and proc amp
    std::uint32_t id = 0;        ///< property of the set or of the control
    Bytes instance;              ///< as handed over; its size is the length told
    Bytes data;                  ///< the same, before the driver wrote
    bool shared_memory = false;  ///< instance and data were one block
    std::int32_t value = 0;      ///< of CameraSet and AmpSet
    std::int32_t flags = 0;

    bool operator==(const DriverRequest& other) const;
};
[[nodiscard]] DriverRequest RequestOf(const simcam::driver_call& call);
void PrintTo(const DriverRequest& request, std::ostream* out);

/// What a Get offers to the handler of its property.
struct GetArguments {
    const Bytes& instance;
    std::uint8_t* data;
    std::uint32_t size;
    std::uint32_t returned;  ///< starts at 0
};

/// One property of a set. Unless handlers are given, a Get copies `bytes` as far as they fit and a Set
/// replaces the part of `bytes` that it covers.
struct ScriptedProperty {
    std::uint32_t support = 3;
    HRESULT support_result = S_OK;
    HRESULT get_result = S_OK;
    HRESULT set_result = S_OK;
    Bytes bytes;
    std::function<HRESULT(GetArguments&)> get;
    std::function<HRESULT(const Bytes& instance, const Bytes& data)> set;

    /// Writes a value into `bytes`, which grow as needed.
    template <class T>
    ScriptedProperty& Put(std::size_t offset, T value) {
        const auto* raw = reinterpret_cast<const std::uint8_t*>(&value);
        if (bytes.size() < offset + sizeof(T)) {
            bytes.resize(offset + sizeof(T));
        }
        for (std::size_t at = 0; at < sizeof(T); ++at) {
            bytes[offset + at] = raw[at];
        }
        return *this;
    }
};

/// One property of IAMCameraControl or IAMVideoProcAmp.
struct ScriptedControl {
    std::int32_t min = 0;
    std::int32_t max = 0;
    std::int32_t step = 0;
    std::int32_t default_value = 0;
    std::int32_t capabilities = 0;
    std::int32_t value = 0;
    std::int32_t flags = 0;
    HRESULT range_result = S_OK;
    HRESULT get_result = S_OK;
    HRESULT set_result = S_OK;
};

using ScriptedControls = std::map<std::int32_t, ScriptedControl>;

/// A filter that answers as scripted, behind the interfaces of a simulated camera and with its transcript and
/// faults. Lives where the test puts it, on the stack too: its last Release deletes nothing; its destructor
/// reports references that were not given back.
class ScriptedFilter final : public IKsPropertySet {
public:
    ScriptedFilter();
    ScriptedFilter(const ScriptedFilter&) = delete;
    ScriptedFilter& operator=(const ScriptedFilter&) = delete;
    ~ScriptedFilter();

    /// The script of a property, made at first use.
    ScriptedProperty& Property(REFGUID set, std::uint32_t id);
    void RemoveProperty(REFGUID set, std::uint32_t id);
    /// The scripts of a control interface, which the filter has from the first use on.
    ScriptedControls& CameraControl();
    ScriptedControls& VideoProcAmp();
    bool has_property_set = true;

    /// The n-th call from now on fails, whatever its script says; n starts at 1, 0 takes the failure back.
    void FailCall(std::size_t n, HRESULT result);
    /// Runs before each call, counted or not; may throw.
    std::function<void(const DriverRequest&)> before_call;

    [[nodiscard]] const std::vector<simcam::driver_call>& Calls() const { return book_.calls(); }
    /// The requests since the last time.
    [[nodiscard]] std::vector<DriverRequest> TakeRequests();
    /// References beyond the test's own.
    [[nodiscard]] std::int32_t OutstandingReferences() const { return references_ - 1; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                                  DWORD data_size) override;
    HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                                  DWORD data_size, DWORD* returned) override;
    HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID set, DWORD id, DWORD* support) override;

private:
    // Behind the interfaces of a simulated camera.
    struct Driver {
        [[nodiscard]] HRESULT query(REFGUID set, DWORD id, DWORD* support) {
            return filter.QuerySupported(set, id, support);
        }
        [[nodiscard]] HRESULT get(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data,
                                  DWORD data_size, DWORD* returned) {
            return filter.Get(set, id, instance, instance_size, data, data_size, returned);
        }
        [[nodiscard]] HRESULT set(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data,
                                  DWORD data_size) {
            return filter.Set(set, id, instance, instance_size, data, data_size);
        }
        [[nodiscard]] HRESULT control_range(simcam::call_kind kind, LONG property,
                                            const simcam::range_outputs& out);
        [[nodiscard]] HRESULT control_get(simcam::call_kind kind, LONG property, LONG* value, LONG* flags);
        [[nodiscard]] HRESULT control_set(simcam::call_kind kind, LONG property, LONG value, LONG flags);

        ScriptedFilter& filter;
    };

    struct GuidLess {
        bool operator()(const std::pair<GUID, std::uint32_t>& left,
                        const std::pair<GUID, std::uint32_t>& right) const;
    };

    /// Enters the call in the book with what `work` answers, or with the failure that strikes it.
    template <class Work>
    HRESULT Answer(simcam::driver_call& call, Work work);
    [[nodiscard]] ScriptedProperty* Find(REFGUID set, std::uint32_t id);
    [[nodiscard]] ScriptedControl* FindControl(simcam::call_kind kind, LONG property);
    template <class Work>
    HRESULT AnswerControl(simcam::driver_call call, HRESULT ScriptedControl::*scripted, Work work);

    std::map<std::pair<GUID, std::uint32_t>, ScriptedProperty, GuidLess> properties_;
    std::optional<ScriptedControls> camera_;
    std::optional<ScriptedControls> amp_;
    Driver driver_{*this};
    simcam::driver_faces<Driver> faces_{*this, driver_};
    simcam::call_book book_{true};
    std::size_t taken_ = 0;
    std::int32_t references_ = 1;
};

}  // namespace test_support
