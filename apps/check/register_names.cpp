#include "apps/check/register_names.h"

#include "genicam/document/node_facts.h"
#include "inspection/element_links.h"

#include <optional>
#include <set>

namespace selvane_check {
namespace {

using selvane_inspect::element_index;

std::optional<std::uint64_t> stated_address(pugi::xml_node element) {
    const pugi::xml_node struct_reg = GenICam::register_element_of(element);
    if (!struct_reg.child("Address")) return std::nullopt;
    for (const char* computed : {"pAddress", "pIndex", "IntSwissKnife"}) {
        if (struct_reg.child(computed)) return std::nullopt;
    }
    std::uint64_t sum = 0;
    for (const pugi::xml_node term : struct_reg.children("Address")) sum += term.text().as_ullong();
    return sum;
}

std::string_view find_behind(const selvane_inspect::description_tree& tree, std::string_view feature,
                             std::uint64_t address) {
    std::vector<element_index> open = tree.find(feature);
    std::set<element_index> seen(open.begin(), open.end());
    selvane_inspect::link_reader links;
    while (!open.empty()) {
        const auto& element = tree.at(open.back());
        open.pop_back();
        if (stated_address(element.xml) == address) return element.name;
        links.read(element.xml).for_each([&](const selvane_inspect::element_link& link) {
            for (const element_index target : tree.find(link.target)) {
                if (seen.insert(target).second) open.push_back(target);
            }
        });
    }
    return {};
}

}  // namespace

std::string_view register_names::find(std::string_view feature, std::uint64_t address) const {
    for (const auto& one : descriptions_) {
        const std::string_view found = find_behind(one->tree(), feature, address);
        if (!found.empty()) return found;
    }
    return {};
}

}  // namespace selvane_check
