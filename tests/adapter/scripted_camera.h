#pragma once

#include "adapter/genicam_adapter_device.h"
#include "adapter/interface_key.h"
#include "items/item_contract.h"
#include "platform/com_ptr.h"
#include "tests/support/scripted_property_set.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace adapter_test {

using genicam_adapter::GenICamAdapterDevice;
using test_support::Bytes;
using test_support::DriverRequest;
using test_support::GetArguments;
using test_support::ScriptedFilter;
using ZELAdapterHelper::CZELItemDataBase;
using ZELAdapterHelper::InterfaceKey;
using ZELAdapterHelper::ItemRecord;

constexpr HRESULT device_is_lost = static_cast<HRESULT>(0x80070651);
constexpr HRESULT buffer_is_small = static_cast<HRESULT>(0x8007007A);

/// The bytes of a number or a record as they lie in memory.
template <class T>
[[nodiscard]] Bytes BytesOf(const T& value) {
    Bytes bytes(sizeof(T));
    std::memcpy(bytes.data(), &value, sizeof(T));
    return bytes;
}

[[nodiscard]] Bytes BytesOfText(std::string_view text);

// The requests that the driver is to see.
[[nodiscard]] DriverRequest Supported(REFGUID set, std::uint32_t id);
[[nodiscard]] DriverRequest SizeGet(std::uint32_t first_field, std::uint32_t index);
[[nodiscard]] DriverRequest DataGet(std::uint32_t first_field, std::uint32_t index, std::size_t size);
[[nodiscard]] DriverRequest RegisterGet(std::uint64_t address, const Bytes& offered);
[[nodiscard]] DriverRequest RegisterSet(std::uint64_t address, const Bytes& data);
[[nodiscard]] DriverRequest NamedGet(std::string_view path, const Bytes& offered = Bytes(8));
[[nodiscard]] DriverRequest NamedSet(std::string_view path, const Bytes& data);

/// The property set of what the adapter talks to, and its instance data for a path.
[[nodiscard]] Bytes PathRequest(std::string_view path);

/// A description around the elements of some nodes.
[[nodiscard]] std::string Description(std::string_view nodes);

/// An `Extension` that marks a feature as an element of an item.
[[nodiscard]] std::string ElementMark(std::uint8_t number = 1);
[[nodiscard]] GUID ElementId(std::uint8_t number = 1);

enum class AccessPath { Named, Registers, Both };

/// A driver that serves descriptions, values by path and registers.
class ScriptedCamera {
public:
    ScriptedCamera(AccessPath access_path, std::vector<std::string> texts);

    ScriptedFilter filter;
    std::vector<std::string> descriptions;
    /// Answers by path; a path that is not here is refused.
    std::map<std::string, Bytes, std::less<>> named;
    /// Asked for a path that is not in `named`, where given; false refuses it.
    std::function<bool(std::string_view path, Bytes& answer)> other_paths;
    std::map<std::uint64_t, std::uint8_t> memory;
    /// What register access gives instead of doing it, unless S_OK.
    HRESULT register_result = S_OK;
    /// May change what a Get says it returned.
    std::function<std::uint32_t(std::uint32_t returned)> lie;
    /// May make a Get write fewer bytes.
    std::function<std::uint32_t(std::uint32_t size)> cut;

    template <class T>
    void Answer(const std::string& path, const T& value) {
        named[path] = BytesOf(value);
    }
    void AnswerText(const std::string& path, std::string_view text) { named[path] = BytesOfText(text); }
    void PutMemory(std::uint64_t address, const Bytes& bytes);

private:
    HRESULT GetSize(GetArguments& call);
    HRESULT GetData(GetArguments& call);
    HRESULT GetRegister(GetArguments& call);
    HRESULT SetRegister(const Bytes& instance, const Bytes& data);
    HRESULT GetNamed(GetArguments& call);
    HRESULT SetNamed(const Bytes& instance, const Bytes& data);
    void Serve(std::uint32_t id, HRESULT (ScriptedCamera::*get)(GetArguments&),
               HRESULT (ScriptedCamera::*set)(const Bytes&, const Bytes&));
    HRESULT AnswerWith(const Bytes& bytes, GetArguments& call) const;
};

/// A camera with one item of marked features, up to the item's object. The first requests are out of the way.
class OneItem {
public:
    /// `features` are the names of the nodes that the item's category lists. In named access the driver says
    /// of each that it is implemented.
    OneItem(AccessPath access_path, const std::string& nodes, const std::vector<std::string>& features);

    ScriptedCamera camera;

    [[nodiscard]] GenICamAdapterDevice& Adapter() { return *adapter_; }
    [[nodiscard]] CZELItemDataBase& operator*() { return *item_; }
    [[nodiscard]] CZELItemDataBase* operator->() { return item_.get(); }
    [[nodiscard]] GenICam::INode* Node(std::string_view name);
    [[nodiscard]] InterfaceKey Key(std::string_view name) { return genicam_adapter::key_of(Node(name)); }
    [[nodiscard]] std::vector<DriverRequest> Requests() { return camera.filter.TakeRequests(); }

private:
    std::unique_ptr<GenICamAdapterDevice> adapter_;
    platform::com_ptr<CZELItemDataBase> item_;
};

/// The item that a record's factory makes for a filter.
[[nodiscard]] platform::com_ptr<CZELItemDataBase> MakeItem(const ItemRecord& record, IUnknown* filter);

/// A driver that does nothing at all, with success. It is not counted: its references are numbers.
class IdleDriver : public IKsPropertySet {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                                  DWORD data_size) override;
    HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                                  DWORD data_size, DWORD* returned) override;
    HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID set, DWORD id, DWORD* support) override;
};

}  // namespace adapter_test
