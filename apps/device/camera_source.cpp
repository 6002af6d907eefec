#include "apps/device/camera_source.h"

#include "apps/device/locks.h"
#include "platform/debug_output.h"
#include "platform/text.h"
#include "simcam/description_files.h"

#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace selvane_camera {
namespace {

using source_key = std::pair<const device_record*, std::wstring>;

struct open_sources {
    plain_lock lock;
    std::map<source_key, std::weak_ptr<const camera_source>> sources;
};

open_sources& all_sources() {
    static open_sources all;
    return all;
}

std::string model_of(simcam::simulated_camera& camera) {
    GenICam::IGenICamDoc* first = camera.document_count() > 0 ? camera.document(0) : nullptr;
    return first != nullptr ? std::string(first->get_model_name()) : std::string();
}

simcam::camera_options nothing_to_show() {
    simcam::camera_options options = *simcam::ready_made("empty");
    options.keep_transcript = false;
    return options;
}

// A description that cannot be used leaves words in the place of a camera.
std::string make_described(const device_record& device, const std::wstring& file,
                           simcam::camera_ptr& camera) {
    simcam::camera_options options;
    options.keep_transcript = false;
    options.named_access = device.named_access;
    const std::vector<std::string> files = {platform::narrow(file)};
    std::string failure = simcam::replace_descriptions(options, files);
    if (!failure.empty()) return failure;
    camera = simcam::make_camera(std::move(options));
    return simcam::find_malformed(*camera, files);
}

simcam::camera_ptr make_own(const device_record& device) {
    simcam::camera_options options = *simcam::ready_made(device.camera);
    options.keep_transcript = false;
    options.named_access = device.named_access;
    return simcam::make_camera(std::move(options));
}

source_ptr make_source(const device_record& device, const std::wstring& file) {
    auto source = std::make_shared<camera_source>();
    if (file.empty()) {
        source->camera = make_own(device);
    } else if (const std::string failure = make_described(device, file, source->camera); !failure.empty()) {
        source->camera = simcam::make_camera(nothing_to_show());
        source->about = failure;
        platform::write_debug_output((platform::narrow(device.name) + ": " + failure + "\n").c_str());
        return source;
    }
    source->about = model_of(*source->camera);
    return source;
}

std::wstring variable(const wchar_t* name) {
    std::wstring text;
    for (DWORD needed = GetEnvironmentVariableW(name, nullptr, 0); needed > text.size();
         needed = GetEnvironmentVariableW(name, text.data(), needed)) {
        text.resize(needed);
    }
    return text.c_str();
}

}  // namespace

source_ptr open_camera(const device_record& device, const std::wstring& description_file) {
    open_sources& all = all_sources();
    const std::lock_guard<plain_lock> lock(all.lock);
    for (auto at = all.sources.begin(); at != all.sources.end();) {
        at = at->second.expired() ? all.sources.erase(at) : std::next(at);
    }
    const source_key key(&device, description_file);
    const auto found = all.sources.find(key);
    source_ptr source = found != all.sources.end() ? found->second.lock() : nullptr;
    if (source != nullptr) return source;
    source = make_source(device, description_file);
    all.sources[key] = source;
    return source;
}

std::wstring choose_description(const std::wstring& from_settings) {
    std::wstring chosen = variable(description_variable);
    return chosen.empty() ? from_settings : chosen;
}

}  // namespace selvane_camera
