#include "tests/genicam_registers/register_model.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <ostream>
#include <set>

namespace register_test {
namespace {

constexpr std::uint64_t first_address = 0x100;

std::string child(const char* name, const std::string& text) {
    return std::string("<") + name + ">" + text + "</" + name + ">";
}

const char* element_name(model_kind kind) {
    static constexpr const char* names[] = {"IntReg",      "FloatReg",  "MaskedIntReg",
                                            "StructEntry", "StringReg", "Register"};
    return names[static_cast<int>(kind)];
}

bool has_bits(model_kind kind) { return kind == model_kind::masked || kind == model_kind::entry; }

bool is_word(std::int64_t length) { return length >= 1 && length <= 8; }

// A number from bytes, highest first.
std::uint64_t number_of(Bytes bytes, bool is_little_endian) {
    if (is_little_endian) std::reverse(bytes.begin(), bytes.end());
    std::uint64_t number = 0;
    for (const std::uint8_t byte : bytes) number = number * 256 + byte;
    return number;
}

Bytes bytes_of(std::uint64_t number, std::int64_t length, bool is_little_endian) {
    Bytes bytes;
    for (std::int64_t at = 0; at < length; ++at) {
        bytes.push_back(static_cast<std::uint8_t>(number % 256));
        number /= 256;
    }
    if (!is_little_endian) std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

// Bit by bit: where bit `at` of the field lies in the number, or -1.
int bit_position(const model_register& reg, std::int64_t length, int at) {
    const int top = static_cast<int>(length) * 8 - 1;
    const int low = reg.is_little_endian ? reg.lsb : top - reg.lsb;
    const int high = reg.is_little_endian ? reg.msb : top - reg.msb;
    return low >= 0 && low + at <= high ? low + at : -1;
}

std::int64_t field_of(const model_register& reg, std::uint64_t number, std::int64_t length) {
    const int sign_bit = std::abs(reg.msb - reg.lsb);
    std::uint64_t field = 0;
    for (int at = 0; at < 64; ++at) {
        const int position = bit_position(reg, length, at);
        const bool is_set = position >= 0 && position < 64 && (number >> position & 1) != 0;
        if (is_set) field |= std::uint64_t{1} << at;
    }
    if (reg.is_signed && (field >> sign_bit & 1) != 0) field |= ~std::uint64_t{0} << sign_bit;
    return static_cast<std::int64_t>(field);
}

std::uint64_t with_field(const model_register& reg, std::uint64_t number, std::int64_t value,
                         std::int64_t length) {
    for (int at = 0; at < 64; ++at) {
        const int position = bit_position(reg, length, at);
        if (position < 0 || position > 63) continue;
        const std::uint64_t bit = std::uint64_t{1} << position;
        number = (static_cast<std::uint64_t>(value) >> at & 1) != 0 ? number | bit : number & ~bit;
    }
    return number;
}

std::int64_t integer_of(const model_register& reg, const Bytes& bytes) {
    std::uint64_t number = number_of(bytes, reg.is_little_endian);
    const auto bits = static_cast<int>(bytes.size()) * 8;
    if (reg.is_signed && bits < 64 && (number >> (bits - 1) & 1) != 0) number |= ~std::uint64_t{0} << bits;
    return static_cast<std::int64_t>(number);
}

double float_of(const model_register& reg, const Bytes& bytes) {
    const std::uint64_t number = number_of(bytes, reg.is_little_endian);
    if (bytes.size() == 8) {
        double value = 0;
        std::memcpy(&value, &number, 8);
        return value;
    }
    const auto half = static_cast<std::uint32_t>(number);
    float value = 0;
    std::memcpy(&value, &half, 4);
    return static_cast<double>(value);
}

Bytes float_bytes(const model_register& reg, double value, std::int64_t length) {
    std::uint64_t number = 0;
    if (length == 8) {
        std::memcpy(&number, &value, 8);
    } else {
        const auto single = static_cast<float>(value);
        std::memcpy(&number, &single, 4);
    }
    return bytes_of(number, length, reg.is_little_endian);
}

bool has_valid_length(const model_register& reg, std::int64_t length) {
    switch (reg.kind) {
        case model_kind::floating:
            return length == 4 || length == 8;
        case model_kind::text:
            return length >= 0;
        default:
            return is_word(length);
    }
}

}  // namespace

std::string text_for(std::int64_t value) {
    return std::string("abcdefghij").substr(0, static_cast<std::size_t>(value) % 11);
}

double float_for(std::int64_t value) { return static_cast<double>(value % 1000) / 8; }

std::string print_float(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return std::to_string(bits);
}

std::string model_register::element() const {
    static constexpr const char* modes[] = {"WriteThrough", "WriteAround", "NoCache"};
    static constexpr const char* accesses[] = {"RW", "RO", "WO"};
    std::string address_part = child("Address", std::to_string(address));
    address_part += has_linked_length ? child("pLength", "size") : child("Length", std::to_string(length));
    if (has_added_address) address_part += child("pAddress", "added");
    const std::string stated = offset != 0 ? " Offset='" + std::to_string(offset) + "'" : "";
    if (has_index) address_part += "<pIndex" + stated + ">index</pIndex>";
    if (is_little_endian) address_part += child("Endianess", "LittleEndian");
    std::string own = child("Cachable", modes[static_cast<int>(mode)]) +
                      child("AccessMode", accesses[static_cast<int>(access)]);
    if (is_signed) own += child("Sign", "Signed");
    if (has_bits(kind)) own += child("LSB", std::to_string(lsb)) + child("MSB", std::to_string(msb));
    for (const std::string& invalidator : invalidators) own += child("pInvalidator", invalidator);
    const std::string head = std::string("<") + element_name(kind) + " Name='" + name + "'>";
    const std::string tail = std::string("</") + element_name(kind) + ">";
    return kind == model_kind::entry ? "<StructReg>" + address_part + head + own + tail + "</StructReg>"
                                     : head + address_part + own + tail;
}

std::string model_setup::elements() const {
    std::string text =
        number("size", "4") + number("added", "0") + number("index", "0") + number("trigger", "0");
    for (const model_register& reg : registers) text += reg.element();
    return text;
}

model_setup random_setup(std::mt19937_64& random) {
    const auto below = [&random](int count) {
        return static_cast<int>(random() % static_cast<unsigned>(count));
    };
    static constexpr std::int64_t lengths[] = {1, 2, 3, 4, 4, 4, 5, 7, 8, 8, 0, 9};
    const std::vector<std::string> names = {"a", "b", "c", "d", "e", "f"};
    model_setup setup;
    for (const std::string& name : names) {
        model_register reg;
        reg.name = name;
        reg.kind = static_cast<model_kind>(below(6));
        reg.mode = reg.kind == model_kind::masked ? Cachable::NoCache : static_cast<Cachable>(below(3));
        reg.access = below(8) == 0 ? static_cast<AccessMode>(below(3)) : AccessMode::RW;
        reg.is_little_endian =
            below(2) == 0 && (reg.kind != model_kind::text && reg.kind != model_kind::block);
        reg.is_signed = below(2) == 0 && reg.kind != model_kind::floating;
        reg.lsb = below(34);
        reg.msb = below(34);
        reg.address = first_address + static_cast<std::uint64_t>(below(3)) * 2;
        reg.length = lengths[below(static_cast<int>(std::size(lengths)))];
        reg.has_linked_length = below(3) == 0 && reg.kind != model_kind::masked;
        reg.has_added_address = below(3) == 0;
        reg.has_index = below(3) == 0;
        reg.offset = below(2) * 3;
        for (const std::string& invalidator : names) {
            if (below(6) == 0) reg.invalidators.push_back(invalidator);
        }
        if (below(2) == 0) reg.invalidators.emplace_back("trigger");
        setup.registers.push_back(reg);
    }
    return setup;
}

void PrintTo(const model_outcome& outcome, std::ostream* out) {
    *out << outcome.failure << " '" << outcome.value << "'";
}

void register_model::reset() {
    memory_.clear();
    caches_.clear();
    traffic.clear();
    changes.clear();
    accesses_until_failure_ = 0;
}

register_model::span register_model::span_of(const model_register& reg) const {
    std::int64_t length = reg.has_linked_length ? numbers.at("size") : reg.length;
    if (reg.kind == model_kind::masked && !is_word(length)) length = 4;
    std::int64_t address = static_cast<std::int64_t>(reg.address);
    if (reg.has_added_address) address += numbers.at("added");
    if (reg.has_index) address += numbers.at("index") * (reg.offset != 0 ? reg.offset : length);
    return {static_cast<std::uint64_t>(address), length};
}

bool register_model::is_refused(const model_register& reg, bool is_write, std::uint32_t flags) const {
    return (flags & 0x800) == 0 && reg.access == (is_write ? AccessMode::RO : AccessMode::WO);
}

model_outcome register_model::read(const model_register& reg, std::uint32_t flags) {
    if (is_refused(reg, false, flags)) return {code(access_denied), ""};
    const span from = span_of(reg);
    if (reg.kind == model_kind::block) {
        if (from.length < 1) return {code(invalid_parameter), ""};
        const auto failure = ask_device(ReadOf(from.address, 1, flags));
        return {failure, failure ? "" : std::to_string(memory_at(from.address, 1)[0])};
    }
    if (!has_valid_length(reg, from.length)) return {code(index_out_of_range), ""};
    Bytes bytes;
    if (const auto failure = fetch(reg, from, flags, bytes)) return {failure, ""};
    switch (reg.kind) {
        case model_kind::integer:
            return {{}, std::to_string(integer_of(reg, bytes))};
        case model_kind::floating:
            return {{}, print_float(float_of(reg, bytes))};
        case model_kind::text:
            return {{}, std::string(bytes.begin(), bytes.end())};
        default:
            return {{}, std::to_string(field_of(reg, number_of(bytes, reg.is_little_endian), from.length))};
    }
}

model_outcome register_model::write(const model_register& reg, std::int64_t value, std::uint32_t flags) {
    if (is_refused(reg, true, flags)) return {code(access_denied), ""};
    const span to = span_of(reg);
    Bytes bytes;
    if (reg.kind == model_kind::text) {
        const std::string text = text_for(value);
        bytes.assign(text.begin(), text.end());
    } else if (reg.kind == model_kind::block) {
        if (to.length < 1) return {code(invalid_parameter), ""};
        bytes = bytes_of(static_cast<std::uint64_t>(value), 1, true);
    } else if (!has_valid_length(reg, to.length)) {
        return {code(index_out_of_range), ""};
    } else if (reg.kind == model_kind::floating) {
        bytes = float_bytes(reg, float_for(value), to.length);
    } else {
        auto number = static_cast<std::uint64_t>(value);
        if (has_bits(reg.kind)) {
            if (const auto failure = fetch(reg, to, flags, bytes)) return {failure, ""};
            number = with_field(reg, number_of(bytes, reg.is_little_endian), value, to.length);
        }
        bytes = bytes_of(number, to.length, reg.is_little_endian);
    }
    const auto failure = put(reg, to.address, bytes, flags);
    if (!failure) change(reg.name);
    return {failure, ""};
}

std::error_code register_model::fetch(const model_register& reg, span from, std::uint32_t flags,
                                      Bytes& bytes) {
    const auto size = static_cast<std::size_t>(from.length);
    if ((flags & 0x200) == 0 && ((flags & 0x100) != 0 || reg.mode != Cachable::NoCache)) {
        const auto cached = caches_.find(reg.name);
        const bool is_there = cached != caches_.end() && cached->second.address == from.address;
        if (is_there && size <= cached->second.bytes.size()) {
            bytes.assign(cached->second.bytes.begin(), cached->second.bytes.begin() + from.length);
            return {};
        }
        if ((flags & 0x100) != 0) return code(is_there ? buffer_too_small : no_cached_value);
    }
    if (const auto failure = ask_device(ReadOf(from.address, from.length, flags))) return failure;
    bytes = memory_at(from.address, from.length);
    caches_[reg.name] = {from.address, bytes};
    return {};
}

std::error_code register_model::put(const model_register& reg, std::uint64_t address, const Bytes& bytes,
                                    std::uint32_t flags) {
    if (reg.kind != model_kind::block) {
        if ((flags & 0x100) != 0) {
            if (reg.mode == Cachable::NoCache) return code(not_implemented);
            caches_[reg.name] = {address, bytes};
            return {};
        }
        if (reg.mode == Cachable::WriteThrough) caches_[reg.name] = {address, bytes};
        if (reg.mode == Cachable::WriteAround) caches_.erase(reg.name);
    }
    return ask_device(WriteOf(address, bytes, flags));
}

std::error_code register_model::ask_device(test_support::PortAccess access) {
    traffic.push_back(access);
    if (accesses_until_failure_ > 0 && --accesses_until_failure_ == 0) return code(device_lost);
    for (const std::uint8_t byte : access.data) memory_[access.address++] = byte;
    return {};
}

Bytes register_model::memory_at(std::uint64_t address, std::int64_t length) const {
    Bytes bytes;
    for (std::int64_t at = 0; at < length; ++at, ++address) {
        const auto found = memory_.find(address);
        bytes.push_back(found == memory_.end() ? std::uint8_t{0} : found->second);
    }
    return bytes;
}

void register_model::set_number(const std::string& name, std::int64_t value) {
    if (numbers.at(name) == value) return;
    numbers.at(name) = value;
    change(name);
}

// Everything that can be reached forgets and tells; the node itself tells once more, without forgetting.
void register_model::change(const std::string& name) {
    std::set<std::string> reached;
    std::deque<std::string> open = {name};
    while (!open.empty()) {
        const std::string from = open.front();
        open.pop_front();
        for (const model_register& reg : setup_.registers) {
            const auto& invalidators = reg.invalidators;
            const bool depends =
                std::find(invalidators.begin(), invalidators.end(), from) != invalidators.end() ||
                (from == "size" && reg.has_linked_length) || (from == "added" && reg.has_added_address);
            if (depends && reg.name != from && reached.insert(reg.name).second) open.push_back(reg.name);
        }
    }
    for (const std::string& dependent : reached) {
        caches_.erase(dependent);
        ++changes[dependent];
    }
    if (numbers.count(name) == 0) ++changes[name];
}

}  // namespace register_test
