// Cameras through Aravis, which carries bytes and nothing else.

#include "genicam/core/error.h"
#include "inspection/camera/live_camera.h"
#include "inspection/inspect_error.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>

#include <arv.h>
#include <dlfcn.h>

namespace selvane_inspect {
namespace {

// What is called of Aravis and of what it stands on.
#define SELVANE_ARAVIS_FUNCTIONS(row)                                                                    \
    row(arv_update_device_list) row(arv_get_n_devices) row(arv_get_device_id) row(arv_get_device_vendor) \
        row(arv_get_device_model) row(arv_get_device_serial_nbr) row(arv_get_device_address)             \
            row(arv_get_device_protocol) row(arv_open_device) row(arv_device_get_genicam_xml)            \
                row(arv_device_read_memory) row(arv_device_write_memory) row(arv_device_error_quark)     \
                    row(arv_gv_device_get_type) row(arv_gv_device_is_controller)                         \
                        row(arv_gv_device_take_control) row(arv_gv_device_leave_control)                 \
                            row(g_type_check_instance_is_a) row(g_object_unref) row(g_error_free)

/// The library, loaded when it is first needed: whoever looks at files does without it.
struct aravis_library {
// NOLINTNEXTLINE(bugprone-macro-parentheses): the name of a member
#define SELVANE_ARAVIS_MEMBER(function) decltype(&::function) function = nullptr;
    SELVANE_ARAVIS_FUNCTIONS(SELVANE_ARAVIS_MEMBER)
#undef SELVANE_ARAVIS_MEMBER
};

constexpr const char* file_name = "libaravis-0.8.so.0";

template <class Function>
void find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    if (function == nullptr) throw refused(std::string(file_name) + " has no " + name);
}

aravis_library load() {
    // It has threads of its own: it stays until the process ends.
    void* const library = dlopen(file_name, RTLD_NOW | RTLD_NODELETE);
    if (library == nullptr) {
        throw refused(std::string("cameras are reached through Aravis, which is not there (") + dlerror() +
                      "); on Debian the package is libaravis-0.8-0");
    }
    aravis_library loaded;
#define SELVANE_ARAVIS_FIND(function) find(library, #function, loaded.function);
    SELVANE_ARAVIS_FUNCTIONS(SELVANE_ARAVIS_FIND)
#undef SELVANE_ARAVIS_FIND
    return loaded;
}

// Throws `inspect_error` where it is not installed.
const aravis_library& aravis() {
    static const aravis_library loaded = load();
    return loaded;
}

std::string text_of(const char* text) { return text != nullptr ? text : ""; }

/// What a call of the library leaves behind when it fails.
class call_failure {
public:
    call_failure() = default;
    call_failure(const call_failure&) = delete;
    call_failure& operator=(const call_failure&) = delete;
    ~call_failure() {
        if (error_ != nullptr) aravis().g_error_free(error_);
    }
    [[nodiscard]] GError** output() noexcept { return &error_; }
    [[nodiscard]] std::string words() const {
        return error_ != nullptr ? error_->message : "no reason is given";
    }
    [[nodiscard]] int code() const {
        const bool is_devices = error_ != nullptr && error_->domain == aravis().arv_device_error_quark();
        return is_devices ? error_->code : ARV_DEVICE_ERROR_UNKNOWN;
    }

private:
    GError* error_ = nullptr;
};

struct code_row {
    int protocol;
    GenICam::error_number engine;
};
constexpr code_row refusals[] = {
    {ARV_DEVICE_ERROR_NOT_CONTROLLER, GenICam::access_denied},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED, GenICam::access_denied},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_WRITE_PROTECT, GenICam::access_denied},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_ADDRESS, GenICam::invalid_address},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_BAD_ALIGNMENT, GenICam::bad_alignment},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_PARAMETER, GenICam::invalid_parameter},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR_NOT_IMPLEMENTED, GenICam::not_implemented},
    {ARV_DEVICE_ERROR_PROTOCOL_ERROR, GenICam::invalid_parameter},
};

// Who controls a camera on the network: the standard's register, and its bits for exclusive access and
// control.
constexpr std::uint64_t privilege_register = 0xA00;
constexpr std::uint8_t controlled = 0x03;

/// The devices of the last search. The library keeps them for the whole process.
std::vector<camera_identity> search() {
    aravis().arv_update_device_list();
    std::vector<camera_identity> found(aravis().arv_get_n_devices());
    for (unsigned at = 0; at < found.size(); ++at) {
        found[at] = {
            text_of(aravis().arv_get_device_id(at)),      text_of(aravis().arv_get_device_vendor(at)),
            text_of(aravis().arv_get_device_model(at)),   text_of(aravis().arv_get_device_serial_nbr(at)),
            text_of(aravis().arv_get_device_address(at)), text_of(aravis().arv_get_device_protocol(at))};
    }
    return found;
}

class aravis_camera final : public live_camera {
public:
    explicit aravis_camera(const std::string& name) : name_(name) {
        call_failure failure;
        device_ = aravis().arv_open_device(name.c_str(), failure.output());
        if (device_ == nullptr) throw refused("cannot reach the camera " + name + ": " + failure.words());
        // Opening takes control where it is free; a reader has no use for it.
        leave_control();
    }
    aravis_camera(const aravis_camera&) = delete;
    aravis_camera& operator=(const aravis_camera&) = delete;
    ~aravis_camera() override { aravis().g_object_unref(device_); }

    [[nodiscard]] std::string_view description() const override {
        std::size_t size = 0;
        const char* const text = aravis().arv_device_get_genicam_xml(device_, &size);
        return text != nullptr ? std::string_view(text, size) : std::string_view();
    }
    [[nodiscard]] const std::string& ending() const noexcept override { return ending_; }

    void take_control() override;
    void leave_control() noexcept override {
        // A camera that has gone silent would be waited for, and so would one that others control.
        if (ending_.empty() && is_network_camera() &&
            aravis().arv_gv_device_is_controller(network_device()) != FALSE) {
            aravis().arv_gv_device_leave_control(network_device(), nullptr);
        }
    }

    [[nodiscard]] std::error_code read(std::uint64_t address, void* buffer, std::int64_t length,
                                       std::uint32_t) override;
    [[nodiscard]] std::error_code write(std::uint64_t address, const void* buffer, std::int64_t length,
                                        std::uint32_t) override;

private:
    [[nodiscard]] bool is_network_camera() const noexcept {
        auto* const instance = reinterpret_cast<GTypeInstance*>(device_);
        return aravis().g_type_check_instance_is_a(instance, aravis().arv_gv_device_get_type()) != FALSE;
    }
    [[nodiscard]] ArvGvDevice* network_device() const noexcept {
        return reinterpret_cast<ArvGvDevice*>(device_);
    }
    [[nodiscard]] bool is_under_control();
    [[nodiscard]] std::error_code judge(const call_failure& failure);

    std::string name_;
    ArvDevice* device_ = nullptr;
    std::string ending_;
};

void aravis_camera::take_control() {
    if (!is_network_camera()) return;  // who has opened a camera on USB has it alone
    call_failure failure;
    if (aravis().arv_gv_device_take_control(network_device(), failure.output()) != FALSE) return;
    // Some cameras do not answer at all when they refuse.
    if (is_under_control()) throw refused("the camera " + name_ + " is under the control of another program");
    throw refused("the camera " + name_ + " does not give control: " + failure.words());
}

bool aravis_camera::is_under_control() {
    std::array<std::uint8_t, 4> privilege{};
    const std::error_code failure = read(privilege_register, privilege.data(), privilege.size(), 0);
    return !failure && (privilege.back() & controlled) != 0;
}

// A refusal concerns one access; whatever else fails, fails for good.
std::error_code aravis_camera::judge(const call_failure& failure) {
    const int code = failure.code();
    const auto* const row = std::find_if(std::begin(refusals), std::end(refusals),
                                         [&](const code_row& one) { return one.protocol == code; });
    if (row != std::end(refusals)) return row->engine;
    const bool is_busy = code == ARV_DEVICE_ERROR_PROTOCOL_ERROR_BUSY;
    ending_ =
        "the camera " + name_ + (is_busy ? " is busy" : " does not answer any more") + ": " + failure.words();
    return GenICam::device_lost;
}

std::error_code aravis_camera::read(std::uint64_t address, void* buffer, std::int64_t length, std::uint32_t) {
    if (!ending_.empty()) return GenICam::device_lost;
    if (length < 0 || length > std::numeric_limits<std::int32_t>::max()) return GenICam::invalid_parameter;
    call_failure failure;
    const auto size = static_cast<guint32>(length);
    if (aravis().arv_device_read_memory(device_, address, size, buffer, failure.output()) != FALSE) return {};
    return judge(failure);
}

std::error_code aravis_camera::write(std::uint64_t address, const void* buffer, std::int64_t length,
                                     std::uint32_t) {
    if (!ending_.empty()) return GenICam::device_lost;
    if (length < 0 || length > std::numeric_limits<std::int32_t>::max()) return GenICam::invalid_parameter;
    call_failure failure;
    const auto size = static_cast<guint32>(length);
    // The library takes what it only reads for something that could change.
    void* const bytes = const_cast<void*>(buffer);  // NOLINT(cppcoreguidelines-pro-type-const-cast)
    if (aravis().arv_device_write_memory(device_, address, size, bytes, failure.output()) != FALSE) return {};
    return judge(failure);
}

}  // namespace

std::vector<camera_identity> find_cameras() { return search(); }

std::unique_ptr<live_camera> connect_camera(const std::string& name) {
    return std::make_unique<aravis_camera>(name);
}

}  // namespace selvane_inspect
