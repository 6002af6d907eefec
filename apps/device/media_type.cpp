#include "apps/device/media_type.h"

#include "platform/com_ptr.h"

#include <amvideo.h>
#include <uuids.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace selvane_camera {
namespace {

using simcam::frame_format;
using simcam::pixel_format;

constexpr WORD rgb24_bits = 24;
constexpr WORD yuy2_bits = 16;
constexpr DWORD yuy2_code = MAKEFOURCC('Y', 'U', 'Y', '2');

struct size {
    int width;
    int height;
};
constexpr size sizes[] = {{640, 480}, {320, 240}, {1280, 720}};

VIDEOINFOHEADER video_info(const stream_format& format) noexcept {
    const bool rgb = format.frame.pixels == pixel_format::rgb24;
    const auto image = static_cast<DWORD>(simcam::frame_size(format.frame));
    VIDEOINFOHEADER info{};
    info.AvgTimePerFrame = format.interval;
    if (format.interval > 0) {
        info.dwBitRate = static_cast<DWORD>(
            std::min<LONGLONG>(LONGLONG{image} * 8 * ticks_a_second / format.interval, MAXDWORD));
    }
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = format.frame.width;
    info.bmiHeader.biHeight = format.frame.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = rgb ? rgb24_bits : yuy2_bits;
    info.bmiHeader.biCompression = rgb ? static_cast<DWORD>(BI_RGB) : yuy2_code;
    info.bmiHeader.biSizeImage = image;
    return info;
}

std::vector<frame_format> all_formats() {
    std::vector<frame_format> formats;
    // Programs that grab samples take the first format that there is, and know RGB alone.
    for (const pixel_format pixels : {pixel_format::rgb24, pixel_format::yuy2}) {
        for (const size& each : sizes) formats.push_back({pixels, each.width, each.height});
    }
    return formats;
}

}  // namespace

media_type::media_type(const AM_MEDIA_TYPE& type) {
    if (FAILED(copy(type, type_))) throw std::bad_alloc();
}

media_type::media_type(const stream_format& format) {
    VIDEOINFOHEADER info = video_info(format);
    AM_MEDIA_TYPE type{};
    type.majortype = MEDIATYPE_Video;
    type.subtype = format.frame.pixels == pixel_format::rgb24 ? MEDIASUBTYPE_RGB24 : MEDIASUBTYPE_YUY2;
    type.bFixedSizeSamples = TRUE;
    type.lSampleSize = info.bmiHeader.biSizeImage;
    type.formattype = FORMAT_VideoInfo;
    type.cbFormat = sizeof(info);
    type.pbFormat = reinterpret_cast<BYTE*>(&info);
    if (FAILED(copy(type, type_))) throw std::bad_alloc();
}

media_type::media_type(media_type&& other) noexcept : type_(std::exchange(other.type_, {})) {}

media_type& media_type::operator=(media_type other) noexcept {
    std::swap(type_, other.type_);
    return *this;
}

media_type::~media_type() {
    CoTaskMemFree(type_.pbFormat);
    if (type_.pUnk != nullptr) type_.pUnk->Release();
}

HRESULT media_type::copy(const AM_MEDIA_TYPE& from, AM_MEDIA_TYPE& to) noexcept {
    to = from;
    to.pbFormat = nullptr;
    if (from.cbFormat != 0) {
        to.pbFormat = static_cast<BYTE*>(CoTaskMemAlloc(from.cbFormat));
        if (to.pbFormat == nullptr) {
            to = {};
            return E_OUTOFMEMORY;
        }
        std::memcpy(to.pbFormat, from.pbFormat, from.cbFormat);
    }
    if (to.pUnk != nullptr) to.pUnk->AddRef();
    return S_OK;
}

AM_MEDIA_TYPE* media_type::give() const noexcept {
    auto* given = static_cast<AM_MEDIA_TYPE*>(CoTaskMemAlloc(sizeof(AM_MEDIA_TYPE)));
    if (given != nullptr && FAILED(copy(type_, *given))) {
        CoTaskMemFree(given);
        return nullptr;
    }
    return given;
}

const std::vector<frame_format>& offered_formats() {
    static const std::vector<frame_format> formats = all_formats();
    return formats;
}

std::optional<stream_format> read_media_type(const AM_MEDIA_TYPE& type) noexcept {
    const bool complete = type.majortype == MEDIATYPE_Video && type.formattype == FORMAT_VideoInfo &&
                          type.cbFormat >= sizeof(VIDEOINFOHEADER) && type.pbFormat != nullptr;
    if (!complete) return std::nullopt;
    VIDEOINFOHEADER info{};
    std::memcpy(&info, type.pbFormat, sizeof(info));
    for (const frame_format& format : offered_formats()) {
        const bool rgb = format.pixels == pixel_format::rgb24;
        if (type.subtype != (rgb ? MEDIASUBTYPE_RGB24 : MEDIASUBTYPE_YUY2)) continue;
        // The sign of the height means the order of the rows for RGB alone.
        const LONG height = rgb ? info.bmiHeader.biHeight : std::labs(info.bmiHeader.biHeight);
        if (info.bmiHeader.biWidth == format.width && height == format.height)
            return stream_format{format, std::max<REFERENCE_TIME>(info.AvgTimePerFrame, 0)};
    }
    return std::nullopt;
}

bool leaves_room_for(const AM_MEDIA_TYPE& wanted, const AM_MEDIA_TYPE& offered) noexcept {
    const auto fits = [](const GUID& wish, const GUID& there) {
        return wish == platform::null_guid || wish == there;
    };
    if (!fits(wanted.majortype, offered.majortype) || !fits(wanted.subtype, offered.subtype)) return false;
    if (wanted.formattype == platform::null_guid) return true;
    return wanted.formattype == offered.formattype && wanted.cbFormat == 0;
}

bool is_same_format(const frame_format& one, const frame_format& other) noexcept {
    return one.pixels == other.pixels && one.width == other.width && one.height == other.height;
}

}  // namespace selvane_camera
