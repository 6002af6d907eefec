// How the inspector's time grows with the size of the worst descriptions that we could think of, for the load
// and each walk over it. Doubling the size twice may cost eight times at most: N log N makes it less than
// five, N * N sixteen.

#include "apps/inspect/run.h"
#include "genicam/genicam_doc.h"

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

#include <fmt/format.h>

namespace {

using Shape = std::string (*)(std::size_t n);

template <class Line>
std::string repeat(std::size_t n, Line line) {
    std::string text;
    for (std::size_t at = 0; at < n; ++at) text += line(at);
    return text;
}

std::string root(const std::string& listed, const std::string& elements) {
    return "<D><Category Name='Root'><pFeature>P</pFeature></Category><Category Name='P'><DisplayName>Special"
           "</DisplayName>" +
           listed + "</Category>" + elements + "<Port Name='Device'/></D>";
}

constexpr const char* item_mark =
    "<Extension><ZELItemGUID>{{3F6A2B10-5C1E-4D77-9A40-{:012X}}}</ZELItemGUID></Extension>";
constexpr const char* mark =
    "<Extension><ZELElementGUID>{{3F6A2B10-5C1E-4D77-9A40-{:012X}}}</ZELElementGUID></Extension>";

std::string listing(std::size_t n) {
    return repeat(n, [](std::size_t at) { return fmt::format("<pFeature>f{}</pFeature>", at); });
}
std::string integers(std::size_t n, const std::function<std::string(std::size_t)>& content) {
    return repeat(
        n, [&](std::size_t at) { return fmt::format("<Integer Name='f{}'>{}</Integer>", at, content(at)); });
}

struct named_shape {
    const char* name;
    Shape make;
};

const named_shape shapes[] = {
    {"features side by side",
     [](std::size_t n) {
         return root(listing(n), integers(n, [](std::size_t) { return "<Value>1</Value>"; }));
     }},
    {"marked features of one item",
     [](std::size_t n) {
         return root(
             "<pFeature>I</pFeature>",
             "<Category Name='I'>" + fmt::format(item_mark, 1) + listing(n) + "</Category>" +
                 integers(n, [](std::size_t at) { return fmt::format(mark, at) + "<Value>1</Value>"; }));
     }},
    {"items of one group",
     [](std::size_t n) {
         return root(listing(n),
                     repeat(n,
                            [](std::size_t at) {
                                return fmt::format("<Category Name='f{0}'>", at) +
                                       fmt::format(item_mark, at + 1) + "<pFeature>v</pFeature></Category>";
                            }) +
                         "<Integer Name='v'>" + fmt::format(mark, 1) + "<Value>1</Value></Integer>");
     }},
    {"groups inside groups",
     [](std::size_t n) {
         return root("", repeat(n, [](std::size_t) { return "<Group>"; }) +
                             repeat(n, [](std::size_t) { return "</Group>"; }));
     }},
    {"categories inside categories",
     [](std::size_t n) {
         return root("<pFeature>f0</pFeature>", repeat(n, [](std::size_t at) {
                         return fmt::format("<Category Name='f{}'><pFeature>f{}</pFeature></Category>", at,
                                            at + 1);
                     }));
     }},
    {"a chain of links",
     [](std::size_t n) {
         return root("<pFeature>f0</pFeature>",
                     integers(n, [](std::size_t at) { return fmt::format("<pValue>f{}</pValue>", at + 1); }));
     }},
    {"a circle of links",
     [](std::size_t n) {
         return root("<pFeature>f0</pFeature>", integers(n, [n](std::size_t at) {
                         return fmt::format("<pValue>f{}</pValue>", (at + 1) % n);
                     }));
     }},
    {"all hang on one",
     [](std::size_t n) {
         return root(
             listing(n),
             integers(n, [](std::size_t) {
                 return "<pIsAvailable>hub</pIsAvailable><pIsLocked>hub</pIsLocked><pValue>hub</pValue>";
             }) + "<Integer Name='hub'><Value>1</Value></Integer>");
     }},
    {"registers that one invalidates",
     [](std::size_t n) {
         return root(listing(n),
                     repeat(n, [](std::size_t at) {
                         return fmt::format(
                             "<IntReg Name='f{}'><Address>{}</Address><Length>4</Length><pPort>Device"
                             "</pPort><pInvalidator>hub</pInvalidator></IntReg>",
                             at, at * 4);
                     }) + "<Integer Name='hub'><Value>1</Value></Integer>");
     }},
    {"one name for all",
     [](std::size_t n) {
         return root("<pFeature>f</pFeature>",
                     repeat(n, [](std::size_t) { return "<Integer Name='f'><Value>1</Value></Integer>"; }));
     }},
    {"links that lead nowhere",
     [](std::size_t n) {
         return root(listing(n), integers(n, [](std::size_t at) {
                         return fmt::format("<pValue>feature_{}x</pValue>", at);
                     }));
     }},
    {"elements that nobody knows",
     [](std::size_t n) {
         return root(listing(n), integers(n, [](std::size_t at) {
                         return fmt::format("<pIsLokced{}>x</pIsLokced{}><Value>1</Value>", at, at);
                     }));
     }},
    {"entries of an enumeration",
     [](std::size_t n) {
         return root("<pFeature>e</pFeature>",
                     "<Enumeration Name='e'>" + repeat(n, [](std::size_t at) {
                         return fmt::format("<EnumEntry Name='e{0}'><Value>{0}</Value></EnumEntry>", at);
                     }) + "<Value>0</Value></Enumeration>");
     }},
    {"entries of a structure",
     [](std::size_t n) {
         return root("", "<StructReg><Address>0</Address><Length>4</Length><pPort>Device</pPort>" +
                             repeat(n,
                                    [](std::size_t at) {
                                        return fmt::format(
                                            "<StructEntry Name='f{}'><Bit>{}</Bit></StructEntry>", at,
                                            at % 32);
                                    }) +
                             "</StructReg>");
     }},
    {"a long formula",
     [](std::size_t n) {
         return root("<pFeature>k</pFeature>",
                     "<IntSwissKnife Name='k'><Formula>1" + repeat(n, [](std::size_t at) {
                         return fmt::format("+{}", at);
                     }) + "</Formula></IntSwissKnife>");
     }},
    {"variables of a formula",
     [](std::size_t n) {
         return root("<pFeature>k</pFeature>",
                     "<IntSwissKnife Name='k'>" +
                         repeat(n,
                                [](std::size_t at) {
                                    return fmt::format("<pVariable Name='V{}'>v</pVariable>", at);
                                }) +
                         "<Formula>0" + repeat(n, [](std::size_t at) { return fmt::format("+V{}", at); }) +
                         "</Formula></IntSwissKnife><Integer Name='v'><Value>1</Value></Integer>");
     }},
};

using Work = std::function<void(const std::string& file, const std::string& text)>;

Work inspect(std::vector<std::string> words) {
    return [words](const std::string& file, const std::string&) {
        std::vector<std::string> arguments = words;
        arguments.insert(arguments.begin() + 1, file);
        std::ostringstream out;
        std::ostringstream err;
        static_cast<void>(selvane_inspect::run(arguments, out, err));
    };
}

struct named_work {
    const char* name;
    Work work;
};

const named_work works[] = {
    {"load",
     [](const std::string&, const std::string& text) {
         const std::unique_ptr<GenICam::IGenICamDoc> doc(
             GenICam::load_genicam_doc(text.data(), text.size(), {}));
     }},
    {"lint", inspect({"lint"})},
    {"pages", inspect({"pages"})},
    {"list", inspect({"list", "--all"})},
};

double seconds_of(const Work& work, const std::string& file, Shape shape, std::size_t n) {
    const std::string text = shape(n);
    std::ofstream(file, std::ios::binary) << text;
    double least = 1e9;
    for (int time = 0; time < 3 && (time == 0 || least < 1); ++time) {
        const std::clock_t start = std::clock();
        work(file, text);
        least = std::min(least, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return least;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    constexpr double allowed = 8;
    constexpr double enough = 0.02;
    constexpr std::size_t largest = 32000;
    int failed = 0;
    for (const named_shape& shape : shapes) {
        for (const named_work& one : works) {
            std::size_t n = 500;
            double first = seconds_of(one.work, argv[1], shape.make, n);
            while (first < enough && n < largest) first = seconds_of(one.work, argv[1], shape.make, n *= 2);
            const double last = seconds_of(one.work, argv[1], shape.make, n * 4);
            const bool grows = first >= enough / 4 && last > allowed * first;
            failed += grows ? 1 : 0;
            std::printf("%-32s %-6s %7zu: %8.1f ms, %7zu: %8.1f ms, %5.1f times%s\n", shape.name, one.name, n,
                        first * 1000, n * 4, last * 1000, last / std::max(first, 1e-6),
                        grows ? "  TOO MUCH" : "");
            std::fflush(stdout);
        }
    }
    return failed != 0 ? 1 : 0;
}
