#include "apps/inspect/memory_options.h"

#include "inspection/description.h"
#include "inspection/inspect_error.h"
#include "inspection/traced_port.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

using simcam::bytes;
using simcam::register_memory;

// A file with the address behind its last @, if it has one.
struct image_argument {
    std::string file;
    std::optional<std::uint64_t> address;
};

image_argument split_image(const std::string& argument) {
    const std::size_t at = argument.rfind('@');
    if (at == std::string::npos) return {argument, std::nullopt};
    const auto address = parse_address(std::string_view(argument).substr(at + 1));
    if (!address) throw wrong_use("no address behind the @ of " + argument);
    return {argument.substr(0, at), address};
}

bytes to_bytes(const std::string& text) { return {text.begin(), text.end()}; }

void load_image(const std::string& argument, register_memory& memory) {
    const image_argument parts = split_image(argument);
    const std::string contents = read_file(parts.file);
    if (parts.address) {
        memory.poke(*parts.address, to_bytes(contents));
    } else if (const std::size_t line = memory.load(contents); line != 0) {
        throw wrong_use(
            fmt::format("{}:{}: not of the form \"address: contents\" (an image of bytes is given as "
                        "FILE@ADDRESS)",
                        parts.file, line));
    }
}

void set_register(const std::string& argument, register_memory& memory) {
    const std::size_t at = argument.find('=');
    const auto address = parse_address(std::string_view(argument).substr(0, at));
    const auto contents =
        at != std::string::npos ? parse_bytes(std::string_view(argument).substr(at + 1)) : std::nullopt;
    if (!address || !contents)
        throw wrong_use(argument + " is no register: ADDRESS=BYTES, such as 0x1000=0000012C");
    memory.poke(*address, *contents);
}

bool is_zero(const bytes& contents) {
    return std::all_of(contents.begin(), contents.end(), [](std::uint8_t byte) { return byte == 0; });
}

std::string as_lines(const register_memory& memory) {
    constexpr std::size_t line_size = 16;
    std::string lines;
    for (const std::uint64_t page : memory.written_pages()) {
        for (std::size_t at = 0; at < register_memory::page_size; at += line_size) {
            const bytes contents = memory.peek(page + at, line_size);
            if (is_zero(contents)) continue;
            fmt::format_to(std::back_inserter(lines), "0x{:04X}: {}\n", page + at, bytes_text(contents));
        }
    }
    return lines;
}

// The size of the image that was read at that address; 0 for none.
std::uint64_t image_size(const memory_options& options, std::uint64_t address) {
    std::uint64_t size = 0;
    for (const std::string& image : options.images) {
        const image_argument parts = split_image(image);
        if (parts.address == address) size = std::max<std::uint64_t>(size, read_file(parts.file).size());
    }
    return size;
}

std::string as_image(const register_memory& memory, std::uint64_t address, std::uint64_t size) {
    constexpr std::uint64_t largest = std::uint64_t{1} << 30;
    for (const std::uint64_t page : memory.written_pages()) {
        const bytes contents = memory.peek(page, register_memory::page_size);
        const auto last =
            std::find_if(contents.rbegin(), contents.rend(), [](std::uint8_t byte) { return byte != 0; });
        const std::uint64_t end = page + static_cast<std::uint64_t>(contents.rend() - last);
        if (last != contents.rend() && end > address) size = std::max(size, end - address);
    }
    if (size > largest) {
        throw wrong_use(fmt::format("an image from {} on would have {} bytes", address_text(address), size));
    }
    const bytes contents = memory.peek(address, static_cast<std::size_t>(size));
    return {contents.begin(), contents.end()};
}

}  // namespace

void fill_memory(const memory_options& options, register_memory& memory) {
    for (const std::string& image : options.images) load_image(image, memory);
    for (const std::string& one : options.registers) set_register(one, memory);
}

void save_memory(const std::string& argument, const memory_options& options, const register_memory& memory) {
    const image_argument split = split_image(argument);
    write_file(split.file, split.address
                               ? as_image(memory, *split.address, image_size(options, *split.address))
                               : as_lines(memory));
}

std::optional<std::uint64_t> parse_address(std::string_view text) {
    const bool is_hexadecimal = text.substr(0, 2) == "0x" || text.substr(0, 2) == "0X";
    if (is_hexadecimal) text.remove_prefix(2);
    std::uint64_t address = 0;
    const char* const last = text.data() + text.size();
    const auto [end, failure] = std::from_chars(text.data(), last, address, is_hexadecimal ? 16 : 10);
    if (failure != std::errc() || end != last) return std::nullopt;
    return address;
}

std::optional<bytes> parse_bytes(std::string_view text) {
    std::string digits;
    std::copy_if(text.begin(), text.end(), std::back_inserter(digits), [](char c) { return c != ' '; });
    if (digits.empty() || digits.size() % 2 != 0) return std::nullopt;
    bytes contents;
    for (std::size_t at = 0; at < digits.size(); at += 2) {
        const char* const first = digits.data() + at;
        std::uint8_t byte = 0;
        const auto [end, failure] = std::from_chars(first, first + 2, byte, 16);
        if (failure != std::errc() || end != first + 2) return std::nullopt;
        contents.push_back(byte);
    }
    return contents;
}

}  // namespace selvane_inspect
