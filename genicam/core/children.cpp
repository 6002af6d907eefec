#include "genicam/core/children.h"

#include "genicam/core/name_table.h"

#include <array>
#include <cstddef>
#include <new>

namespace GenICam {
namespace {

constexpr std::size_t child_count = static_cast<std::size_t>(child::count);

constexpr std::array<std::string_view, child_count> name_list = {
    "AccessMode",
    "Address",
    "Bit",
    "Cachable",
    "ChunkID",
    "CommandValue",
    "Constant",
    "Endianess",
    "EnumEntry",
    "Expression",
    "Extension",
    "Formula",
    "FormulaFrom",
    "FormulaTo",
    "ImposedAccessMode",
    "Inc",
    "IntSwissKnife",
    "LSB",
    "Length",
    "MSB",
    "Max",
    "Min",
    "OffValue",
    "OnValue",
    "Sign",
    "Streamable",
    "Value",
    "ValueDefault",
    "ValueIndexed",
    "pAddress",
    "pChunkID",
    "pCommandValue",
    "pFeature",
    "pInc",
    "pIndex",
    "pInvalidator",
    "pIsAvailable",
    "pIsImplemented",
    "pIsLocked",
    "pLength",
    "pMax",
    "pMin",
    "pPort",
    "pValue",
    "pValueCopy",
    "pValueDefault",
    "pValueIndexed",
    "pVariable",
};

constexpr name_table<child_count> child_names(name_list);

}  // namespace

const char* name_of(child name) noexcept { return child_names[static_cast<std::size_t>(name)].data(); }

described_element element_scanner::describe(pugi::xml_node xml) {
    described_element element = describe_alone(xml);
    if (element.has(child::EnumEntry)) element.set_entries(describe_entries(element));
    return element;
}

described_element element_scanner::describe(pugi::xml_node xml, const child_set& first_of,
                                            const child_set& all_of) {
    const described_element element = describe_alone(xml);
    children_.clear();
    child_set present;
    const auto take = [&](const known_child& known) {
        present.add(known.name);
        children_.push_back(known);
    };
    for (const known_child& known : element.known_children()) {
        if (first_of.has(known.name) && !present.has(known.name)) take(known);
    }
    for (const known_child& known : element.known_children()) {
        if (all_of.has(known.name)) take(known);
    }
    return {xml, present, memory_.copy(children_.data(), children_.size())};
}

described_element element_scanner::describe_alone(pugi::xml_node xml) {
    children_.clear();
    child_set present;
    for (pugi::xml_node node = xml.first_child(); node; node = node.next_sibling()) {
        const std::size_t index = child_names.find(node.name());
        if (index == no_such_name) continue;
        const auto name = static_cast<child>(index);
        present.add(name);
        // Filled where it stands: a copy would wait for what was just written.
        known_child& known = children_.emplace_back();
        known.element = node;
        known.terminated_text = node.child_value();
        known.name = name;
    }
    return {xml, present, memory_.copy(children_.data(), children_.size())};
}

gsl::span<const described_element> element_scanner::describe_entries(const described_element& element) {
    const std::size_t count = element.count(child::EnumEntry);
    auto* const entries = static_cast<described_element*>(memory_.take(count * sizeof(described_element)));
    described_element* next = entries;
    element.for_each(child::EnumEntry, [&](const known_child& entry) {
        ::new (next++) described_element(describe_alone(entry.element));
    });
    return {entries, count};
}

std::string_view child_text(pugi::xml_node element, const char* name) noexcept {
    return element.child(name).child_value();
}

}  // namespace GenICam
