#include "apps/inspect/lint/known_elements.h"

#include "genicam/document/node_facts.h"

#include <algorithm>

namespace selvane_inspect {
namespace {

using GenICam::name_list;
using GenICam::node_facts;

// What other programs read.
constexpr name_list foreign_children =
    "Slope IsLinear pError pTerminal pDependent Symbolic SwapEndianess CacheChunkData";
constexpr name_list foreign_node_elements =
    "Node ConfRom TextDesc IntKey AdvFeatureLock SmartFeature DcamLock";

bool contains(const std::vector<std::string_view>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

element_use use_in(const node_facts& facts, std::string_view child) {
    if (facts.reads(child)) return element_use::read;
    const bool is_known = contains(names_in_nodes(), child) || foreign_children.contains(child);
    return is_known ? element_use::unread : element_use::unknown;
}

}  // namespace

element_use use_in_node(std::string_view made_as, std::string_view child) {
    const node_facts* const facts = GenICam::find_node_facts(made_as);
    return use_in(facts != nullptr ? *facts : GenICam::enum_entry_facts, child);
}

element_use use_in_struct(std::string_view child) {
    if (contains(names_among_nodes(), child)) return element_use::read;
    return use_in(GenICam::struct_reg_facts, child);
}

element_use use_among_nodes(std::string_view element) {
    if (contains(names_among_nodes(), element)) return element_use::read;
    return foreign_node_elements.contains(element) ? element_use::unread : element_use::unknown;
}

const std::vector<std::string_view>& names_in_nodes() {
    static const std::vector<std::string_view> names = [] {
        std::vector<std::string_view> found;
        const auto add_children = [&](const node_facts& facts) {
            for (const name_list& list : facts.children) {
                list.for_each([&](std::string_view name) {
                    if (!contains(found, name)) found.push_back(name);
                });
            }
        };
        for (const node_facts& facts : GenICam::all_node_facts()) add_children(facts);
        add_children(GenICam::enum_entry_facts);
        add_children(GenICam::struct_reg_facts);
        return found;
    }();
    return names;
}

const std::vector<std::string_view>& names_among_nodes() {
    static const std::vector<std::string_view> names = [] {
        std::vector<std::string_view> found;
        for (const node_facts& facts : GenICam::all_node_facts()) {
            if (!contains(found, facts.element)) found.push_back(facts.element);
        }
        found.insert(found.end(), {GenICam::struct_reg_facts.element, "Group"});
        return found;
    }();
    return names;
}

const std::vector<std::string_view>& extension_keys() {
    static const std::vector<std::string_view> keys = {
        "ZELItemGUID", "ZELElementGUID", "ZELIsDebugProperty", "DoNotSerialize", "Default", "pDefault"};
    return keys;
}

}  // namespace selvane_inspect
