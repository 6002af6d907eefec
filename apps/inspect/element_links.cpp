#include "apps/inspect/element_links.h"

#include "genicam/document/node_facts.h"

#include <iterator>

namespace selvane_inspect {
namespace {

bool is_link_name(std::string_view name) {
    return name.size() > 1 && name[0] == 'p' && name[1] >= 'A' && name[1] <= 'Z';
}

void add(std::vector<element_link>& links, std::string_view role, std::string_view label,
         std::string_view target, pugi::xml_node xml) {
    if (!target.empty()) links.push_back({role, label, target, xml});
}

std::string_view label_of(pugi::xml_node child) {
    const std::string_view name = child.attribute("Name").value();
    return name.empty() ? child.attribute("Index").value() : name;
}

void collect(pugi::xml_node element, std::vector<element_link>& links) {
    for (const pugi::xml_node child : element.children()) {
        const std::string_view name = child.name();
        if (name == "IntSwissKnife") {
            add(links, name, {}, child.attribute("Name").value(), child);
        } else if (is_link_name(name)) {
            add(links, name, label_of(child), child.child_value(), child);
            add(links, "pOffset", {}, child.attribute("pOffset").value(), child);
        }
    }
    const pugi::xml_node stated = element.child("Extension").child("pDefault");
    add(links, "pDefault", {}, stated.child_value(), stated);
}

struct limit_suffix {
    std::string_view text;
    variable_reads reads;
};
constexpr limit_suffix limit_suffixes[] = {{".Min", variable_reads::minimum},
                                           {".Max", variable_reads::maximum},
                                           {".Inc", variable_reads::increment}};

}  // namespace

std::vector<element_link> link_reader::read(pugi::xml_node element) {
    std::vector<element_link> links;
    collect(element, links);
    const pugi::xml_node struct_reg = GenICam::register_element_of(element);
    if (struct_reg == element) return links;
    const auto [known, is_new] = of_struct_regs_.try_emplace(struct_reg);
    if (is_new) collect(struct_reg, known->second);
    links.insert(links.end(), known->second.begin(), known->second.end());
    return links;
}

variable_reads what_variable_reads(std::string_view name) {
    for (const limit_suffix& suffix : limit_suffixes) {
        const std::size_t at = name.find(suffix.text);
        if (at != std::string_view::npos && at + suffix.text.size() == name.size()) return suffix.reads;
    }
    return name.find(".Entry") != std::string_view::npos ? variable_reads::entry : variable_reads::value;
}

}  // namespace selvane_inspect
