#include "genicam/document/statistics.h"

#include "genicam/document/node_factory.h"

#include <iterator>
#include <map>

#include <fmt/format.h>

namespace GenICam {
namespace {

struct class_count {
    std::uint64_t count = 0;
    std::uint64_t size = 0;
    bool has_destructor = false;
};

using element_counts = std::map<std::string_view, std::uint64_t>;
using class_counts = std::map<std::string_view, class_count>;

class_counts all_classes_uncounted() {
    class_counts counts;
    for (const node_class& known : all_node_classes())
        counts[known.name] = {0, known.size, known.has_destructor};
    return counts;
}

class_count sum_of(const class_counts& counts, std::uint64_t& with_destructor) {
    class_count sum;
    for (const auto& [name, counted] : counts) {
        sum.count += counted.count;
        sum.size += counted.count * counted.size;
        if (counted.has_destructor) with_destructor += counted.count;
    }
    return sum;
}

}  // namespace

std::string count_elements(pugi::xml_node root, const load_options& options) {
    element_counts elements;
    class_counts classes = all_classes_uncounted();
    for (element_walk walk(root, options); walk.next();) {
        ++elements[walk.taken().xml.name()];
        ++classes[walk.taken().chosen->name].count;
        walk.children().clear();
    }
    std::string text;
    const auto out = std::back_inserter(text);
    fmt::format_to(out, "doc {:29} cnt\n", "type");
    for (const auto& [name, count] : elements) fmt::format_to(out, "    {:32} {:3}\n", name, count);
    fmt::format_to(out, "stats {:32} {:4} {:8} {:5}\n", "Release", "cnt", "size", "dtor");
    for (const auto& [name, counted] : classes) {
        fmt::format_to(out, "      {:32} {:4} {:8} {:5}\n", name, counted.count, counted.size,
                       counted.has_destructor);
    }
    std::uint64_t with_destructor = 0;
    const class_count sum = sum_of(classes, with_destructor);
    fmt::format_to(out, "sum   {:32} {:4} {:8} {:5}\n", "", sum.count, sum.size, with_destructor);
    return text;
}

void node_listing::add(std::string_view name, std::int32_t dependents) {
    fmt::format_to(std::back_inserter(text_), "    {:32} {:3}\n", name, dependents);
}

}  // namespace GenICam
