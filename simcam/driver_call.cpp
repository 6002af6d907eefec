#include "simcam/driver_call.h"

#include "wire/device_set.h"

#include <utility>

namespace simcam {
namespace {

bool is_named(const driver_call& call) noexcept {
    return call.kind != call_kind::query_supported && call.set == wire::device_set &&
           call.id == SELVANE_NAMED_ACCESS;
}

bool ends_with(std::string_view text, std::string_view end) noexcept {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

}  // namespace

bool is_property_call(call_kind kind) noexcept {
    return kind == call_kind::query_supported || kind == call_kind::get || kind == call_kind::set;
}

bool is_camera_control(call_kind kind) noexcept {
    return kind == call_kind::camera_range || kind == call_kind::camera_get || kind == call_kind::camera_set;
}

call_filter calls_of(call_kind kind) {
    return [kind](const driver_call& call) { return call.kind == kind; };
}

call_filter property_calls(const GUID& set, DWORD id) {
    return [set, id](const driver_call& call) {
        return is_property_call(call.kind) && call.set == set && call.id == id;
    };
}

call_filter property_calls(call_kind kind, const GUID& set, DWORD id) {
    return [kind, set, id](const driver_call& call) {
        return call.kind == kind && call.set == set && call.id == id;
    };
}

call_filter path_calls(std::string path) {
    return [path = std::move(path)](const driver_call& call) { return is_named(call) && call.path == path; };
}

call_filter suffix_calls(std::string suffix) {
    return [suffix = std::move(suffix)](const driver_call& call) {
        return is_named(call) && ends_with(call.path, suffix);
    };
}

call_filter register_calls(std::uint64_t address) {
    return [address](const driver_call& call) {
        return call.kind != call_kind::query_supported && call.set == wire::device_set &&
               call.id == SELVANE_REGISTER_ACCESS && call.address == address;
    };
}

}  // namespace simcam
