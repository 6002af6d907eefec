// How long a description takes to load, as a ratio to what the XML parser alone needs for the same bytes, how
// that grows with the description, and what stays in memory.

#include "bench/keep_memory.h"
#include "data_paths.h"
#include "genicam/genicam_doc.h"

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

namespace {

struct description {
    std::string name;
    std::string text;
};

std::vector<description> read_descriptions() {
    std::vector<description> found;
    const std::filesystem::path folder = std::filesystem::path(SELVANE_SHARED_DESCRIPTIONS) / "real";
    std::error_code missing;
    for (const auto& file : std::filesystem::directory_iterator(folder, missing)) {
        std::ifstream in(file.path(), std::ios::binary);
        found.push_back({file.path().stem().string(), {std::istreambuf_iterator<char>(in), {}}});
    }
    std::sort(found.begin(), found.end(),
              [](const description& left, const description& right) { return left.name < right.name; });
    return found;
}

void copy_and_parse(const std::string& text) {
    std::vector<char> copy(text.begin(), text.end());
    pugi::xml_document xml;
    benchmark::DoNotOptimize(xml.load_buffer_inplace(copy.data(), copy.size()));
}

std::unique_ptr<GenICam::IGenICamDoc> load_document(const std::string& text) {
    return std::unique_ptr<GenICam::IGenICamDoc>(
        GenICam::load_genicam_doc(text.data(), text.size(), {true, true}));
}

void load(const std::string& text) { benchmark::DoNotOptimize(load_document(text).get()); }

template <void (*work)(const std::string&)>
void measure(benchmark::State& state, const std::string& text) {
    for ([[maybe_unused]] const auto _ : state) work(text);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

// Of the processor, for this thread: a load takes longer than the machine leaves a thread alone.
double seconds_so_far() {
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

template <class Work>
double seconds_of(Work work) {
    const double start = seconds_so_far();
    work();
    return seconds_so_far() - start;
}

// The best of many: what else the machine does only ever adds.
template <class Work>
double best_of(int rounds, Work work) {
    double best = std::numeric_limits<double>::max();
    for (int round = 0; round < rounds; ++round) best = std::min(best, seconds_of(work));
    return best;
}

// All are measured in turn, so that what else the machine does hits each, and the best of each counts.
void compare(benchmark::State& state, const std::vector<description>& all) {
    constexpr int rounds = 30;
    constexpr std::size_t large = 100000;
    constexpr double longest = std::numeric_limits<double>::max();
    double parser = 0;
    double whole = 0;
    double end = 0;
    double worst = 0;
    for ([[maybe_unused]] const auto _ : state) {
        parser = whole = end = worst = 0;
        for (const description& one : all) {
            double best_parser = longest;
            double best_whole = longest;
            double best_end = longest;
            for (int round = 0; round < rounds; ++round) {
                std::unique_ptr<GenICam::IGenICamDoc> doc;
                best_parser = std::min(best_parser, seconds_of([&] { copy_and_parse(one.text); }));
                const double loading = seconds_of([&] { doc = load_document(one.text); });
                const double ending = seconds_of([&] { doc.reset(); });
                best_whole = std::min(best_whole, loading + ending);
                best_end = std::min(best_end, ending);
            }
            parser += best_parser;
            whole += best_whole;
            end += best_end;
            if (one.text.size() > large) worst = std::max(worst, best_whole / best_parser);
        }
    }
    if (all.empty()) state.SkipWithError("no descriptions");
    state.counters["load_to_parse"] = whole / parser;
    state.counters["worst_to_parse"] = worst;
    state.counters["destroy_to_parse"] = end / parser;
}

// Features over registers, in an order that is not that of their names.
std::string make_description(std::size_t nodes) {
    constexpr std::size_t step = 7919;  // prime to the number of pairs
    const std::size_t pairs = nodes / 2;
    std::string text = "<RegisterDescription>";
    for (std::size_t at = 0; at < pairs; ++at) {
        const std::string number = std::to_string(at * step % pairs);
        text += "<Integer Name='Feature" + number + "'><pValue>Register" + number +
                "</pValue><Min>0</Min><Max>100</Max></Integer><IntReg Name='Register" + number +
                "'><Address>" + std::to_string(16 * at) +
                "</Address><Length>4</Length><pPort>Device</pPort></IntReg>";
    }
    return text + "<Port Name='Device'/></RegisterDescription>";
}

// What the sort of that many such names takes.
double seconds_to_sort(const std::string& text) {
    pugi::xml_document xml;
    xml.load_buffer(text.data(), text.size());
    std::vector<std::string_view> names;
    for (const pugi::xml_node element : xml.first_child())
        names.emplace_back(element.attribute("Name").value());
    return best_of(3, [&names] {
        std::vector<std::string_view> sorted = names;
        std::sort(sorted.begin(), sorted.end());
        benchmark::DoNotOptimize(sorted.data());
    });
}

double seconds_per_node(std::size_t nodes, int rounds) {
    const std::string text = make_description(nodes);
    const double loading = best_of(rounds, [&text] { load(text); });
    return (loading - seconds_to_sort(text)) / static_cast<double>(nodes);
}

void growth(benchmark::State& state) {
    constexpr std::size_t few = 4000;
    constexpr std::size_t many = 256000;
    double per_node = 0;
    for ([[maybe_unused]] const auto _ : state)
        per_node = seconds_per_node(many, 5) / seconds_per_node(few, 50);
    state.counters["growth_per_node"] = per_node;
}

std::size_t bytes_in_use() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void memory(benchmark::State& state, const std::vector<description>& all) {
    double bytes = 0;
    std::size_t nodes = 0;
    for ([[maybe_unused]] const auto _ : state) {
        bytes = 0;
        nodes = 0;
        for (const description& one : all) {
            const std::size_t before = bytes_in_use();
            const std::unique_ptr<GenICam::IGenICamDoc> doc = load_document(one.text);
            const std::size_t with_engine = bytes_in_use();
            std::vector<char> copy(one.text.begin(), one.text.end());
            pugi::xml_document xml;
            benchmark::DoNotOptimize(xml.load_buffer_inplace(copy.data(), copy.size()));
            const std::size_t with_parser = bytes_in_use();
            bytes +=
                static_cast<double>(with_engine - before) - static_cast<double>(with_parser - with_engine);
            doc->for_each_node([&nodes](GenICam::INode*) { ++nodes; });
        }
    }
    if (all.empty()) state.SkipWithError("no descriptions");
    state.counters["bytes_per_node"] = bytes / static_cast<double>(nodes);
}

std::string in_description(const std::string& elements) {
    return "<RegisterDescription>" + elements + "</RegisterDescription>";
}

std::string make_register(const std::string& name, const std::string& invalidator) {
    return "<IntReg Name='" + name + "'><Address>0</Address><Length>4</Length><pPort>Device</pPort>" +
           (invalidator.empty() ? "" : "<pInvalidator>" + invalidator + "</pInvalidator>") + "</IntReg>";
}

std::string make_star(std::size_t dependents) {
    std::string text = make_register("Center", "");
    for (std::size_t at = 0; at < dependents; ++at)
        text += make_register("Point" + std::to_string(at), "Center");
    return in_description(text);
}

std::string make_chain(std::size_t links) {
    std::string text = make_register("Link0", "");
    for (std::size_t at = 1; at <= links; ++at)
        text += make_register("Link" + std::to_string(at), "Link" + std::to_string(at - 1));
    return in_description(text);
}

// Each is invalidated by the one before it, and so by all.
std::string make_circle(std::size_t registers) {
    std::string text;
    for (std::size_t at = 0; at < registers; ++at)
        text += make_register("Link" + std::to_string(at), "Link" + std::to_string((at + 1) % registers));
    return in_description(text);
}

// Each is invalidated by what all of them invalidate: all pairs are held.
std::string make_crowd(std::size_t registers) {
    std::string all;
    std::string text;
    for (std::size_t at = 0; at < registers; ++at) {
        text += make_register("Member" + std::to_string(at), "Hub");
        all += "<pInvalidator>Member" + std::to_string(at) + "</pInvalidator>";
    }
    return in_description(text + "<Integer Name='Hub'><Value>0</Value>" + all + "</Integer>");
}

// How much longer one of the many things that the result has to hold takes than one of a fourth as many.
void dependents(benchmark::State& state, std::string (*make)(std::size_t), std::size_t count, bool in_pairs) {
    constexpr std::size_t part = 4;
    double ratio = 0;
    for ([[maybe_unused]] const auto _ : state) {
        const std::string many = make(count);
        const std::string few = make(count / part);
        const double held = in_pairs ? part * part : part;
        ratio = best_of(10, [&many] { load(many); }) / best_of(40, [&few] { load(few); }) / held;
    }
    state.counters["per_pair"] = ratio;
}

}  // namespace

int main(int argc, char** argv) {
    keep_memory();
    benchmark::Initialize(&argc, argv);
    static const std::vector<description> all = read_descriptions();
    for (const description& one : all) {
        benchmark::RegisterBenchmark(("parse/" + one.name).c_str(), measure<copy_and_parse>, one.text);
        benchmark::RegisterBenchmark(("load/" + one.name).c_str(), measure<load>, one.text);
    }
    benchmark::RegisterBenchmark("load_to_parse", compare, all)->Iterations(1);
    benchmark::RegisterBenchmark("growth", growth)->Iterations(1);
    benchmark::RegisterBenchmark("memory", memory, all)->Iterations(1);
    benchmark::RegisterBenchmark("dependents/star", dependents, make_star, 50000, false)->Iterations(1);
    benchmark::RegisterBenchmark("dependents/chain", dependents, make_chain, 10000, false)->Iterations(1);
    benchmark::RegisterBenchmark("dependents/circle", dependents, make_circle, 10000, false)->Iterations(1);
    benchmark::RegisterBenchmark("dependents/crowd", dependents, make_crowd, 4000, true)->Iterations(1);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
