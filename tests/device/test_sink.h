#pragma once

#include "apps/device/locks.h"
#include "apps/device/media_type.h"
#include "platform/com_ptr.h"

#include <strmif.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <vector>

namespace device_test {

/// A frame as it came to a sink.
struct received_frame {
    REFERENCE_TIME begin = 0;
    REFERENCE_TIME end = 0;
    LONGLONG number = 0;
    long size = 0;
    bool discontinuity = false;
    double brightness = 0;  ///< mean of all bytes
};

/// An input pin on its own, as a renderer has it: it does what the test says.
class test_sink final : public IPin, public IMemInputPin {
public:
    /// Asked in `Receive`, after the frame was noted.
    std::function<HRESULT(IMediaSample&)> on_frame;
    /// Whether a type is accepted.
    std::function<bool(const AM_MEDIA_TYPE&)> accepts;
    /// What the sink would like to have.
    std::vector<selvane_camera::media_type> wishes;
    /// Offered to the other side; without one it has to bring its own.
    platform::com_ptr<IMemAllocator> allocator;
    bool takes_allocators = true;
    std::function<void()> on_flush;

    [[nodiscard]] std::vector<received_frame> frames() const;
    [[nodiscard]] std::size_t count() const { return frames().size(); }
    void forget_frames();
    [[nodiscard]] platform::com_ptr<IMemAllocator> used_allocator() const { return used_; }
    [[nodiscard]] const selvane_camera::media_type& type() const { return type_; }
    std::atomic<int> flushes{0};
    std::atomic<int> disconnects{0};

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override { return --references_; }
    [[nodiscard]] ULONG references() const { return references_; }

    HRESULT STDMETHODCALLTYPE Connect(IPin*, const AM_MEDIA_TYPE*) override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE ReceiveConnection(IPin* connector, const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE Disconnect() override;
    HRESULT STDMETHODCALLTYPE ConnectedTo(IPin**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ConnectionMediaType(AM_MEDIA_TYPE*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryPinInfo(PIN_INFO*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryDirection(PIN_DIRECTION* direction) override;
    HRESULT STDMETHODCALLTYPE QueryId(LPWSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryAccept(const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE EnumMediaTypes(IEnumMediaTypes** out) override;
    HRESULT STDMETHODCALLTYPE QueryInternalConnections(IPin**, ULONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EndOfStream() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE BeginFlush() override;
    HRESULT STDMETHODCALLTYPE EndFlush() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE NewSegment(REFERENCE_TIME, REFERENCE_TIME, double) override { return S_OK; }

    HRESULT STDMETHODCALLTYPE GetAllocator(IMemAllocator** out) override;
    HRESULT STDMETHODCALLTYPE NotifyAllocator(IMemAllocator* chosen, BOOL read_only) override;
    HRESULT STDMETHODCALLTYPE GetAllocatorRequirements(ALLOCATOR_PROPERTIES*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Receive(IMediaSample* sample) override;
    HRESULT STDMETHODCALLTYPE ReceiveMultiple(IMediaSample**, long, long*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ReceiveCanBlock() override { return S_OK; }

private:
    std::atomic<ULONG> references_{0};  // the test owns it
    mutable selvane_camera::plain_lock lock_;
    std::vector<received_frame> frames_;
    platform::com_ptr<IMemAllocator> used_;
    selvane_camera::media_type type_;
};

}  // namespace device_test
