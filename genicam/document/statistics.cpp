#include "genicam/document/statistics.h"

#include "genicam/document/node_factory.h"

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

// By `fmt::format` alone, as most of its siblings bring the code of fmt into this source once more.
std::string count_elements(pugi::xml_node root, const load_options& options) {
    element_counts elements;
    class_counts classes = all_classes_uncounted();
    for (element_walk walk(root, options); walk.next();) {
        ++elements[walk.taken().element.name()];
        ++classes[walk.taken().chosen->name].count;
    }
    std::string text;
    text += fmt::format("doc {:29} cnt\n", "type");
    for (const auto& [name, count] : elements) text += fmt::format("    {:32} {:3}\n", name, count);
    text += fmt::format("stats {:32} {:4} {:8} {:5}\n", "Release", "cnt", "size", "dtor");
    for (const auto& [name, counted] : classes) {
        text += fmt::format("      {:32} {:4} {:8} {:5}\n", name, counted.count, counted.size,
                            counted.has_destructor);
    }
    std::uint64_t with_destructor = 0;
    const class_count sum = sum_of(classes, with_destructor);
    text += fmt::format("sum   {:32} {:4} {:8} {:5}\n", "", sum.count, sum.size, with_destructor);
    return text;
}

void node_listing::add(std::string_view name, std::int32_t dependents) {
    text_ += fmt::format("    {:32} {:3}\n", name, dependents);
}

}  // namespace GenICam
