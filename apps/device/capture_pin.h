#pragma once

#include "apps/device/frame_stream.h"
#include "apps/device/media_type.h"
#include "platform/com_part.h"
#include "platform/lock.h"

#include <strmif.h>

#include <optional>
#include <vector>

namespace selvane_camera {

/// What a pin needs of the filter that it is part of.
class pin_owner {
public:
    [[nodiscard]] virtual IBaseFilter& filter() noexcept = 0;
    [[nodiscard]] virtual bool is_stopped() noexcept = 0;
    /// Without a reference, null outside a graph.
    [[nodiscard]] virtual IFilterGraph* graph() noexcept = 0;
    /// Throws std::bad_alloc.
    [[nodiscard]] virtual simcam::simulated_camera& camera() = 0;

protected:
    ~pin_owner() = default;
};

/// The output pin "Capture". Its life is that of its filter.
class capture_pin final : public platform::com_part<IPin> {
public:
    explicit capture_pin(pin_owner& owner) noexcept;

    static constexpr const wchar_t* name = L"Capture";

    /// Where frames go; empty while the pin is not connected.
    [[nodiscard]] std::optional<frame_target> target();

    /// The media types that the pin offers at the moment.
    [[nodiscard]] std::vector<media_type> offered_types();
    /// The one that is connected, that was chosen, or the usual one.
    [[nodiscard]] media_type current_type();
    /// Offers this one alone from now on, and gives the camera its frame rate; a connected pin is connected
    /// anew.
    [[nodiscard]] HRESULT choose_type(const AM_MEDIA_TYPE& type);
    [[nodiscard]] pin_owner& owner() const noexcept { return owner_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;

    HRESULT STDMETHODCALLTYPE Connect(IPin* receiver, const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE ReceiveConnection(IPin* connector, const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE Disconnect() override;
    HRESULT STDMETHODCALLTYPE ConnectedTo(IPin** out) override;
    HRESULT STDMETHODCALLTYPE ConnectionMediaType(AM_MEDIA_TYPE* out) override;
    HRESULT STDMETHODCALLTYPE QueryPinInfo(PIN_INFO* info) override;
    HRESULT STDMETHODCALLTYPE QueryDirection(PIN_DIRECTION* direction) override;
    HRESULT STDMETHODCALLTYPE QueryId(LPWSTR* id) override;
    HRESULT STDMETHODCALLTYPE QueryAccept(const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE EnumMediaTypes(IEnumMediaTypes** out) override;
    HRESULT STDMETHODCALLTYPE QueryInternalConnections(IPin** pins, ULONG* count) override;
    HRESULT STDMETHODCALLTYPE EndOfStream() override;
    HRESULT STDMETHODCALLTYPE BeginFlush() override;
    HRESULT STDMETHODCALLTYPE EndFlush() override;
    HRESULT STDMETHODCALLTYPE NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop, double rate) override;

private:
    [[nodiscard]] HRESULT connect_by_any(IPin& receiver, const AM_MEDIA_TYPE* wanted);
    [[nodiscard]] HRESULT connect_by(IPin& receiver, const AM_MEDIA_TYPE& type);
    void forget_connection() noexcept;

    pin_owner& owner_;
    platform::recursive_lock lock_;  // the other side of a connection calls back
    frame_target target_;
    media_type connected_type_;
    std::optional<media_type> chosen_;

    // The other interfaces of the pin, as parts of it.
    class config_face final : public platform::com_part<IAMStreamConfig> {
    public:
        explicit config_face(capture_pin& pin) noexcept
            : platform::com_part<IAMStreamConfig>(pin), pin_(pin) {}
        HRESULT STDMETHODCALLTYPE SetFormat(AM_MEDIA_TYPE* type) override;
        HRESULT STDMETHODCALLTYPE GetFormat(AM_MEDIA_TYPE** out) override;
        HRESULT STDMETHODCALLTYPE GetNumberOfCapabilities(int* count, int* size) override;
        HRESULT STDMETHODCALLTYPE GetStreamCaps(int index, AM_MEDIA_TYPE** out, BYTE* caps) override;

    private:
        capture_pin& pin_;
    };
    class category_face final : public platform::com_part<IKsPropertySet> {
    public:
        using platform::com_part<IKsPropertySet>::com_part;
        HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size,
                                      LPVOID data, DWORD data_size) override;
        HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size,
                                      LPVOID data, DWORD data_size, DWORD* returned) override;
        HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID set, DWORD id, DWORD* support) override;
    };
    // Renderers tell a source how they keep up; a camera does not slow down for them.
    class quality_face final : public platform::com_part<IQualityControl> {
    public:
        using platform::com_part<IQualityControl>::com_part;
        HRESULT STDMETHODCALLTYPE Notify(IBaseFilter* sender, Quality quality) override;
        HRESULT STDMETHODCALLTYPE SetSink(IQualityControl* sink) override;
    };

    config_face config_;
    category_face category_;
    quality_face quality_;
};

}  // namespace selvane_camera
