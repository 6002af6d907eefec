#include "apps/check/driver_watch.h"

#include "platform/visible_text.h"
#include "simcam/call_text.h"
#include "wire/device_set.h"
#include "wire/vendor_set.h"

#include <cstring>
#include <exception>
#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace selvane_check {
namespace {

// Refusing the others costs nothing: pages have something in their place.
constexpr std::string_view needed_suffixes[] = {wire::path_suffix::value,
                                                wire::path_suffix::min,
                                                wire::path_suffix::max,
                                                wire::path_suffix::is_locked,
                                                wire::path_suffix::selected_entry,
                                                wire::path_suffix::is_implemented};

std::string_view suffix_of(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(slash);
}

bool is_needed(std::string_view suffix) {
    for (const std::string_view needed : needed_suffixes) {
        if (suffix == needed) return true;
    }
    return false;
}

std::string set_word(REFGUID set) {
    if (set == wire::device_set) return "device";
    if (set == wire::gate_set) return "gate";
    if (set == wire::vendor_set) return "vendor";
    return set == wire::color_enhancement_set ? "color" : "unknown set";
}

std::string path_of(REFGUID set, DWORD id, const void* instance, DWORD size) {
    const bool named = set == wire::device_set && id == SELVANE_NAMED_ACCESS;
    const char* path = named ? selvane_read_named_request(instance, size) : nullptr;
    return path != nullptr ? path : "";
}

// "Get device 4 Gain/Value"
std::string call_name(const char* operation, REFGUID set, DWORD id, const std::string& path) {
    std::string name = fmt::format("{} {} {}", operation, set_word(set), id);
    if (!path.empty()) name += " " + platform::visible_text(path);
    return name;
}

}  // namespace

std::string result_text(HRESULT result) {
    return fmt::format("0x{:08X}", static_cast<std::uint32_t>(result));
}

driver_watch::driver_watch(IUnknown& driver, finding_book& findings, std::function<std::uint64_t()> clock)
    : driver_(driver),
      findings_(findings),
      clock_(std::move(clock)),
      property_set_(platform::query<IKsPropertySet>(&driver)) {}

bool driver_watch::has_camera_control() const {
    return static_cast<bool>(platform::query<IAMCameraControl>(&driver_));
}

const std::string* driver_watch::selected_entry(const std::string& enumeration) const {
    const auto found = selected_.find(enumeration);
    return found != selected_.end() ? &found->second : nullptr;
}

HRESULT driver_watch::QueryInterface(REFIID iid, void** out) {
    if (out == nullptr) return E_POINTER;
    if (iid != platform::iid_unknown && iid != platform::iid_property_set) {
        return driver_.QueryInterface(iid, out);
    }
    *out = static_cast<IKsPropertySet*>(this);
    return S_OK;
}

template <class Work>
HRESULT driver_watch::run(const std::string& what, Work work) {
    ++calls_;
    const std::uint64_t start = clock_();
    HRESULT result = E_UNEXPECTED;
    try {
        result = work();
    } catch (const std::exception& failure) {
        findings_.add(fault_kind::driver_throws,
                      fmt::format("an exception leaves {}: {}", what, failure.what()));
    } catch (...) {
        findings_.add(fault_kind::driver_throws, fmt::format("an exception leaves {}", what));
    }
    if (clock_() - start > longest_call) {
        findings_.add(fault_kind::slow_call,
                      fmt::format("{} takes longer than {} ms", what, longest_call / 1000));
    }
    return result;
}

HRESULT driver_watch::QuerySupported(REFGUID set, DWORD id, DWORD* support) {
    return run(call_name("QuerySupported", set, id, {}),
               [&] { return property_set_->QuerySupported(set, id, support); });
}

HRESULT driver_watch::Set(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                          DWORD data_size) {
    return run(call_name("Set", set, id, path_of(set, id, instance, instance_size)),
               [&] { return property_set_->Set(set, id, instance, instance_size, data, data_size); });
}

HRESULT driver_watch::Get(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                          DWORD data_size, DWORD* returned) {
    const std::string path = path_of(set, id, instance, instance_size);
    const HRESULT result = run(call_name("Get", set, id, path), [&] {
        return property_set_->Get(set, id, instance, instance_size, data, data_size, returned);
    });
    if (!path.empty()) judge_named(path, result, static_cast<const char*>(data), data_size, *returned);
    if (set == wire::device_set && id == SELVANE_REGISTER_ACCESS && SUCCEEDED(result) && result != S_OK) {
        std::uint64_t address = 0;
        std::memcpy(&address, instance, sizeof(address));
        findings_.add(fault_kind::register_result, fmt::format("the register at 0x{:08X} is answered with {}",
                                                               address, result_text(result)));
    }
    return result;
}

void driver_watch::judge_named(const std::string& path, HRESULT result, const char* data, DWORD size,
                               DWORD returned) {
    const std::string_view suffix = suffix_of(path);
    const std::string shown = platform::visible_text(path);
    if (FAILED(result)) {
        if (is_needed(suffix)) {
            findings_.add(fault_kind::named_refused,
                          fmt::format("{} is refused with {}", shown, result_text(result)));
        }
        return;
    }
    if (result != S_OK) {
        findings_.add(fault_kind::named_result,
                      fmt::format("{} is answered with {}", shown, result_text(result)));
        return;
    }
    if (suffix != wire::path_suffix::selected_entry) {
        if (returned < SELVANE_NAMED_VALUE_SIZE) {
            findings_.add(fault_kind::named_no_bytes, fmt::format("{} is answered with {} of {} bytes", shown,
                                                                  returned, SELVANE_NAMED_VALUE_SIZE + 0));
        }
        return;
    }
    const auto* end = static_cast<const char*>(std::memchr(data, 0, size));
    if (returned == 0) {
        findings_.add(fault_kind::named_no_bytes, fmt::format("{} is answered with no bytes", shown));
    } else if (end == nullptr) {
        findings_.add(fault_kind::named_no_end, fmt::format("{} is a text without an end", shown));
    } else {
        selected_[path.substr(0, path.size() - suffix.size())] = std::string(data, end);
    }
}

}  // namespace selvane_check
