#pragma once

#include "simcam/picture_painter.h"

#include <strmif.h>

#include <optional>
#include <vector>

namespace selvane_camera {

constexpr REFERENCE_TIME ticks_a_second = 10'000'000;

/// What a stream carries.
struct stream_format {
    simcam::frame_format frame;
    REFERENCE_TIME interval = 0;  ///< from one frame to the next; 0 if it was not told
};

/// Owns what a media type points to.
class media_type {
public:
    media_type() noexcept = default;
    /// Throws std::bad_alloc.
    explicit media_type(const AM_MEDIA_TYPE& type);
    explicit media_type(const stream_format& format);
    media_type(const media_type& other) : media_type(other.type_) {}
    media_type(media_type&& other) noexcept;
    media_type& operator=(media_type other) noexcept;
    ~media_type();

    [[nodiscard]] const AM_MEDIA_TYPE& get() const noexcept { return type_; }
    /// Copies for a caller, who frees what the copy points to. E_OUTOFMEMORY leaves it empty.
    [[nodiscard]] static HRESULT copy(const AM_MEDIA_TYPE& from, AM_MEDIA_TYPE& to) noexcept;
    /// A copy in memory that the caller frees too; null without memory.
    [[nodiscard]] AM_MEDIA_TYPE* give() const noexcept;

private:
    AM_MEDIA_TYPE type_{};
};

/// The formats of the camera, the usual one first.
[[nodiscard]] const std::vector<simcam::frame_format>& offered_formats();

/// The format that a media type tells, if it is one that the camera offers.
[[nodiscard]] std::optional<stream_format> read_media_type(const AM_MEDIA_TYPE& type) noexcept;

/// Whether a media type with gaps (zero ids) leaves room for another.
[[nodiscard]] bool leaves_room_for(const AM_MEDIA_TYPE& wanted, const AM_MEDIA_TYPE& offered) noexcept;

[[nodiscard]] bool is_same_format(const simcam::frame_format& one,
                                  const simcam::frame_format& other) noexcept;

}  // namespace selvane_camera
