#include "simcam/call_text.h"

#include "platform/count_text.h"
#include "platform/text.h"
#include "platform/visible_text.h"
#include "wire/device_set.h"
#include "wire/vendor_set.h"

#include <fmt/format.h>

#include <cstring>
#include <iterator>
#include <optional>

namespace simcam {
namespace {

constexpr std::size_t longest_byte_list = 64;

template <class Value>
std::optional<Value> read_as(const bytes& data) {
    Value value = {};
    if (data.size() < sizeof(value)) return std::nullopt;
    std::memcpy(&value, data.data(), sizeof(value));
    return value;
}

std::string set_name(REFGUID set) {
    if (set == wire::gate_set) return "gate";
    if (set == wire::device_set) return "device";
    if (set == wire::vendor_set) return "vendor";
    if (set == wire::color_enhancement_set) return "color-enhancement";
    return platform::narrow(platform::format_guid(set));
}

std::string hex_bytes(const bytes& data) {
    std::string text;
    for (std::size_t at = 0; at < data.size() && at < longest_byte_list; ++at) {
        fmt::format_to(std::back_inserter(text), at == 0 ? "{:02X}" : " {:02X}", data[at]);
    }
    if (data.size() > longest_byte_list) {
        fmt::format_to(std::back_inserter(text), " ... ({} bytes)", data.size());
    }
    return text;
}

// Up to the first zero.
std::string quoted(const bytes& data) {
    std::string text(data.begin(), data.end());
    return platform::quoted_text(text.c_str());
}

std::string named_value(const bytes& data, value_form form) {
    if (form == value_form::text) return quoted(data);
    if (data.size() != sizeof(std::uint64_t)) return hex_bytes(data);
    if (form == value_form::real) return fmt::format("{}", *read_as<double>(data));
    return fmt::format("{}", *read_as<std::int64_t>(data));
}

std::string text_of(const wire::integer_record& r) {
    return fmt::format("value={} flags=0x{:X} caps=0x{:X} min={} max={} default={}", r.value, r.flags,
                       r.capabilities, r.min, r.max, r.default_value);
}

std::string text_of(const wire::float_record& r) {
    return fmt::format("value={} flags=0x{:X} caps=0x{:X} min={} max={} default={}", r.value, r.flags,
                       r.capabilities, r.min, r.max, r.default_value);
}

std::string text_of(const wire::gpio_record& r) {
    return fmt::format("in={} out={} in-max={} out-max={}", r.input, r.output, r.max_input, r.max_output);
}

std::string text_of(const wire::strobe_record& r) {
    return fmt::format(
        "enable={} delay={} [{}..{} default {}] duration={} [{}..{} default {}] polarity={} "
        "follow-exposure={} "
        "restrictions=0x{:X}",
        r.enable, r.delay, r.delay_min, r.delay_max, r.delay_default, r.duration, r.duration_min,
        r.duration_max, r.duration_default, r.polarity, r.follow_exposure, r.restrictions);
}

// The vendor records differ in size, so the size tells the record.
std::string vendor_record(const bytes& data) {
    switch (data.size()) {
        case sizeof(wire::integer_record):
            return text_of(*read_as<wire::integer_record>(data));
        case sizeof(wire::float_record):
            return text_of(*read_as<wire::float_record>(data));
        case sizeof(wire::gpio_record):
            return text_of(*read_as<wire::gpio_record>(data));
        case sizeof(wire::strobe_record):
            return text_of(*read_as<wire::strobe_record>(data));
        default:
            return hex_bytes(data);
    }
}

bool is_device(const driver_call& call, DWORD id) { return call.set == wire::device_set && call.id == id; }

// What is asked for, behind set and id.
std::string target(const driver_call& call) {
    if (call.kind == call_kind::query_supported || call.set != wire::device_set) return {};
    switch (call.id) {
        case SELVANE_DESCRIPTION_SIZE:
        case SELVANE_DESCRIPTION_DATA: {
            const auto request = read_as<wire::description_request>(call.instance);
            if (!request) return " (short request)";
            return fmt::format(" {{{}, {}}}", request->first_field, request->index);
        }
        case SELVANE_REGISTER_ACCESS:
            return fmt::format(" 0x{:08X}", call.address);
        case SELVANE_NAMED_ACCESS:
            return " " + platform::visible_text(call.path);
        default:
            return {};
    }
}

std::string contents(const driver_call& call, const bytes& data, value_form form) {
    if (call.set == wire::vendor_set || call.set == wire::color_enhancement_set) return vendor_record(data);
    if (is_device(call, SELVANE_NAMED_ACCESS)) return named_value(data, form);
    if (is_device(call, SELVANE_DESCRIPTION_DATA)) return platform::count_text(call.returned, "byte");
    const bool number = is_device(call, SELVANE_DESCRIPTION_SIZE) || call.set == wire::gate_set;
    const auto value = number ? read_as<std::uint32_t>(data) : std::nullopt;
    return value ? fmt::format("{}", *value) : hex_bytes(data);
}

// A size that a driver reports but that is not the buffer's is worth a word; texts never fill theirs.
std::string size_note(const driver_call& call, value_form form) {
    if (form == value_form::text || call.returned == call.data.size()) return {};
    return fmt::format(" (returned {})", call.returned);
}

// What stands behind the title.
std::string property_answer(const driver_call& call, value_form form) {
    if (call.kind == call_kind::set) return " <- " + contents(call, call.data, form);
    if (FAILED(call.result)) return {};
    if (call.kind == call_kind::query_supported) return fmt::format(" -> 0x{:X}", call.support);
    return fmt::format(" -> {}{}", contents(call, call.answer, form), size_note(call, form));
}

std::string_view operation_words(call_kind kind) {
    switch (kind) {
        case call_kind::query_supported:
            return "QuerySupported";
        case call_kind::get:
            return "Get";
        case call_kind::set:
            return "Set";
        case call_kind::camera_range:
            return "CameraControl GetRange";
        case call_kind::camera_get:
            return "CameraControl Get";
        case call_kind::camera_set:
            return "CameraControl Set";
        case call_kind::amp_range:
            return "VideoProcAmp GetRange";
        case call_kind::amp_get:
            return "VideoProcAmp Get";
        default:
            return "VideoProcAmp Set";
    }
}

std::string control_answer(const driver_call& call) {
    const bool sent = call.kind == call_kind::camera_set || call.kind == call_kind::amp_set;
    const std::vector<LONG>& numbers = call.numbers;
    if (numbers.size() == 5) {
        return fmt::format(" -> min={} max={} step={} default={} caps=0x{:X}", numbers[0], numbers[1],
                           numbers[2], numbers[3], numbers[4]);
    }
    if (numbers.size() != 2) return {};
    return fmt::format(" {} value={} flags=0x{:X}", sent ? "<-" : "->", numbers[0], numbers[1]);
}

}  // namespace

std::string describe_result(HRESULT result) {
    return result == S_OK ? "ok" : fmt::format("0x{:08X}", static_cast<std::uint32_t>(result));
}

std::string call_title(const driver_call& call) {
    const std::string_view operation = operation_words(call.kind);
    if (!is_property_call(call.kind)) return fmt::format("{} {}", operation, call.id);
    return fmt::format("{} {} {}{}", operation, set_name(call.set), call.id, target(call));
}

std::string describe_call(const driver_call& call, value_form form, bool threw) {
    const std::string answer =
        is_property_call(call.kind) ? property_answer(call, form) : control_answer(call);
    return fmt::format("{}{}, {}", call_title(call), answer, threw ? "threw" : describe_result(call.result));
}

}  // namespace simcam
