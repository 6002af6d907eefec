#pragma once

#include "genicam/idevice_port.h"
#include "simcam/driver_call.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string_view>
#include <system_error>
#include <vector>

namespace simcam {

enum class area_access { read_write, read_only, write_only };

/// The register space of a camera: 64-bit addresses, in pages made at need. Where nothing was written it
/// holds zeros, or what `scatter` puts there. As a port it answers like the camera's firmware: a protected
/// area refuses with `access_denied`, an access that wraps around the address space with `invalid_address`.
/// Nothing in it follows a clock.
class register_memory final : public GenICam::IDevicePort {
public:
    using hook = std::function<void(register_memory&)>;
    static constexpr std::size_t page_size = 256;

    [[nodiscard]] std::error_code read(std::uint64_t address, void* buffer, std::int64_t length,
                                       std::uint32_t flags) override;
    [[nodiscard]] std::error_code write(std::uint64_t address, const void* buffer, std::int64_t length,
                                        std::uint32_t flags) override;

    /// Contents from inside the camera: no protection, no hooks.
    void peek(std::uint64_t address, void* buffer, std::size_t length) const;
    void poke(std::uint64_t address, const void* buffer, std::size_t length);
    [[nodiscard]] bytes peek(std::uint64_t address, std::size_t length) const;
    void poke(std::uint64_t address, const bytes& contents);

    /// Unsigned numbers of 1 to 8 bytes, big-endian unless told.
    [[nodiscard]] std::uint64_t peek_number(std::uint64_t address, std::size_t length,
                                            bool little_endian = false) const;
    void poke_number(std::uint64_t address, std::size_t length, std::uint64_t value,
                     bool little_endian = false);

    /// The addresses of all pages of `page_size` bytes that were ever written to, ascending.
    [[nodiscard]] std::vector<std::uint64_t> written_pages() const;

    void protect(std::uint64_t address, std::uint64_t length, area_access access);
    /// Runs before each port access that reads a byte of the area: registers that change by themselves.
    void before_read(std::uint64_t address, std::uint64_t length, hook run);
    /// Runs after each port access that wrote a byte of the area: commands, and registers that clear
    /// themselves.
    void after_write(std::uint64_t address, std::uint64_t length, hook run);

    /// From now on the bytes that were never written follow from their addresses and this number, which is
    /// not 0: the same on every machine, and without order.
    void scatter(std::uint64_t seed) noexcept { seed_ = seed; }

    /// Takes contents from lines "address: contents", where contents are bytes in hexadecimal and texts in
    /// quotes and "#" starts a comment: `0x0100: "Selvane" 00 # vendor`. Gives 0, or the number of the first
    /// line that is not so; the lines before it are in.
    [[nodiscard]] std::size_t load(std::string_view lines);

private:
    using page = std::array<std::uint8_t, page_size>;
    struct area {
        std::uint64_t address;
        std::uint64_t length;
        area_access access;
        hook run;
    };

    [[nodiscard]] page unwritten_page(std::uint64_t number) const;
    [[nodiscard]] std::error_code check(std::uint64_t address, std::int64_t length,
                                        area_access forbidden) const;
    void run_hooks(const std::vector<area>& hooks, std::uint64_t address, std::uint64_t length);

    std::uint64_t seed_ = 0;
    std::map<std::uint64_t, page> pages_;
    std::vector<area> protections_;
    std::vector<area> read_hooks_;
    std::vector<area> write_hooks_;
};

}  // namespace simcam
