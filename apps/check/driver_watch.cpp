#include "apps/check/driver_watch.h"

#include "platform/visible_text.h"
#include "simcam/call_reading.h"
#include "simcam/call_text.h"
#include "wire/device_set.h"

#include <cstring>
#include <exception>
#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace selvane_check {

using simcam::call_kind;
using simcam::driver_call;

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

driver_call property_call(call_kind kind, REFGUID set, DWORD id, const void* instance, DWORD size) {
    driver_call call;
    call.kind = kind;
    call.set = set;
    call.id = id;
    call.instance = simcam::copy_of(instance, size);
    static_cast<void>(simcam::read_instance(call));  // the driver is to say what it does not understand
    return call;
}

}  // namespace

driver_watch::driver_watch(IUnknown& driver, finding_book& findings, std::function<std::uint64_t()> clock)
    : driver_(driver), behind_(driver), faces_(*this, *this), findings_(findings), clock_(std::move(clock)) {}

IKsPropertySet* driver_watch::property_set() noexcept {
    return behind_.property_set ? faces_.property_set() : nullptr;
}

bool driver_watch::has_camera_control() const noexcept { return static_cast<bool>(behind_.camera_control); }

const std::string* driver_watch::selected_entry(const std::string& enumeration) const {
    const auto found = selected_.find(enumeration);
    return found != selected_.end() ? &found->second : nullptr;
}

HRESULT driver_watch::QueryInterface(REFIID iid, void** out) {
    if (out == nullptr) return E_POINTER;
    *out = iid == platform::iid_unknown ? static_cast<IUnknown*>(this) : behind_.face(iid, faces_);
    return *out != nullptr ? S_OK : driver_.QueryInterface(iid, out);
}

template <class Work>
HRESULT driver_watch::run(const driver_call& call, Work work) {
    ++calls_;
    const std::uint64_t start = clock_();
    HRESULT result = E_UNEXPECTED;
    try {
        result = work();
    } catch (const std::exception& failure) {
        findings_.add(fault_kind::driver_throws,
                      fmt::format("an exception leaves {}: {}", call_title(call), failure.what()));
    } catch (...) {
        findings_.add(fault_kind::driver_throws, fmt::format("an exception leaves {}", call_title(call)));
    }
    if (clock_() - start > longest_call) {
        findings_.add(fault_kind::slow_call,
                      fmt::format("{} takes longer than {} ms", call_title(call), longest_call / 1000));
    }
    return result;
}

HRESULT driver_watch::query(REFGUID set, DWORD id, DWORD* support) {
    if (!names_shown_ && set == wire::device_set && id == SELVANE_NAMED_ACCESS) {
        *support = 0;
        return S_OK;
    }
    return run(property_call(call_kind::query_supported, set, id, nullptr, 0),
               [&] { return behind_.property_set->QuerySupported(set, id, support); });
}

HRESULT driver_watch::set(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data,
                          DWORD data_size) {
    return run(property_call(call_kind::set, set, id, instance, instance_size),
               [&] { return behind_.property_set->Set(set, id, instance, instance_size, data, data_size); });
}

HRESULT driver_watch::get(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data,
                          DWORD data_size, DWORD* returned) {
    const driver_call call = property_call(call_kind::get, set, id, instance, instance_size);
    const HRESULT result = run(call, [&] {
        return behind_.property_set->Get(set, id, instance, instance_size, data, data_size, returned);
    });
    if (!call.path.empty()) {
        judge_named(call.path, result, static_cast<const char*>(data), data_size, *returned);
    }
    if (set == wire::device_set && id == SELVANE_REGISTER_ACCESS) {
        judge_register(call.address, result, data_size, *returned);
    }
    return result;
}

void driver_watch::judge_register(std::uint64_t address, HRESULT result, DWORD size, DWORD returned) {
    std::string& purpose = purposes_[address];
    if (purpose_) purpose = purpose_(address);
    const std::string shown = fmt::format("the register at 0x{:08X}{}", address, purpose);
    if (FAILED(result)) {
        if (!purpose_) return;
        findings_.add(fault_kind::register_refused,
                      fmt::format("{} is refused with {}", shown, simcam::describe_result(result)));
    } else if (result != S_OK) {
        findings_.add(fault_kind::register_result,
                      fmt::format("{} is answered with {}", shown, simcam::describe_result(result)));
    } else if (returned < size) {
        findings_.add(fault_kind::register_short,
                      fmt::format("{} is answered with {} of {} bytes", shown, returned, size));
    }
}

template <class Work>
HRESULT driver_watch::run_control(call_kind kind, LONG property, Work work) {
    driver_call call;
    call.kind = kind;
    call.id = static_cast<DWORD>(property);
    return run(call, [&] { return behind_.with_control(kind, work); });
}

HRESULT driver_watch::control_range(call_kind kind, LONG property, const simcam::range_outputs& out) {
    return run_control(kind, property, [&](auto& control) {
        return control.GetRange(property, out[0], out[1], out[2], out[3], out[4]);
    });
}

HRESULT driver_watch::control_get(call_kind kind, LONG property, LONG* value, LONG* flags) {
    return run_control(kind, property, [&](auto& control) { return control.Get(property, value, flags); });
}

HRESULT driver_watch::control_set(call_kind kind, LONG property, LONG value, LONG flags) {
    return run_control(kind, property, [&](auto& control) { return control.Set(property, value, flags); });
}

void driver_watch::judge_named(const std::string& path, HRESULT result, const char* data, DWORD size,
                               DWORD returned) {
    const std::string_view suffix = suffix_of(path);
    const std::string shown = platform::visible_text(path);
    if (FAILED(result)) {
        if (is_needed(suffix)) {
            findings_.add(fault_kind::named_refused,
                          fmt::format("{} is refused with {}", shown, simcam::describe_result(result)));
        }
        return;
    }
    if (result != S_OK) {
        findings_.add(fault_kind::named_result,
                      fmt::format("{} is answered with {}", shown, simcam::describe_result(result)));
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
