#include "tests/device/test_sink.h"

#include "apps/device/enumerators.h"

#include <vfwmsgs.h>

#include <numeric>

namespace device_test {

using guard = std::lock_guard<selvane_camera::plain_lock>;

std::vector<received_frame> test_sink::frames() const {
    const guard lock(lock_);
    return frames_;
}

void test_sink::forget_frames() {
    const guard lock(lock_);
    frames_.clear();
}

HRESULT test_sink::QueryInterface(REFIID iid, void** out) {
    *out = nullptr;
    if (iid == IID_IUnknown || iid == IID_IPin) *out = static_cast<IPin*>(this);
    if (iid == IID_IMemInputPin) *out = static_cast<IMemInputPin*>(this);
    if (*out == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

HRESULT test_sink::ReceiveConnection(IPin*, const AM_MEDIA_TYPE* type) {
    if (QueryAccept(type) != S_OK) return VFW_E_TYPE_NOT_ACCEPTED;
    type_ = selvane_camera::media_type(*type);
    return S_OK;
}

HRESULT test_sink::Disconnect() {
    ++disconnects;
    return S_OK;
}

HRESULT test_sink::QueryDirection(PIN_DIRECTION* direction) {
    *direction = PINDIR_INPUT;
    return S_OK;
}

HRESULT test_sink::QueryAccept(const AM_MEDIA_TYPE* type) {
    return !accepts || accepts(*type) ? S_OK : S_FALSE;
}

HRESULT test_sink::EnumMediaTypes(IEnumMediaTypes** out) {
    *out = selvane_camera::enumerate_media_types(wishes).detach();
    return S_OK;
}

HRESULT test_sink::BeginFlush() {
    ++flushes;
    if (on_flush) on_flush();
    return S_OK;
}

HRESULT test_sink::GetAllocator(IMemAllocator** out) {
    *out = platform::com_ptr<IMemAllocator>(allocator).detach();
    return *out != nullptr ? S_OK : VFW_E_NO_ALLOCATOR;
}

HRESULT test_sink::NotifyAllocator(IMemAllocator* chosen, BOOL) {
    if (!takes_allocators) return E_FAIL;
    used_ = platform::com_ptr<IMemAllocator>(chosen);
    return S_OK;
}

HRESULT test_sink::Receive(IMediaSample* sample) {
    received_frame frame;
    sample->GetTime(&frame.begin, &frame.end);
    LONGLONG behind = 0;
    sample->GetMediaTime(&frame.number, &behind);
    frame.size = sample->GetActualDataLength();
    frame.discontinuity = sample->IsDiscontinuity() == S_OK;
    BYTE* bytes = nullptr;
    sample->GetPointer(&bytes);
    frame.brightness = std::accumulate(bytes, bytes + frame.size, 0.0) / static_cast<double>(frame.size);
    {
        const guard lock(lock_);
        frames_.push_back(frame);
    }
    return on_frame ? on_frame(*sample) : S_OK;
}

}  // namespace device_test
