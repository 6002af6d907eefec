#include "inspection/element_links.h"

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
    operation limit;
};
constexpr limit_suffix limit_suffixes[] = {
    {".Min", operation::minimum}, {".Max", operation::maximum}, {".Inc", operation::increment}};

}  // namespace

link_list::link_list(pugi::xml_node element) {
    collect(element, links_);
    for (std::size_t at = 0; at < links_.size(); ++at) by_role_[links_[at].role].push_back(at);
}

gsl::span<const std::size_t> link_list::of_role(std::string_view role) const {
    const auto found = by_role_.find(role);
    if (found == by_role_.end()) return {};
    return found->second;
}

std::optional<operation> asked_by_variable(std::string_view name) {
    for (const limit_suffix& suffix : limit_suffixes) {
        const std::size_t at = name.find(suffix.text);
        if (at != std::string_view::npos && at + suffix.text.size() == name.size()) return suffix.limit;
    }
    if (name.find(".Entry") != std::string_view::npos) return std::nullopt;
    return operation::value;
}

}  // namespace selvane_inspect
