#include "genicam/core/children.h"

#include "genicam/core/name_table.h"

#include <array>
#include <cstddef>

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

child_set list_children(pugi::xml_node xml, std::vector<known_child>& children) {
    child_set present;
    for (pugi::xml_node node = xml.first_child(); node; node = node.next_sibling()) {
        const std::size_t place = child_names.find(node.name());
        if (place == child_names.not_found) continue;
        const auto name = static_cast<child>(place);
        present.add(name);
        children.push_back({node, node.child_value(), name});
    }
    return present;
}

}  // namespace GenICam
