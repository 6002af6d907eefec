#pragma once

#include <cstdint>
#include <string_view>

#include <pugixml.hpp>

namespace GenICam {

/// The child elements that decide something when a node is made or used.
enum class child : std::uint8_t {
    AccessMode,
    Address,
    Bit,
    Cachable,
    ChunkID,
    CommandValue,
    Constant,
    Endianess,
    EnumEntry,
    Expression,
    Extension,
    Formula,
    FormulaFrom,
    FormulaTo,
    ImposedAccessMode,
    Inc,
    IntSwissKnife,
    LSB,
    Length,
    MSB,
    Max,
    Min,
    OffValue,
    OnValue,
    Sign,
    Streamable,
    Value,
    ValueDefault,
    ValueIndexed,
    pAddress,
    pChunkID,
    pCommandValue,
    pFeature,
    pInc,
    pIndex,
    pInvalidator,
    pIsAvailable,
    pIsImplemented,
    pIsLocked,
    pLength,
    pMax,
    pMin,
    pPort,
    pValue,
    pValueCopy,
    pValueDefault,
    pValueIndexed,
    pVariable,
    count,
};

/// The element name of a child.
[[nodiscard]] const char* name_of(child name) noexcept;

/// Which children an element has, found in one pass over them: most optional children are absent from most
/// elements, and asking a set costs nothing.
class child_set {
public:
    child_set() noexcept = default;
    explicit child_set(pugi::xml_node element) noexcept;

    [[nodiscard]] bool has(child name) const noexcept {
        return (bits_ >> static_cast<unsigned>(name) & 1U) != 0;
    }

    template <class... Names>
    [[nodiscard]] bool has_any(Names... names) const noexcept {
        return (bits_ & ((std::uint64_t{1} << static_cast<unsigned>(names)) | ...)) != 0;
    }

private:
    std::uint64_t bits_ = 0;
};

static_assert(static_cast<unsigned>(child::count) <= 64);

/// The text of the first child of that name; empty when absent.
[[nodiscard]] inline std::string_view child_text(pugi::xml_node element, const char* name) noexcept {
    return element.child(name).child_value();
}

[[nodiscard]] inline std::string_view child_text(pugi::xml_node element, child name) noexcept {
    return child_text(element, name_of(name));
}

/// The text of a child that is only searched for when the set has it.
[[nodiscard]] inline std::string_view child_text(pugi::xml_node element, const child_set& present,
                                                 child name) noexcept {
    return present.has(name) ? child_text(element, name) : std::string_view();
}

}  // namespace GenICam
