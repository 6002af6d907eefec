// IAMStreamConfig of the pin.

#include "apps/device/capture_pin.h"
#include "apps/device/frame_interval.h"
#include "platform/windows/com_edge.h"

#include <uuids.h>

#include <algorithm>
#include <cstring>

namespace selvane_camera {
namespace {

using platform::at_com_edge;

HRESULT give_type(const media_type& type, AM_MEDIA_TYPE** out) {
    *out = type.give();
    return *out != nullptr ? S_OK : E_OUTOFMEMORY;
}

LONG bits_a_second(std::size_t frame, REFERENCE_TIME interval) noexcept {
    const auto bits = static_cast<LONGLONG>(frame) * 8 * ticks_a_second / interval;
    return static_cast<LONG>(std::min<LONGLONG>(bits, MAXLONG));
}

// A size is as it is: neither cropped nor scaled.
VIDEO_STREAM_CONFIG_CAPS describe(const simcam::frame_format& format, const interval_range& interval) {
    const SIZE size = {format.width, format.height};
    const std::size_t bytes = simcam::frame_size(format);
    VIDEO_STREAM_CONFIG_CAPS caps{};
    caps.guid = FORMAT_VideoInfo;
    caps.InputSize = caps.MinCroppingSize = caps.MaxCroppingSize = size;
    caps.CropGranularityX = caps.CropGranularityY = 1;
    caps.CropAlignX = caps.CropAlignY = 1;
    caps.MinOutputSize = caps.MaxOutputSize = size;
    caps.OutputGranularityX = caps.OutputGranularityY = 1;
    caps.MinFrameInterval = interval.shortest;
    caps.MaxFrameInterval = interval.longest;
    caps.MinBitsPerSecond = bits_a_second(bytes, interval.longest);
    caps.MaxBitsPerSecond = bits_a_second(bytes, interval.shortest);
    return caps;
}

}  // namespace

HRESULT capture_pin::config_face::SetFormat(AM_MEDIA_TYPE* type) {
    if (type == nullptr) return E_POINTER;
    return at_com_edge([&] { return pin_.choose_type(*type); });
}

HRESULT capture_pin::config_face::GetFormat(AM_MEDIA_TYPE** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return at_com_edge([&] { return give_type(pin_.current_type(), out); });
}

HRESULT capture_pin::config_face::GetNumberOfCapabilities(int* count, int* size) {
    if (count == nullptr || size == nullptr) return E_POINTER;
    return at_com_edge([&] {
        *count = static_cast<int>(offered_formats().size());
        *size = sizeof(VIDEO_STREAM_CONFIG_CAPS);
        return S_OK;
    });
}

HRESULT capture_pin::config_face::GetStreamCaps(int index, AM_MEDIA_TYPE** out, BYTE* caps) {
    if (out == nullptr || caps == nullptr) return E_POINTER;
    *out = nullptr;
    if (index < 0) return E_INVALIDARG;
    return at_com_edge([&] {
        if (static_cast<std::size_t>(index) >= offered_formats().size()) return S_FALSE;
        const simcam::frame_format& format = offered_formats()[static_cast<std::size_t>(index)];
        const interval_range interval = read_interval(pin_.owner().camera());
        const VIDEO_STREAM_CONFIG_CAPS made = describe(format, interval);
        std::memcpy(caps, &made, sizeof(made));
        return give_type(media_type(stream_format{format, interval.now}), out);
    });
}

}  // namespace selvane_camera
