#include "simcam/camera_core.h"

#include "genicam/core/error.h"
#include "simcam/call_reading.h"
#include "simcam/call_text.h"
#include "wire/device_set.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <utility>

namespace simcam {
namespace {

constexpr HRESULT no_more_descriptions = static_cast<HRESULT>(0x80070103);

bool is_device_property(const driver_call& call, DWORD id) noexcept {
    return call.set == wire::device_set && call.id == id;
}

// A size of 0 may come with a null buffer.
void copy_bytes(void* to, const void* from, std::size_t size) {
    if (size != 0) std::memcpy(to, from, size);
}

}  // namespace

camera_core::camera_core(camera_options wanted)
    : options(std::move(wanted)), book(options.keep_transcript), vendor_(options.vendor) {
    memory.scatter(options.memory_seed);
    if (const std::size_t line = memory.load(options.memory); line != 0) {
        throw std::invalid_argument("register contents: line " + std::to_string(line) + " is not understood");
    }
    if (options.prepare_memory) options.prepare_memory(memory);
    for (const std::string& description : options.descriptions) features.add(description, registers());
    if (options.start_from_defaults) features.write_defaults();
}

driver_call camera_core::open_call(call_kind kind, DWORD id) {
    driver_call call;
    call.number = book.open();
    call.kind = kind;
    call.id = id;
    return call;
}

// Whether the instance is one that the property takes.
bool camera_core::read_blocks(driver_call& call, const block& instance, const block& data) const {
    call.instance = copy_of(instance.memory, instance.size);
    call.one_buffer = instance.memory == data.memory;
    if (book.is_watched()) call.data = copy_of(data.memory, data.size);
    return read_instance(call);
}

void camera_core::close(driver_call& call, bool watched, bool threw) {
    if (!watched || !book.is_read()) return;
    const bool named = is_device_property(call, SELVANE_NAMED_ACCESS) && !call.path.empty();
    call.text = describe_call(call, named ? features.form_of(call.path) : value_form::integer, threw);
    book.close(std::move(call));
}

// Does the work of a call unless a fault is in its way, hands the answer to `finish`, and enters the call in
// the book.
template <class Work, class Finish>
HRESULT camera_core::answer(driver_call& call, bool watched, Work work, Finish finish) {
    try {
        if (options.call_delay.count() > 0) std::this_thread::sleep_for(options.call_delay);
        const std::optional<fault> struck = watched ? book.strike(call) : std::nullopt;
        const fault applied = struck ? *struck : fault();
        if (applied.action) applied.action();
        call.result = applied.result ? *applied.result : work();
        finish(applied);
    } catch (...) {
        close(call, watched, true);
        throw;
    }
    const HRESULT result = call.result;
    close(call, watched, false);
    return result;
}

template <class Work>
HRESULT camera_core::answer(driver_call& call, bool watched, Work work) {
    return answer(call, watched, work, [](const fault&) {});
}

HRESULT camera_core::query(REFGUID set, DWORD id, DWORD* support) {
    if (support == nullptr) return E_POINTER;
    const std::lock_guard<platform::recursive_lock> lock(mutex);
    driver_call call = open_call(call_kind::query_supported, id);
    call.set = set;
    DWORD word = 0;
    const auto work = [&] {
        if (set == wire::gate_set && options.gate_set) {
            word = support_get;
            return id == SELVANE_GATE_PROPERTY ? S_OK : property_unknown;
        }
        if (set == wire::device_set) return query_device(id, word);
        return serves_vendor(set) ? vendor_.query(set, id, word) : property_set_unknown;
    };
    return answer(call, book.is_watched(), work, [&](const fault& struck) {
        if (SUCCEEDED(call.result)) *support = call.support = struck.support.value_or(word);
    });
}

GenICam::IDevicePort& camera_core::registers() noexcept {
    return options.registers != nullptr ? *options.registers : memory;
}

bool camera_core::serves_vendor(REFGUID set) const noexcept {
    return (set == wire::vendor_set && options.vendor_set) ||
           (set == wire::color_enhancement_set && options.color_enhancement_set);
}

HRESULT camera_core::query_device(DWORD id, DWORD& support) const {
    const bool description = id == SELVANE_DESCRIPTION_SIZE || id == SELVANE_DESCRIPTION_DATA;
    const bool access = (id == SELVANE_REGISTER_ACCESS && options.register_access) ||
                        (id == SELVANE_NAMED_ACCESS && options.named_access);
    if (!description && !access) return property_unknown;
    support = access ? support_both : support_get;
    return S_OK;
}

HRESULT camera_core::get(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data,
                         DWORD data_size, DWORD* returned) {
    if (returned == nullptr || (data == nullptr && data_size != 0)) return E_POINTER;
    const std::lock_guard<platform::recursive_lock> lock(mutex);
    driver_call call = open_call(call_kind::get, id);
    call.set = set;
    const bool watched = book.is_watched();
    const bool understood = read_blocks(call, {instance, instance_size}, {data, data_size});
    DWORD written = 0;
    const auto work = [&] {
        return understood ? get_property(call, data, data_size, written) : E_INVALIDARG;
    };
    return answer(call, watched, work, [&](const fault& struck) {
        const bool answered = SUCCEEDED(call.result);
        if (struck.data)
            copy_bytes(data, struck.data->data(), std::min<std::size_t>(struck.data->size(), data_size));
        if (answered || struck.returned) *returned = call.returned = struck.returned.value_or(written);
        if (watched && answered) call.answer = copy_of(data, data_size);
    });
}

HRESULT camera_core::get_property(const driver_call& call, void* data, DWORD size, DWORD& returned) {
    if (call.set == wire::gate_set && options.gate_set && call.id == SELVANE_GATE_PROPERTY) {
        if (size < sizeof(wire::device_kind_query)) return buffer_too_small_hr;
        std::memcpy(data, &options.device_kind, sizeof(options.device_kind));
        returned = sizeof(wire::device_kind_query);
        return S_OK;
    }
    if (serves_vendor(call.set)) return vendor_.get(call.set, call.id, data, size, returned);
    DWORD support = 0;
    if (call.set != wire::device_set) return property_set_unknown;
    if (const HRESULT hr = query_device(call.id, support); FAILED(hr)) return hr;
    if (call.id == SELVANE_NAMED_ACCESS) return get_named(call.path, data, size, returned);
    if (call.id == SELVANE_REGISTER_ACCESS) {
        returned = size;
        return GenICam::to_hresult(registers().read(call.address, data, size, 0));
    }
    return get_description(call.instance, call.id, data, size, returned);
}

HRESULT camera_core::get_description(const bytes& instance, DWORD id, void* data, DWORD size,
                                     DWORD& returned) const {
    wire::description_request request = {};
    if (instance.size() < sizeof(request)) return E_INVALIDARG;
    std::memcpy(&request, instance.data(), sizeof(request));
    if (request.first_field != options.description_field) return E_INVALIDARG;
    if (request.index >= options.descriptions.size()) return no_more_descriptions;
    const std::string& text = options.descriptions[request.index];
    const auto length = static_cast<std::uint32_t>(text.size());
    const bool asks_size = id == SELVANE_DESCRIPTION_SIZE;
    returned = asks_size ? sizeof(length) : length;
    if (size < returned) return buffer_too_small_hr;
    copy_bytes(data, asks_size ? static_cast<const void*>(&length) : text.data(), returned);
    return S_OK;
}

HRESULT camera_core::get_named(const std::string& path, void* data, DWORD size, DWORD& returned) const {
    if (features.form_of(path) == value_form::text) {
        std::string text;
        if (const HRESULT hr = features.get_text(path, text); FAILED(hr)) return hr;
        if (size == 0) return buffer_too_small_hr;
        returned = static_cast<DWORD>(std::min<std::size_t>(text.size() + 1, size));
        std::memcpy(data, text.c_str(), returned - 1);
        static_cast<char*>(data)[returned - 1] = 0;
        return S_OK;
    }
    std::uint64_t raw = 0;
    if (size < sizeof(raw)) return buffer_too_small_hr;
    if (const HRESULT hr = features.get(path, raw); FAILED(hr)) return hr;
    std::memcpy(data, &raw, sizeof(raw));
    returned = sizeof(raw);
    return S_OK;
}

HRESULT camera_core::set(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data,
                         DWORD data_size) {
    if (data == nullptr && data_size != 0) return E_POINTER;
    const std::lock_guard<platform::recursive_lock> lock(mutex);
    driver_call call = open_call(call_kind::set, id);
    call.set = set;
    const bool watched = book.is_watched();
    const bool understood = read_blocks(call, {instance, instance_size}, {data, data_size});
    return answer(call, watched,
                  [&] { return understood ? set_property(call, data, data_size) : E_INVALIDARG; });
}

HRESULT camera_core::set_property(const driver_call& call, const void* data, DWORD size) {
    if (serves_vendor(call.set)) return vendor_.set(call.set, call.id, data, size);
    if (call.set != wire::device_set) return property_set_unknown;
    DWORD support = 0;
    if (const HRESULT hr = query_device(call.id, support); FAILED(hr)) return hr;
    if ((support & support_set) == 0) return property_unknown;
    if (call.id == SELVANE_NAMED_ACCESS) return set_named(call.path, data, size);
    return GenICam::to_hresult(registers().write(call.address, data, size, 0));
}

HRESULT camera_core::set_named(const std::string& path, const void* data, DWORD size) const {
    if (features.form_of(path) == value_form::text) {
        return features.set_text(path, std::string_view(static_cast<const char*>(data), size));
    }
    std::uint64_t raw = 0;
    if (size != sizeof(raw)) return E_INVALIDARG;
    std::memcpy(&raw, data, sizeof(raw));
    return features.set(path, raw);
}

vendor_driver::control_map& camera_core::controls_of(call_kind kind) noexcept {
    return is_camera_control(kind) ? options.vendor.camera_control : options.vendor.video_proc_amp;
}

template <class Give>
HRESULT camera_core::ask_control(call_kind kind, LONG property, Give give) {
    const std::lock_guard<platform::recursive_lock> lock(mutex);
    driver_call call = open_call(kind, static_cast<DWORD>(property));
    return answer(call, book.is_watched(), [&] {
        const vendor_driver::control_map& controls = controls_of(kind);
        const auto found = controls.find(property);
        if (found == controls.end()) return property_unknown;
        give(found->second, call);
        return S_OK;
    });
}

HRESULT camera_core::control_range(call_kind kind, LONG property, const range_outputs& out) {
    if (std::find(out.begin(), out.end(), nullptr) != out.end()) return E_POINTER;
    return ask_control(kind, property, [&](const direct_show_property& control, driver_call& call) {
        call.numbers = {control.min, control.max, control.step, control.default_value,
                        static_cast<LONG>(control.capabilities)};
        for (std::size_t at = 0; at < out.size(); ++at) *out[at] = call.numbers[at];
    });
}

HRESULT camera_core::control_get(call_kind kind, LONG property, LONG* value, LONG* flags) {
    if (value == nullptr || flags == nullptr) return E_POINTER;
    return ask_control(kind, property, [&](const direct_show_property& control, driver_call& call) {
        *value = control.value;
        *flags = static_cast<LONG>(control.flags);
        call.numbers = {*value, *flags};
    });
}

HRESULT camera_core::control_set(call_kind kind, LONG property, LONG value, LONG flags) {
    const std::lock_guard<platform::recursive_lock> lock(mutex);
    driver_call call = open_call(kind, static_cast<DWORD>(property));
    call.numbers = {value, flags};
    return answer(call, book.is_watched(),
                  [&] { return vendor_.set_control(controls_of(kind), property, value, flags); });
}

}  // namespace simcam
