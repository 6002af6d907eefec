#include "apps/host/call_printer.h"

#include "genicam/core/error.h"
#include "genicam/idevice_port.h"
#include "platform/debug_output.h"

#include <fmt/format.h>

namespace selvane_host {
namespace {

// The printer looks at kinds only; its documents have no device.
class absent_device final : public GenICam::IDevicePort {
public:
    std::error_code read(std::uint64_t, void*, std::int64_t, std::uint32_t) override { return refusal(); }
    std::error_code write(std::uint64_t, const void*, std::int64_t, std::uint32_t) override {
        return refusal();
    }

private:
    static std::error_code refusal() { return make_error_code(GenICam::access_denied); }
};

absent_device no_device;

}  // namespace

void call_printer::learn(const simcam::driver_call& call, std::string_view description) {
    if (known_requests_.insert(call.instance).second) features_.add(description, no_device);
}

unsigned long long call_printer::now() { return platform::performance_microseconds(); }

void call_printer::print(const simcam::driver_call& call, unsigned long long microseconds, bool threw) const {
    const simcam::value_form form =
        call.path.empty() ? simcam::value_form::integer : features_.form_of(call.path);
    sink_(fmt::format("{}, {} us", simcam::describe_call(call, form, threw), microseconds));
}

}  // namespace selvane_host
