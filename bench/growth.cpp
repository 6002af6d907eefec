// How the inspector's time grows with the size of the worst descriptions that we could think of, for the load
// and each walk over it. Doubling the size twice may cost eight times at most: N log N makes it less than
// five, N * N sixteen.

#include "apps/inspect/run.h"
#include "bench/keep_memory.h"
#include "genicam/genicam_doc.h"
#include "tests/support/worst_shapes.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

using test_support::worst_shape;

using Work = std::function<void(const std::string& file, const std::string& text)>;

constexpr int wrong_use = 2;

Work inspect(std::vector<std::string> words) {
    return [words](const std::string& file, const std::string&) {
        std::vector<std::string> arguments = words;
        arguments.insert(arguments.begin() + 1, file);
        std::ostringstream out;
        std::ostringstream err;
        if (selvane_inspect::run(arguments, out, err) == wrong_use) {
            std::fputs(err.str().c_str(), stderr);
            std::exit(wrong_use);
        }
    };
}

struct named_work {
    const char* name;
    Work work;
    bool asks_for_values;
};

const named_work works[] = {
    {"load",
     [](const std::string&, const std::string& text) {
         const std::unique_ptr<GenICam::IGenICamDoc> doc(
             GenICam::load_genicam_doc(text.data(), text.size(), {}));
     },
     false},
    {"lint", inspect({"lint"}), true},
    {"pages", inspect({"pages"}), false},
    {"list", inspect({"list", "--all"}), true},
};

constexpr double allowed = 8;
constexpr double enough = 0.02;  // seconds
constexpr std::size_t largest = 32000;

/// The least of some tries: what else the machine does only adds.
double seconds_of(const Work& work, const std::string& file, const worst_shape& shape, std::size_t n) {
    const std::string text = shape.make(n);
    std::ofstream(file, std::ios::binary) << text;
    double least = 1e9;
    for (int time = 0; time < 10 && (time == 0 || least < 0.3); ++time) {
        const std::clock_t start = std::clock();
        work(file, text);
        least = std::min(least, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return least;
}

bool grows_too_much(const named_work& one, const std::string& file, const worst_shape& shape) {
    std::size_t n = shape.smallest;
    double first = seconds_of(one.work, file, shape, n);
    while (first < enough && n < largest) first = seconds_of(one.work, file, shape, n *= 2);
    double last = seconds_of(one.work, file, shape, n * 4);
    const auto exceeds = [&] { return first >= enough / 4 && last > allowed * first; };
    for (int again = 0; again < 2 && exceeds(); ++again) {
        first = std::min(first, seconds_of(one.work, file, shape, n));
        last = std::min(last, seconds_of(one.work, file, shape, n * 4));
    }
    std::printf("%-32s %-6s %7zu: %8.1f ms, %7zu: %8.1f ms, %5.1f times%s\n", shape.name, one.name, n,
                first * 1000, n * 4, last * 1000, last / std::max(first, 1e-6),
                exceeds() ? "  TOO MUCH" : "");
    std::fflush(stdout);
    return exceeds();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return wrong_use;
    keep_memory();
    int failed = 0;
    for (const worst_shape& shape : test_support::worst_shapes()) {
        for (const named_work& one : works) {
            if (shape.values_unfold && one.asks_for_values) continue;
            failed += grows_too_much(one, argv[1], shape) ? 1 : 0;
        }
    }
    return failed != 0 ? 1 : 0;
}
