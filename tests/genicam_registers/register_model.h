#pragma once

#include "tests/genicam_registers/register_test.h"

#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace register_test {

// A naive model of registers in front of a device, which shares nothing with the engine but the words of
// descriptions: bytes in vectors, caches in optionals, dependents searched anew at each change.

enum class model_kind { integer, floating, masked, entry, text, block };

/// One register as the description states it.
struct model_register {
    std::string name;
    model_kind kind = model_kind::integer;
    Cachable mode = Cachable::NoCache;
    AccessMode access = AccessMode::RW;
    bool is_little_endian = false;
    bool is_signed = false;
    int lsb = 0;
    int msb = 0;
    std::uint64_t address = 0;
    std::int64_t length = 4;
    bool has_linked_length = false;  ///< from "size" instead
    bool has_added_address = false;  ///< plus "added"
    bool has_index = false;          ///< plus "index" times its stride
    std::int64_t offset = 0;         ///< of the index; 0: none stated
    std::vector<std::string> invalidators;

    [[nodiscard]] std::string element() const;
};

/// A document to compare with: a few registers, and the numbers that their addresses depend on.
struct model_setup {
    std::vector<model_register> registers;

    [[nodiscard]] std::string elements() const;
};

[[nodiscard]] model_setup random_setup(std::mt19937_64& random);

/// What came of an operation; values of every kind as text.
struct model_outcome {
    std::error_code failure;
    std::string value;

    bool operator==(const model_outcome& other) const {
        return failure == other.failure && value == other.value;
    }
};
void PrintTo(const model_outcome& outcome, std::ostream* out);

class register_model {
public:
    explicit register_model(const model_setup& setup) : setup_(setup) {}

    /// Empties all caches and the memory.
    void reset();
    [[nodiscard]] model_outcome read(const model_register& reg, std::uint32_t flags);
    [[nodiscard]] model_outcome write(const model_register& reg, std::int64_t value, std::uint32_t flags);
    void set_number(const std::string& name, std::int64_t value);
    void change_memory(std::uint64_t address, std::uint8_t byte) { memory_[address] = byte; }
    void fail_access(int n) { accesses_until_failure_ = n; }

    std::vector<test_support::PortAccess> traffic;
    std::map<std::string, int> changes;
    std::map<std::string, std::int64_t> numbers = {{"size", 4}, {"added", 0}, {"index", 0}, {"trigger", 0}};

private:
    struct seen_bytes {
        std::uint64_t address;
        Bytes bytes;
    };
    struct span {
        std::uint64_t address;
        std::int64_t length;
    };

    [[nodiscard]] span span_of(const model_register& reg) const;
    [[nodiscard]] bool is_refused(const model_register& reg, bool is_write, std::uint32_t flags) const;
    [[nodiscard]] std::error_code fetch(const model_register& reg, span from, std::uint32_t flags,
                                        Bytes& bytes);
    [[nodiscard]] std::error_code put(const model_register& reg, std::uint64_t address, const Bytes& bytes,
                                      std::uint32_t flags);
    [[nodiscard]] std::error_code ask_device(test_support::PortAccess access);
    [[nodiscard]] Bytes memory_at(std::uint64_t address, std::int64_t length) const;
    void change(const std::string& name);

    const model_setup& setup_;
    std::map<std::uint64_t, std::uint8_t> memory_;
    std::map<std::string, seen_bytes> caches_;
    int accesses_until_failure_ = 0;
};

/// The bytes that a write of this value sends, and the text that the engine's side writes for a text
/// register.
[[nodiscard]] std::string text_for(std::int64_t value);
[[nodiscard]] double float_for(std::int64_t value);
[[nodiscard]] std::string print_float(double value);

}  // namespace register_test
