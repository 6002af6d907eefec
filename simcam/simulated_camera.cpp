#include "simcam/simulated_camera.h"

#include "platform/reference_count.h"
#include "simcam/camera_core.h"
#include "simcam/driver_faces.h"

#include <atomic>
#include <cmath>
#include <cstring>
#include <utility>

namespace simcam {
namespace {

std::atomic<std::int32_t> cameras{0};

}  // namespace

/// Everything of a camera behind its public face.
class simulated_camera::parts {
public:
    parts(simulated_camera& camera, camera_options options) : core(std::move(options)), faces(camera, core) {}

    platform::reference_count references;
    camera_core core;
    driver_faces<camera_core> faces;
};

simulated_camera::simulated_camera(camera_options options)
    : parts_(std::make_unique<parts>(*this, std::move(options))) {
    ++cameras;
}

simulated_camera::~simulated_camera() { --cameras; }

HRESULT simulated_camera::QueryInterface(REFIID iid, void** out) {
    if (out == nullptr) return E_POINTER;
    const camera_options& offered = parts_->core.options;
    *out = nullptr;
    if (iid == platform::iid_unknown) *out = static_cast<IUnknown*>(this);
    if (iid == platform::iid_property_set && offered.property_set) *out = property_set();
    if (iid == platform::iid_camera_control && offered.camera_control) *out = camera_control();
    if (iid == platform::iid_video_proc_amp && offered.video_proc_amp) *out = video_proc_amp();
    if (*out == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG simulated_camera::AddRef() { return parts_->references.add(); }

ULONG simulated_camera::Release() {
    const ULONG left = parts_->references.give_up();
    if (left == 0) delete this;
    return left;
}

std::int32_t simulated_camera::references() const noexcept { return parts_->references.value(); }
std::int32_t simulated_camera::live_cameras() noexcept { return cameras; }

IKsPropertySet* simulated_camera::property_set() noexcept { return parts_->faces.property_set(); }
IAMCameraControl* simulated_camera::camera_control() noexcept { return parts_->faces.camera_control(); }
IAMVideoProcAmp* simulated_camera::video_proc_amp() noexcept { return parts_->faces.video_proc_amp(); }

std::vector<std::string> simulated_camera::transcript() const {
    const std::lock_guard<platform::recursive_lock> lock(parts_->core.mutex);
    std::vector<std::string> lines;
    for (const driver_call& call : parts_->core.book.calls()) lines.push_back(call.text);
    return lines;
}

std::vector<driver_call> simulated_camera::calls() const {
    const std::lock_guard<platform::recursive_lock> lock(parts_->core.mutex);
    return parts_->core.book.calls();
}

void simulated_camera::clear_transcript() {
    const std::lock_guard<platform::recursive_lock> lock(parts_->core.mutex);
    parts_->core.book.clear();
}

std::uint64_t simulated_camera::call_count() const {
    const std::lock_guard<platform::recursive_lock> lock(parts_->core.mutex);
    return parts_->core.book.count();
}

void simulated_camera::set_listener(std::function<void(const driver_call&)> listener) {
    const std::lock_guard<platform::recursive_lock> lock(parts_->core.mutex);
    parts_->core.book.set_listener(std::move(listener));
}

void simulated_camera::add_fault(fault added) {
    const std::lock_guard<platform::recursive_lock> lock(parts_->core.mutex);
    parts_->core.book.add_fault(std::move(added));
}

void simulated_camera::clear_faults() {
    const std::lock_guard<platform::recursive_lock> lock(parts_->core.mutex);
    parts_->core.book.clear_faults();
}

register_memory& simulated_camera::memory() noexcept { return parts_->core.memory; }
held_model simulated_camera::vendor() { return {parts_->core.mutex, parts_->core.options.vendor}; }
const camera_options& simulated_camera::options() const noexcept { return parts_->core.options; }
std::size_t simulated_camera::document_count() const noexcept { return parts_->core.features.size(); }

GenICam::IGenICamDoc* simulated_camera::document(std::size_t index) {
    return parts_->core.features.document(index);
}

GenICam::INode* simulated_camera::find_node(std::string_view name) {
    return parts_->core.features.find_node(name);
}

HRESULT simulated_camera::get_named(std::string_view path, std::int64_t& value) {
    const std::lock_guard<platform::recursive_lock> lock(parts_->core.mutex);
    std::uint64_t raw = 0;
    const HRESULT hr = parts_->core.features.get(path, raw);
    if (SUCCEEDED(hr)) value = static_cast<std::int64_t>(raw);
    return hr;
}

HRESULT simulated_camera::get_named(std::string_view path, double& value) {
    std::int64_t raw = 0;
    const HRESULT hr = get_named(path, raw);
    if (SUCCEEDED(hr)) std::memcpy(&value, &raw, sizeof(value));
    return hr;
}

HRESULT simulated_camera::get_named(std::string_view path, std::string& text) {
    const std::lock_guard<platform::recursive_lock> lock(parts_->core.mutex);
    return parts_->core.features.get_text(path, text);
}

HRESULT simulated_camera::set_named_bytes(std::string_view path, std::int64_t value) {
    const std::lock_guard<platform::recursive_lock> lock(parts_->core.mutex);
    return parts_->core.features.set(path, static_cast<std::uint64_t>(value));
}

HRESULT simulated_camera::set_named_bytes(std::string_view path, double value) {
    std::int64_t raw = 0;
    std::memcpy(&raw, &value, sizeof(raw));
    return set_named_bytes(path, raw);
}

HRESULT simulated_camera::set_named(std::string_view path, std::string_view text) {
    const std::lock_guard<platform::recursive_lock> lock(parts_->core.mutex);
    return parts_->core.features.set_text(path, text);
}

picture_state simulated_camera::picture() const {
    const std::lock_guard<platform::recursive_lock> lock(parts_->core.mutex);
    return read_picture_state(parts_->core.features, parts_->core.options.vendor);
}

HRESULT simulated_camera::set_frame_rate(double frames_a_second) {
    const std::lock_guard<platform::recursive_lock> lock(parts_->core.mutex);
    const char* feature = find_frame_rate(parts_->core.features);
    return feature == nullptr ? property_unknown
                              : set_named(std::string(feature) + "/Value", frames_a_second);
}

camera_ptr make_camera(camera_options options) {
    return camera_ptr(new simulated_camera(std::move(options)));
}

camera_ptr make_camera(std::string_view name) {
    std::optional<camera_options> options = ready_made(name);
    return options ? make_camera(std::move(*options)) : camera_ptr();
}

}  // namespace simcam
