#include "apps/device/capture_pin.h"

#include "apps/device/enumerators.h"
#include "apps/device/frame_interval.h"
#include "platform/windows/com_edge.h"
#include "simcam/vendor_driver.h"

#include <uuids.h>
#include <vfwmsgs.h>

#include <algorithm>
#include <cwchar>
#include <mutex>
#include <utility>

namespace selvane_camera {
namespace {

using platform::at_com_edge;
using platform::com_ptr;
using guard = std::lock_guard<platform::recursive_lock>;

constexpr long least_buffers = 4;

HRESULT make_own_allocator(com_ptr<IMemAllocator>& allocator) {
    return CoCreateInstance(CLSID_MemoryAllocator, nullptr, CLSCTX_INPROC_SERVER, IID_IMemAllocator,
                            allocator.put_void());
}

HRESULT prepare(IMemAllocator& allocator, ALLOCATOR_PROPERTIES wanted) {
    ALLOCATOR_PROPERTIES actual{};
    const HRESULT hr = allocator.SetProperties(&wanted, &actual);
    if (FAILED(hr)) return hr;
    return actual.cbBuffer >= wanted.cbBuffer && actual.cBuffers > 0 ? S_OK : E_FAIL;
}

// The allocator of the other side goes before one of our own.
HRESULT agree_on_allocator(IMemInputPin& input, std::size_t size, com_ptr<IMemAllocator>& allocator) {
    ALLOCATOR_PROPERTIES wanted{};
    if (FAILED(input.GetAllocatorRequirements(&wanted))) wanted = {};
    wanted.cBuffers = std::max(wanted.cBuffers, least_buffers);
    wanted.cbBuffer = std::max(wanted.cbBuffer, static_cast<long>(size));
    wanted.cbAlign = std::max(wanted.cbAlign, 1L);
    HRESULT hr = input.GetAllocator(allocator.put());
    if (SUCCEEDED(hr)) hr = prepare(*allocator, wanted);
    if (SUCCEEDED(hr)) hr = input.NotifyAllocator(allocator.get(), FALSE);
    if (SUCCEEDED(hr)) return hr;
    hr = make_own_allocator(allocator);
    if (SUCCEEDED(hr)) hr = prepare(*allocator, wanted);
    return SUCCEEDED(hr) ? input.NotifyAllocator(allocator.get(), FALSE) : hr;
}

// What the other side would like to have, as far as it says so.
std::vector<media_type> types_of(IPin& pin) {
    std::vector<media_type> types;
    com_ptr<IEnumMediaTypes> all;
    if (FAILED(pin.EnumMediaTypes(all.put())) || !all) return types;
    AM_MEDIA_TYPE* type = nullptr;
    while (all->Next(1, &type, nullptr) == S_OK) {
        types.emplace_back(*type);
        CoTaskMemFree(type->pbFormat);
        if (type->pUnk != nullptr) type->pUnk->Release();
        CoTaskMemFree(type);
    }
    return types;
}

}  // namespace

capture_pin::capture_pin(pin_owner& owner) noexcept
    : platform::com_part<IPin>(owner.filter()),
      owner_(owner),
      config_(*this),
      category_(*this),
      quality_(*this) {}

HRESULT capture_pin::QueryInterface(REFIID iid, void** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (iid == IID_IUnknown || iid == IID_IPin) *out = static_cast<IPin*>(this);
    if (iid == IID_IAMStreamConfig) *out = static_cast<IAMStreamConfig*>(&config_);
    if (iid == platform::iid_property_set) *out = static_cast<IKsPropertySet*>(&category_);
    if (iid == IID_IQualityControl) *out = static_cast<IQualityControl*>(&quality_);
    if (*out == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

std::optional<frame_target> capture_pin::target() {
    const guard lock(lock_);
    return target_.pin ? std::optional<frame_target>(target_) : std::nullopt;
}

std::vector<media_type> capture_pin::offered_types() {
    const guard lock(lock_);
    if (chosen_) return {*chosen_};
    const REFERENCE_TIME interval = read_interval(owner_.camera()).now;
    std::vector<media_type> types;
    for (const simcam::frame_format& format : offered_formats())
        types.emplace_back(stream_format{format, interval});
    return types;
}

media_type capture_pin::current_type() {
    const guard lock(lock_);
    return target_.pin ? connected_type_ : offered_types().front();
}

HRESULT capture_pin::choose_type(const AM_MEDIA_TYPE& type) {
    const std::optional<stream_format> format = read_media_type(type);
    if (!format) return VFW_E_INVALIDMEDIATYPE;
    if (!owner_.is_stopped()) return VFW_E_NOT_STOPPED;
    com_ptr<IPin> receiver;
    {
        const guard lock(lock_);
        receiver = target_.pin;
    }
    if (receiver && receiver->QueryAccept(&type) != S_OK) return VFW_E_INVALIDMEDIATYPE;
    const REFERENCE_TIME interval = set_interval(owner_.camera(), format->interval);
    {
        const guard lock(lock_);
        chosen_ = media_type(stream_format{format->frame, interval});
    }
    if (!receiver || owner_.graph() == nullptr) return S_OK;
    return owner_.graph()->Reconnect(this);
}

HRESULT capture_pin::Connect(IPin* receiver, const AM_MEDIA_TYPE* type) {
    if (receiver == nullptr) return E_POINTER;
    if (!owner_.is_stopped()) return VFW_E_NOT_STOPPED;
    PIN_DIRECTION direction = PINDIR_OUTPUT;
    if (FAILED(receiver->QueryDirection(&direction)) || direction != PINDIR_INPUT)
        return VFW_E_INVALID_DIRECTION;
    return at_com_edge([&] {
        const guard lock(lock_);
        if (target_.pin) return VFW_E_ALREADY_CONNECTED;
        if (type != nullptr && read_media_type(*type)) return connect_by(*receiver, *type);
        return connect_by_any(*receiver, type);
    });
}

HRESULT capture_pin::connect_by_any(IPin& receiver, const AM_MEDIA_TYPE* wanted) {
    std::vector<media_type> candidates = offered_types();
    for (media_type& type : types_of(receiver)) {
        if (read_media_type(type.get()) && !chosen_) candidates.push_back(std::move(type));
    }
    for (const media_type& candidate : candidates) {
        if (wanted != nullptr && !leaves_room_for(*wanted, candidate.get())) continue;
        if (SUCCEEDED(connect_by(receiver, candidate.get()))) return S_OK;
    }
    return wanted == nullptr ? VFW_E_NO_ACCEPTABLE_TYPES : VFW_E_TYPE_NOT_ACCEPTED;
}

// The other side asks for pin and type while it accepts the connection.
HRESULT capture_pin::connect_by(IPin& receiver, const AM_MEDIA_TYPE& type) {
    const std::optional<stream_format> format = read_media_type(type);
    if (!format) return VFW_E_TYPE_NOT_ACCEPTED;
    connected_type_ = media_type(type);
    target_.pin = com_ptr<IPin>(&receiver);
    target_.format = format->frame;
    HRESULT hr = receiver.ReceiveConnection(this, &connected_type_.get());
    if (SUCCEEDED(hr)) {
        hr = receiver.QueryInterface(IID_IMemInputPin, target_.input.put_void());
        if (FAILED(hr)) hr = VFW_E_NO_TRANSPORT;
        if (SUCCEEDED(hr))
            hr = agree_on_allocator(*target_.input, simcam::frame_size(format->frame), target_.allocator);
        if (FAILED(hr)) receiver.Disconnect();
    }
    if (FAILED(hr)) forget_connection();
    return SUCCEEDED(hr) ? S_OK : hr;
}

void capture_pin::forget_connection() noexcept {
    target_ = {};
    connected_type_ = media_type();
}

HRESULT capture_pin::ReceiveConnection(IPin*, const AM_MEDIA_TYPE*) { return E_UNEXPECTED; }

HRESULT capture_pin::Disconnect() {
    if (!owner_.is_stopped()) return VFW_E_NOT_STOPPED;
    const guard lock(lock_);
    if (!target_.pin) return S_FALSE;
    forget_connection();
    return S_OK;
}

HRESULT capture_pin::ConnectedTo(IPin** out) {
    if (out == nullptr) return E_POINTER;
    const guard lock(lock_);
    *out = com_ptr<IPin>(target_.pin).detach();
    return *out != nullptr ? S_OK : VFW_E_NOT_CONNECTED;
}

HRESULT capture_pin::ConnectionMediaType(AM_MEDIA_TYPE* out) {
    if (out == nullptr) return E_POINTER;
    const guard lock(lock_);
    *out = {};
    return target_.pin ? media_type::copy(connected_type_.get(), *out) : VFW_E_NOT_CONNECTED;
}

HRESULT capture_pin::QueryPinInfo(PIN_INFO* info) {
    if (info == nullptr) return E_POINTER;
    *info = {};
    info->pFilter = &owner_.filter();
    info->pFilter->AddRef();
    info->dir = PINDIR_OUTPUT;
    std::wcscpy(info->achName, name);
    return S_OK;
}

HRESULT capture_pin::QueryDirection(PIN_DIRECTION* direction) {
    if (direction == nullptr) return E_POINTER;
    *direction = PINDIR_OUTPUT;
    return S_OK;
}

HRESULT capture_pin::QueryId(LPWSTR* id) {
    if (id == nullptr) return E_POINTER;
    const std::size_t size = (std::wcslen(name) + 1) * sizeof(wchar_t);
    *id = static_cast<LPWSTR>(CoTaskMemAlloc(size));
    if (*id == nullptr) return E_OUTOFMEMORY;
    std::wcscpy(*id, name);
    return S_OK;
}

HRESULT capture_pin::QueryAccept(const AM_MEDIA_TYPE* type) {
    if (type == nullptr) return E_POINTER;
    return read_media_type(*type) ? S_OK : S_FALSE;
}

HRESULT capture_pin::EnumMediaTypes(IEnumMediaTypes** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return at_com_edge([&] {
        *out = enumerate_media_types(offered_types()).detach();
        return S_OK;
    });
}

HRESULT capture_pin::QueryInternalConnections(IPin**, ULONG*) { return E_NOTIMPL; }
HRESULT capture_pin::EndOfStream() { return E_UNEXPECTED; }
HRESULT capture_pin::BeginFlush() { return E_UNEXPECTED; }
HRESULT capture_pin::EndFlush() { return E_UNEXPECTED; }
HRESULT capture_pin::NewSegment(REFERENCE_TIME, REFERENCE_TIME, double) { return S_OK; }

HRESULT capture_pin::category_face::Set(REFGUID, DWORD, LPVOID, DWORD, LPVOID, DWORD) { return E_NOTIMPL; }

HRESULT capture_pin::category_face::Get(REFGUID set, DWORD id, LPVOID, DWORD, LPVOID data, DWORD data_size,
                                        DWORD* returned) {
    DWORD support = 0;
    if (const HRESULT hr = QuerySupported(set, id, &support); FAILED(hr)) return hr;
    if (data == nullptr && returned == nullptr) return E_POINTER;
    if (returned != nullptr) *returned = sizeof(GUID);
    if (data == nullptr) return S_OK;
    if (data_size < sizeof(GUID)) return E_UNEXPECTED;
    *static_cast<GUID*>(data) = PIN_CATEGORY_CAPTURE;
    return S_OK;
}

HRESULT capture_pin::category_face::QuerySupported(REFGUID set, DWORD id, DWORD* support) {
    if (set != AMPROPSETID_Pin) return simcam::property_set_unknown;
    if (id != AMPROPERTY_PIN_CATEGORY) return simcam::property_unknown;
    if (support != nullptr) *support = KSPROPERTY_SUPPORT_GET;
    return S_OK;
}

HRESULT capture_pin::quality_face::Notify(IBaseFilter*, Quality) { return S_OK; }
HRESULT capture_pin::quality_face::SetSink(IQualityControl*) { return E_NOTIMPL; }

}  // namespace selvane_camera
