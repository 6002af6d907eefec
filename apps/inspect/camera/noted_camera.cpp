#include "apps/inspect/camera/noted_camera.h"

#include "apps/inspect/command.h"

namespace selvane_inspect {

std::error_code noted_camera::read(std::uint64_t address, void* buffer, std::int64_t length,
                                   std::uint32_t flags) {
    const std::error_code failure = port_.read(address, buffer, length, flags);
    tell();
    return failure;
}

std::error_code noted_camera::write(std::uint64_t address, const void* buffer, std::int64_t length,
                                    std::uint32_t flags) {
    const std::error_code failure = port_.write(address, buffer, length, flags);
    tell();
    return failure;
}

void noted_camera::tell() {
    for (const port_access& access : port_.take()) write_line(to_, access_text(access));
}

}  // namespace selvane_inspect
