// What a read through a node costs beyond the memory behind its port. Each case is timed in turn with the
// same read through the port alone, so that a busy machine slows both: "ratio" is node to port, "beyond_ns"
// their difference.

#include "genicam/genicam_doc.h"
#include "genicam/idevice_port.h"
#include "genicam/inode.h"
#include "tests/adapter/allocation_watch.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <string_view>

namespace {

constexpr std::string_view description = R"(<RegisterDescription>
<IntReg Name="Fixed"><Address>0x10</Address><Length>4</Length><pPort>Device</pPort></IntReg>
<IntReg Name="Cached"><Address>0x10</Address><Length>4</Length><pPort>Device</pPort>
  <Cachable>WriteThrough</Cachable></IntReg>
<IntReg Name="Selected"><Address>0x10</Address><pIndex>Selector</pIndex><Length>4</Length><pPort>Device</pPort></IntReg>
<Integer Name="Selector"><Value>2</Value></Integer>
<MaskedIntReg Name="Field"><Address>0x10</Address><Length>4</Length><pPort>Device</pPort>
  <LSB>20</LSB><MSB>12</MSB></MaskedIntReg>
<StructReg><Address>0x10</Address><Length>4</Length><pPort>Device</pPort>
  <StructEntry Name="Entry"><LSB>20</LSB><MSB>12</MSB></StructEntry></StructReg>
<FloatReg Name="Real"><Address>0x20</Address><Length>8</Length><pPort>Device</pPort></FloatReg>
<Integer Name="Linked"><pValue>Fixed</pValue></Integer>
<Converter Name="Scaled"><FormulaTo>FROM * 10</FormulaTo><FormulaFrom>TO / 10</FormulaFrom><pValue>Fixed</pValue>
</Converter>
<Port Name="Device"/>
</RegisterDescription>)";

class flat_memory final : public GenICam::IDevicePort {
public:
    std::error_code read(std::uint64_t address, void* buffer, std::int64_t length, std::uint32_t) override {
        std::memcpy(buffer, bytes_.data() + address, static_cast<std::size_t>(length));
        return {};
    }
    std::error_code write(std::uint64_t address, const void* buffer, std::int64_t length,
                          std::uint32_t) override {
        std::memcpy(bytes_.data() + address, buffer, static_cast<std::size_t>(length));
        return {};
    }

private:
    std::array<unsigned char, 64> bytes_{};
};

class bound_document {
public:
    bound_document() : doc_(GenICam::load_genicam_doc(description.data(), description.size(), {})) {
        port().bind(&memory_);
    }
    [[nodiscard]] GenICam::IPort& port() { return static_cast<GenICam::IPort&>(*doc_->find_port({})); }
    [[nodiscard]] GenICam::INode* find(std::string_view name) { return doc_->find_node(name); }

private:
    flat_memory memory_;
    std::unique_ptr<GenICam::IGenICamDoc> doc_;
};

template <class Call>
double nanoseconds_of(Call call) {
    constexpr int calls = 2000;
    const auto start = std::chrono::steady_clock::now();
    for (int at = 0; at < calls; ++at) call();
    const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - start;
    return taken.count() / calls;
}

template <class Call>
void compare_with_port(benchmark::State& state, bound_document& doc, std::int64_t length, Call call) {
    GenICam::IPort* port = &doc.port();
    benchmark::DoNotOptimize(port);
    double best_port = std::numeric_limits<double>::max();
    double best_node = best_port;
    for ([[maybe_unused]] auto _ : state) {
        best_port = std::min(best_port, nanoseconds_of([port, length] {
                                 unsigned char bytes[8];
                                 benchmark::DoNotOptimize(port->read(0x10, bytes, length, 0));
                                 benchmark::DoNotOptimize(bytes);
                             }));
        best_node = std::min(best_node, nanoseconds_of(call));
    }
    const std::uint64_t before = adapter_test::AllocationCount();
    call();
    state.counters["allocations"] = static_cast<double>(adapter_test::AllocationCount() - before);
    state.counters["port_ns"] = best_port;
    state.counters["node_ns"] = best_node;
    state.counters["beyond_ns"] = best_node - best_port;
    state.counters["ratio"] = best_node / best_port;
}

// Interface: how the node is asked. Cases whose class this build does not have are left out.
template <class Interface>
void read_node(benchmark::State& state, const char* name, std::int64_t length) {
    bound_document doc;
    auto* node = static_cast<Interface*>(doc.find(name));
    if (node == nullptr) {
        state.SkipWithError("no such node");
        return;
    }
    benchmark::DoNotOptimize(node);
    compare_with_port(state, doc, length, [node] { benchmark::DoNotOptimize(node->get_val(0)); });
}

void write_fixed(benchmark::State& state) {
    bound_document doc;
    auto* node = static_cast<GenICam::IInteger*>(doc.find("Fixed"));
    benchmark::DoNotOptimize(node);
    compare_with_port(state, doc, 4, [node] { benchmark::DoNotOptimize(node->set_val(5, 0)); });
}

void read_integer(benchmark::State& state, const char* name) { read_node<GenICam::IInteger>(state, name, 4); }
void read_float(benchmark::State& state, const char* name, std::int64_t length) {
    read_node<GenICam::IFloat>(state, name, length);
}

BENCHMARK_CAPTURE(read_integer, fixed_register, "Fixed");
BENCHMARK_CAPTURE(read_integer, cached_register, "Cached");
BENCHMARK_CAPTURE(read_integer, indexed_register, "Selected");
BENCHMARK_CAPTURE(read_integer, bit_field, "Field");
BENCHMARK_CAPTURE(read_integer, struct_entry, "Entry");
BENCHMARK_CAPTURE(read_integer, linked_integer, "Linked");
BENCHMARK_CAPTURE(read_float, float_register, "Real", 8);
BENCHMARK_CAPTURE(read_float, float_through_converter, "Scaled", 4);
BENCHMARK(write_fixed);

}  // namespace
