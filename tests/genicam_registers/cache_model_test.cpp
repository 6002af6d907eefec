// The register cache against the naive model: outcomes, values, device traffic and notifications of random
// sequences.

#include "tests/genicam_registers/register_model.h"

#include <sstream>

using namespace register_test;

namespace {

#ifdef SELVANE_SANITIZED
constexpr int sequence_count = 30'000;
#else
constexpr int sequence_count = 120'000;
#endif
constexpr int sequences_per_setup = 60;
constexpr std::uint64_t seed = 20'240'229;

// Both sides, driven together.
class comparison {
public:
    explicit comparison(const model_setup& setup) : setup_(setup), model_(setup), doc_(setup.elements()) {
        for (const model_register& reg : setup.registers) {
            doc_.Node(reg.name).register_callback(
                [this](INode* node) { ++changes_[std::string(node->get_name())]; });
        }
    }

    [[nodiscard]] bool loaded_in_silence() const { return doc_.load_messages.empty(); }

    void start_sequence() {
        // Memory is what the writes of the sequence make of nothing.
        for (const auto& reg : setup_.registers) doc_.Node(reg.name).get_eval()->invalidate();
        doc_.device.Clear();
        doc_.device.ForgetAccesses();
        changes_.clear();
        model_.reset();
        history_.clear();
    }

    void step(std::mt19937_64& random) {
        const auto below = [&random](unsigned count) { return static_cast<unsigned>(random() % count); };
        const model_register& reg = setup_.registers[below(static_cast<unsigned>(setup_.registers.size()))];
        const auto value = static_cast<std::int64_t>(random());
        switch (below(12)) {
            case 0:
            case 1:
            case 2:
            case 3:
                return read(reg, random_flags(random));
            case 4:
            case 5:
            case 6:
                return write(reg, value, random_flags(random));
            case 7:
                return set_number("trigger", value % 3);
            case 8:
                return set_number("index", value % 3);
            case 9:
                return set_number(below(2) == 0 ? "size" : "added", value % 10);
            case 10:
                return fail_access(1 + static_cast<int>(below(3)));
            default:
                return change_memory(0x100 + below(24), static_cast<std::uint8_t>(value));
        }
    }

    [[nodiscard]] bool agrees() {
        if (doc_.device.TakeAccesses() != std::exchange(model_.traffic, {})) return false;
        return changes_ == model_.changes && outcome_ == expected_;
    }

    [[nodiscard]] std::string tell() const {
        std::ostringstream text;
        text << setup_.elements() << "\n"
             << history_ << "\ngives " << testing::PrintToString(outcome_) << " for "
             << testing::PrintToString(expected_);
        return text.str();
    }

private:
    static std::uint32_t random_flags(std::mt19937_64& random) {
        std::uint32_t flags = 0;
        if (random() % 4 == 0) flags |= 0x100;
        if (random() % 6 == 0) flags |= 0x200;
        if (random() % 6 == 0) flags |= 0x400;
        if (random() % 4 == 0) flags |= 0x800;
        return flags;
    }

    void note(const std::string& what) {
        history_ += what + "; ";
        outcome_ = expected_ = {};
    }

    void read(const model_register& reg, std::uint32_t flags) {
        note("read " + reg.name + " " + std::to_string(flags));
        expected_ = model_.read(reg, flags);
        outcome_ = read_node(reg, flags);
    }

    model_outcome read_node(const model_register& reg, std::uint32_t flags) {
        switch (reg.kind) {
            case model_kind::floating: {
                const auto value = doc_.Float(reg.name).get_val(flags);
                return {failure_of(value), value ? print_float(value.assume_value()) : ""};
            }
            case model_kind::text: {
                const auto value = doc_.String(reg.name).get_val(flags);
                return {failure_of(value), value ? value.assume_value() : ""};
            }
            case model_kind::block: {
                std::uint8_t byte = 0;
                const auto failure = doc_.Register(reg.name).read(&byte, 1, flags);
                return {failure, failure ? "" : std::to_string(byte)};
            }
            default: {
                const auto value = doc_.Integer(reg.name).get_val(flags);
                return {failure_of(value), value ? std::to_string(value.assume_value()) : ""};
            }
        }
    }

    void write(const model_register& reg, std::int64_t value, std::uint32_t flags) {
        note("write " + reg.name + " " + std::to_string(value) + " " + std::to_string(flags));
        expected_ = model_.write(reg, value, flags);
        outcome_ = {write_node(reg, value, flags), ""};
    }

    std::error_code write_node(const model_register& reg, std::int64_t value, std::uint32_t flags) {
        switch (reg.kind) {
            case model_kind::floating:
                return doc_.Float(reg.name).set_val(float_for(value), flags);
            case model_kind::text:
                return doc_.String(reg.name).set_val(text_for(value), flags);
            case model_kind::block: {
                const auto byte = static_cast<std::uint8_t>(value);
                return doc_.Register(reg.name).write(&byte, 1, flags);
            }
            default:
                return doc_.Integer(reg.name).set_val(value, flags);
        }
    }

    void set_number(const std::string& name, std::int64_t value) {
        note("set " + name + " " + std::to_string(value));
        model_.set_number(name, value);
        outcome_ = {doc_.Integer(name).set_val(value, 0), ""};
    }

    void fail_access(int n) {
        note("fail access " + std::to_string(n));
        model_.fail_access(n);
        doc_.device.FailAccess(static_cast<std::size_t>(n), code(device_lost));
    }

    void change_memory(std::uint64_t address, std::uint8_t byte) {
        note("memory " + std::to_string(address) + " " + std::to_string(byte));
        model_.change_memory(address, byte);
        doc_.device.Put(address, {byte});
    }

    const model_setup& setup_;
    register_model model_;
    TestDocument doc_;
    std::map<std::string, int> changes_;
    model_outcome outcome_;
    model_outcome expected_;
    std::string history_;
};

TEST(RegisterCacheModel, RandomSequences) {
    std::mt19937_64 random(seed);
    for (int done = 0; done < sequence_count;) {
        const model_setup setup = random_setup(random);
        comparison both(setup);
        ASSERT_TRUE(both.loaded_in_silence());
        for (int sequence = 0; sequence < sequences_per_setup; ++sequence, ++done) {
            both.start_sequence();
            const int steps = 4 + static_cast<int>(random() % 16);
            for (int step = 0; step < steps; ++step) {
                both.step(random);
                ASSERT_TRUE(both.agrees()) << "sequence " << done << "\n" << both.tell();
            }
        }
    }
}

}  // namespace
