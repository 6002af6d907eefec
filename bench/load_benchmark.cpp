// How long a description takes to load, as a ratio to what the XML parser alone needs for the same bytes.

#include "data_paths.h"
#include "genicam/genicam_doc.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
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

void load(const std::string& text) {
    const std::unique_ptr<GenICam::IGenICamDoc> doc(
        GenICam::load_genicam_doc(text.data(), text.size(), {true, true}));
    benchmark::DoNotOptimize(doc.get());
}

template <void (*work)(const std::string&)>
void measure(benchmark::State& state, const std::string& text) {
    for ([[maybe_unused]] const auto _ : state) work(text);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

double seconds_of(void (*work)(const std::string&), const std::string& text) {
    const auto start = std::chrono::steady_clock::now();
    work(text);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Both are measured in turn, so that what else the machine does hits both, and the best of each counts.
void compare(benchmark::State& state, const std::vector<description>& all) {
    constexpr int rounds = 20;
    double parser = 0;
    double whole = 0;
    for ([[maybe_unused]] const auto _ : state) {
        for (const description& one : all) {
            double best_parser = 1e9;
            double best_whole = 1e9;
            for (int round = 0; round < rounds; ++round) {
                best_parser = std::min(best_parser, seconds_of(copy_and_parse, one.text));
                best_whole = std::min(best_whole, seconds_of(load, one.text));
            }
            parser += best_parser;
            whole += best_whole;
        }
    }
    state.counters["load_to_parse"] = whole / parser;
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    static const std::vector<description> all = read_descriptions();
    for (const description& one : all) {
        benchmark::RegisterBenchmark(("parse/" + one.name).c_str(), measure<copy_and_parse>, one.text);
        benchmark::RegisterBenchmark(("load/" + one.name).c_str(), measure<load>, one.text);
    }
    benchmark::RegisterBenchmark("load_to_parse", compare, all);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
