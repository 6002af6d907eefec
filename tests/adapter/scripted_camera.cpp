#include "tests/adapter/scripted_camera.h"

#include "wire/device_set.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace adapter_test {
namespace {

using wire::description_request;
using wire::device_set;
using Kind = DriverRequest::Kind;

// Numbers of the device set as a driver knows them.
constexpr std::uint32_t size_property = 1;
constexpr std::uint32_t data_property = 2;
constexpr std::uint32_t register_property = 3;
constexpr std::uint32_t named_property = 4;

constexpr std::size_t path_offset = 8;
constexpr std::size_t path_tail = 64;

DriverRequest Request(Kind kind, std::uint32_t id, Bytes instance, Bytes data) {
    DriverRequest request;
    request.kind = kind;
    request.set = wire::device_set;
    request.id = id;
    request.instance = std::move(instance);
    request.data = std::move(data);
    return request;
}

template <class T>
T Read(const Bytes& bytes) {
    EXPECT_EQ(bytes.size(), sizeof(T));
    T value{};
    std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof(T)));
    return value;
}

std::string PathOf(const Bytes& instance) {
    EXPECT_GE(instance.size(), path_offset + path_tail);
    const auto path_end = instance.end() - static_cast<std::ptrdiff_t>(path_tail);
    EXPECT_TRUE(std::all_of(path_end, instance.end(), [](std::uint8_t byte) { return byte == 0; }));
    return std::string(instance.begin() + path_offset, path_end);
}

}  // namespace

Bytes BytesOfText(std::string_view text) { return Bytes(text.begin(), text.end()); }

DriverRequest Supported(REFGUID set, std::uint32_t id) {
    DriverRequest request;
    request.kind = Kind::query_supported;
    request.set = set;
    request.id = id;
    return request;
}

DriverRequest SizeGet(std::uint32_t first_field, std::uint32_t index) {
    return Request(Kind::get, size_property, BytesOf(std::array<std::uint32_t, 2>{first_field, index}),
                   Bytes(4));
}

DriverRequest DataGet(std::uint32_t first_field, std::uint32_t index, std::size_t size) {
    return Request(Kind::get, data_property, BytesOf(std::array<std::uint32_t, 2>{first_field, index}),
                   Bytes(size));
}

DriverRequest RegisterGet(std::uint64_t address, const Bytes& offered) {
    return Request(Kind::get, register_property, BytesOf(address), offered);
}

DriverRequest RegisterSet(std::uint64_t address, const Bytes& data) {
    return Request(Kind::set, register_property, BytesOf(address), data);
}

DriverRequest NamedGet(std::string_view path, const Bytes& offered) {
    return Request(Kind::get, named_property, PathRequest(path), offered);
}

DriverRequest NamedSet(std::string_view path, const Bytes& data) {
    return Request(Kind::set, named_property, PathRequest(path), data);
}

Bytes PathRequest(std::string_view path) {
    Bytes request(path_offset + path.size() + path_tail);
    std::copy(path.begin(), path.end(), request.begin() + path_offset);
    return request;
}

std::string Description(std::string_view nodes) {
    std::string text = "<RegisterDescription ModelName=\"Model\" VendorName=\"Vendor\">";
    text += nodes;
    return text + "</RegisterDescription>";
}

std::string ElementMark(std::uint8_t number) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text = "<Extension><ZELElementGUID>{0A0B0C0D-0102-0304-0506-0708090A0B";
    text += digits[number >> 4];
    text += digits[number & 0xF];
    return text + "}</ZELElementGUID></Extension>";
}

GUID ElementId(std::uint8_t number) {
    return {0x0A0B0C0D, 0x0102, 0x0304, {0x05, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x0B, number}};
}

ScriptedCamera::ScriptedCamera(AccessPath access_path, std::vector<std::string> texts)
    : descriptions(std::move(texts)) {
    auto& gate = filter.Property(wire::gate_set, 0);
    gate.Put<std::uint32_t>(0, 5).bytes.resize(144);
    Serve(size_property, &ScriptedCamera::GetSize, nullptr);
    Serve(data_property, &ScriptedCamera::GetData, nullptr);
    if (access_path != AccessPath::Named)
        Serve(register_property, &ScriptedCamera::GetRegister, &ScriptedCamera::SetRegister);
    if (access_path != AccessPath::Registers)
        Serve(named_property, &ScriptedCamera::GetNamed, &ScriptedCamera::SetNamed);
}

void ScriptedCamera::Serve(std::uint32_t id, HRESULT (ScriptedCamera::*get)(GetArguments&),
                           HRESULT (ScriptedCamera::*set)(const Bytes&, const Bytes&)) {
    auto& property = filter.Property(wire::device_set, id);
    property.get = [this, get](GetArguments& call) {
        const HRESULT hr = (this->*get)(call);
        if (lie && SUCCEEDED(hr)) call.returned = lie(call.returned);
        return hr;
    };
    property.set_result = E_NOTIMPL;
    if (set == nullptr) return;
    property.set = [this, set](const Bytes& instance, const Bytes& data) {
        return (this->*set)(instance, data);
    };
}

HRESULT ScriptedCamera::AnswerWith(const Bytes& bytes, GetArguments& call) const {
    call.returned = std::min(call.size, static_cast<std::uint32_t>(bytes.size()));
    if (cut) call.returned = cut(call.returned);
    std::copy_n(bytes.begin(), call.returned, call.data);
    return S_OK;
}

HRESULT ScriptedCamera::GetSize(GetArguments& call) {
    const auto request = Read<wire::description_request>(call.instance);
    if (request.first_field != 1 || request.index >= descriptions.size())
        return test_support::property_unknown;
    return AnswerWith(BytesOf(static_cast<std::uint32_t>(descriptions[request.index].size())), call);
}

HRESULT ScriptedCamera::GetData(GetArguments& call) {
    const auto request = Read<wire::description_request>(call.instance);
    if (request.index >= descriptions.size()) return test_support::property_unknown;
    return AnswerWith(BytesOfText(descriptions[request.index]), call);
}

HRESULT ScriptedCamera::GetRegister(GetArguments& call) {
    if (register_result != S_OK) return register_result;
    Bytes answer;
    const auto address = Read<std::uint64_t>(call.instance);
    for (std::uint32_t at = 0; at < call.size; ++at) answer.push_back(memory[address + at]);
    return AnswerWith(answer, call);
}

HRESULT ScriptedCamera::SetRegister(const Bytes& instance, const Bytes& data) {
    if (register_result != S_OK) return register_result;
    PutMemory(Read<std::uint64_t>(instance), data);
    return S_OK;
}

HRESULT ScriptedCamera::GetNamed(GetArguments& call) {
    const std::string path = PathOf(call.instance);
    const auto known = named.find(path);
    if (known != named.end()) return AnswerWith(known->second, call);
    Bytes answer;
    if (!other_paths || !other_paths(path, answer)) return test_support::property_unknown;
    return AnswerWith(answer, call);
}

HRESULT ScriptedCamera::SetNamed(const Bytes& instance, const Bytes& data) {
    named[PathOf(instance)] = data;
    return S_OK;
}

void ScriptedCamera::PutMemory(std::uint64_t address, const Bytes& bytes) {
    for (const std::uint8_t byte : bytes) memory[address++] = byte;
}

OneItem::OneItem(AccessPath access_path, const std::string& nodes, const std::vector<std::string>& features)
    : camera(access_path, {}) {
    std::string item =
        "<Category Name=\"Root\"><pFeature>TheItem</pFeature></Category><Category Name=\"TheItem\">"
        "<Extension><ZELItemGUID>{00000000-0000-0000-0000-000000000001}</ZELItemGUID></Extension>";
    for (const std::string& feature : features) {
        item += "<pFeature>" + feature + "</pFeature>";
        camera.Answer(feature + "/IsImplemented", std::uint64_t{1});
    }
    camera.descriptions.push_back(Description(item + "</Category>" + nodes));
    adapter_ = std::make_unique<GenICamAdapterDevice>(&camera.filter);
    const auto& table = adapter_->get_item_table();
    if (table.size() == 1) item_ = MakeItem(table.front(), &camera.filter);
    EXPECT_EQ(table.size(), 1U);
    (void)Requests();
}

GenICam::INode* OneItem::Node(std::string_view name) {
    GenICam::INode* const node = adapter_->get_documents().front()->find_node(name);
    EXPECT_NE(node, nullptr) << name;
    return node;
}

platform::com_ptr<CZELItemDataBase> MakeItem(const ItemRecord& record, IUnknown* filter) {
    CZELItemDataBase* item = nullptr;
    record.factory(&item, filter, record);
    return platform::com_ptr<CZELItemDataBase>::attach(item);
}

HRESULT STDMETHODCALLTYPE IdleDriver::QueryInterface(REFIID, void** out) {
    *out = static_cast<IKsPropertySet*>(this);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE IdleDriver::Set(REFGUID, DWORD, LPVOID, DWORD, LPVOID, DWORD) { return S_OK; }

HRESULT STDMETHODCALLTYPE IdleDriver::Get(REFGUID, DWORD, LPVOID, DWORD, LPVOID, DWORD, DWORD*) {
    return S_OK;
}

HRESULT STDMETHODCALLTYPE IdleDriver::QuerySupported(REFGUID, DWORD, DWORD* support) {
    *support = 3;
    return S_OK;
}

}  // namespace adapter_test
