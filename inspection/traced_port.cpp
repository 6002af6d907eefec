#include "inspection/traced_port.h"

#include "platform/visible_text.h"

#include <iterator>
#include <utility>

#include <fmt/format.h>

namespace selvane_inspect {

std::string address_text(std::uint64_t address) { return fmt::format("0x{:X}", address); }

std::string bytes_text(const simcam::bytes& data) {
    std::string text;
    for (const std::uint8_t byte : data) {
        fmt::format_to(std::back_inserter(text), "{}{:02X}", text.empty() ? "" : " ", byte);
    }
    return text;
}

double microseconds(std::chrono::nanoseconds time) {
    return std::chrono::duration<double, std::micro>(time).count();
}

std::string access_text(const port_access& access) {
    const std::string what = fmt::format("{} {} {}: ", access.is_write ? "write" : "read",
                                         address_text(access.address), access.data.size());
    const std::string time = access.took ? fmt::format(" ({:.0f} us)", microseconds(*access.took)) : "";
    return what + (access.failure ? access.failure.message() : bytes_text(access.data)) + time;
}

std::error_code traced_port::read(std::uint64_t address, void* buffer, std::int64_t length,
                                  std::uint32_t flags) {
    const auto start = std::chrono::steady_clock::now();
    const std::error_code failure = device_->read(address, buffer, length, flags);
    note(false, address, buffer, length, failure, start);
    return failure;
}

std::error_code traced_port::write(std::uint64_t address, const void* buffer, std::int64_t length,
                                   std::uint32_t flags) {
    const auto start = std::chrono::steady_clock::now();
    const std::error_code failure = device_->write(address, buffer, length, flags);
    note(true, address, buffer, length, failure, start);
    return failure;
}

std::vector<port_access> traced_port::take() { return std::exchange(accesses_, {}); }

void traced_port::note(bool is_write, std::uint64_t address, const void* data, std::int64_t length,
                       std::error_code failure, time_point start) {
    const auto* const first = static_cast<const std::uint8_t*>(data);
    port_access access = {is_write, address, {}, failure, std::nullopt};
    if (is_live_) access.took = std::chrono::steady_clock::now() - start;
    if (length > 0) access.data.assign(first, first + length);
    if (told_to_ != nullptr) *told_to_ << platform::visible_text(access_text(access)) << '\n';
    accesses_.push_back(std::move(access));
}

}  // namespace selvane_inspect
