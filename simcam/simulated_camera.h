#pragma once

#include "genicam/genicam_doc.h"
#include "platform/com_ptr.h"
#include "platform/lock.h"
#include "simcam/camera_options.h"
#include "simcam/fault.h"
#include "simcam/picture_state.h"
#include "simcam/register_memory.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace simcam {

/// The vendor model of a camera. No driver call is answered while one is held, so that nothing in it changes
/// but by the holder, who may make calls himself.
class held_model {
public:
    held_model(platform::recursive_lock& mutex, vendor_model& model) : lock_(mutex), model_(&model) {}
    [[nodiscard]] vendor_model* operator->() const noexcept { return model_; }
    [[nodiscard]] vendor_model& operator*() const noexcept { return *model_; }

private:
    std::unique_lock<platform::recursive_lock> lock_;
    vendor_model* model_;
};

/// A capture filter with a camera behind it, made of nothing but memory. It offers IKsPropertySet,
/// IAMCameraControl and IAMVideoProcAmp as its options say, and answers the gate set, the device set and the
/// vendor sets in their wire formats. Named access is answered from its own view of the descriptions over its
/// own registers.
///
/// "/IsLocked": property pages take a non-zero answer for "may be changed now", and so does this driver mean
/// it. A feature with a `pIsLocked` link answers what the link reads; one without answers whether it is
/// available and writable.
///
/// Calls may come from any thread; they are answered one after the other.
class simulated_camera final : public IUnknown {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    simulated_camera(const simulated_camera&) = delete;
    simulated_camera& operator=(const simulated_camera&) = delete;

    /// References that are held now, those of the caller among them.
    [[nodiscard]] std::int32_t references() const noexcept;
    /// Cameras that exist in the process.
    [[nodiscard]] static std::int32_t live_cameras() noexcept;

    /// The interfaces without a reference, whether the options offer them or not.
    [[nodiscard]] IKsPropertySet* property_set() noexcept;
    [[nodiscard]] IAMCameraControl* camera_control() noexcept;
    [[nodiscard]] IAMVideoProcAmp* video_proc_amp() noexcept;

    // What was called. Kept only while `keep_transcript` is set.
    [[nodiscard]] std::vector<std::string> transcript() const;
    [[nodiscard]] std::vector<driver_call> calls() const;
    void clear_transcript();
    /// Every call made, also those cleared or not kept.
    [[nodiscard]] std::uint64_t call_count() const;
    /// Hears of each call when it has been answered, on the thread of the call.
    void set_listener(std::function<void(const driver_call&)> listener);

    void add_fault(fault added);
    void clear_faults();

    // What the camera holds, from inside: not in the transcript, not subject to faults.
    [[nodiscard]] register_memory& memory() noexcept;
    [[nodiscard]] held_model vendor();
    [[nodiscard]] const camera_options& options() const noexcept;
    [[nodiscard]] std::size_t document_count() const noexcept;
    /// The camera's own view of a description; null for one that does not parse.
    [[nodiscard]] GenICam::IGenICamDoc* document(std::size_t index);
    /// A feature of the camera's own view, in the first description that has it; null for none.
    [[nodiscard]] GenICam::INode* find_node(std::string_view name);
    // Paths are answered as property 4 does, and fail with what it would answer.
    [[nodiscard]] HRESULT get_named(std::string_view path, std::int64_t& value);
    [[nodiscard]] HRESULT get_named(std::string_view path, double& value);
    [[nodiscard]] HRESULT get_named(std::string_view path, std::string& text);
    /// Numbers go as the 8 bytes of a double or of an integer, as their type says: the path's own kind must
    /// agree.
    template <class Number, class = std::enable_if_t<std::is_arithmetic_v<Number>>>
    HRESULT set_named(std::string_view path, Number value) {
        using wire = std::conditional_t<std::is_floating_point_v<Number>, double, std::int64_t>;
        return set_named_bytes(path, static_cast<wire>(value));
    }
    HRESULT set_named(std::string_view path, std::string_view text);

    /// What a picture taken now depends on, while no call changes any of it.
    [[nodiscard]] picture_state picture() const;
    /// Sets the feature that tells the frame rate; 0x80070490 for a camera without one.
    [[nodiscard]] HRESULT set_frame_rate(double frames_a_second);

private:
    friend platform::com_ptr<simulated_camera> make_camera(camera_options options);
    explicit simulated_camera(camera_options options);
    ~simulated_camera();

    HRESULT set_named_bytes(std::string_view path, std::int64_t value);
    HRESULT set_named_bytes(std::string_view path, double value);

    class parts;
    std::unique_ptr<parts> parts_;
};

using camera_ptr = platform::com_ptr<simulated_camera>;

[[nodiscard]] camera_ptr make_camera(camera_options options);
/// A ready-made camera; null for an unknown name.
[[nodiscard]] camera_ptr make_camera(std::string_view name);

}  // namespace simcam
