#pragma once

#include "genicam/core/block_memory.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include <gsl/span>
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

/// Which children an element has: most optional children are absent from most elements, and asking a set
/// costs nothing.
class child_set {
public:
    constexpr child_set() = default;
    template <class... Names>
    constexpr explicit child_set(child first, Names... others) noexcept : bits_(bits_of(first, others...)) {}

    [[nodiscard]] bool has(child name) const noexcept {
        return (bits_ >> static_cast<unsigned>(name) & 1U) != 0;
    }

    template <class... Names>
    [[nodiscard]] bool has_any(Names... names) const noexcept {
        return (bits_ & bits_of(names...)) != 0;
    }

    void add(child name) noexcept { bits_ |= bits_of(name); }

private:
    template <class... Names>
    [[nodiscard]] static constexpr std::uint64_t bits_of(Names... names) noexcept {
        return ((std::uint64_t{1} << static_cast<unsigned>(names)) | ...);
    }

    std::uint64_t bits_ = 0;
};

static_assert(static_cast<unsigned>(child::count) <= 64);

struct known_child {
    pugi::xml_node element;
    const char* terminated_text;  ///< looked up with the element, while its surroundings are warm
    child name;

    [[nodiscard]] std::string_view text() const noexcept { return terminated_text; }
};

class shared_struct_reg;

/// An element whose name and known children were looked up in one pass, so that what reads it needs no search
/// in the XML. The lists belong to whoever looked.
class described_element : public pugi::xml_node {
public:
    described_element() = default;
    described_element(pugi::xml_node xml, const child_set& present,
                      gsl::span<const known_child> children) noexcept
        : pugi::xml_node(xml),
          present_(present),
          children_(children),
          node_name_(xml.attribute("Name").value()) {}

    /// The attribute `Name`.
    [[nodiscard]] std::string_view node_name() const noexcept { return node_name_; }

    [[nodiscard]] const child_set& present() const noexcept { return present_; }
    [[nodiscard]] bool has(GenICam::child name) const noexcept { return present_.has(name); }
    /// All known children, in document order unless it was described otherwise.
    [[nodiscard]] gsl::span<const known_child> known_children() const noexcept { return children_; }
    /// The text of the first child of that name; empty when absent.
    [[nodiscard]] std::string_view text(GenICam::child name) const noexcept {
        if (!present_.has(name)) return {};
        const known_child* found = children_.data();
        while (found->name != name) ++found;
        return found->text();
    }

    /// Calls `fn` with each child of that name, in document order.
    template <class Function>
    void for_each(GenICam::child name, Function fn) const {
        if (!present_.has(name)) return;
        for (const known_child& one : children_) {
            if (one.name == name) fn(one);
        }
    }
    [[nodiscard]] std::size_t count(GenICam::child name) const {
        std::size_t found = 0;
        for_each(name, [&found](const known_child&) { ++found; });
        return found;
    }

    /// The children `EnumEntry`, each with its own children.
    [[nodiscard]] gsl::span<const described_element> entries() const noexcept { return entries_; }
    void set_entries(gsl::span<const described_element> entries) noexcept { entries_ = entries; }

    /// Of a `StructEntry`: what it shares with the other entries there, looked up once for all of them. Null
    /// where nobody did.
    [[nodiscard]] shared_struct_reg* struct_reg() const noexcept { return struct_reg_; }
    void set_struct_reg(shared_struct_reg* struct_reg) noexcept { struct_reg_ = struct_reg; }

private:
    child_set present_;
    gsl::span<const known_child> children_;
    gsl::span<const described_element> entries_;
    std::string_view node_name_;
    shared_struct_reg* struct_reg_ = nullptr;
};

/// Describes elements, and keeps what the descriptions refer to.
class element_scanner {
public:
    [[nodiscard]] described_element describe(pugi::xml_node xml);
    /// With the first child of each of these names, and behind them all of the others. Both in document
    /// order.
    [[nodiscard]] described_element describe(pugi::xml_node xml, const child_set& first_of,
                                             const child_set& all_of);

private:
    [[nodiscard]] described_element describe_alone(pugi::xml_node xml);
    [[nodiscard]] gsl::span<const described_element> describe_entries(const described_element& element);

    block_memory memory_;
    std::vector<known_child> children_;  // of one element, while it is described
};

/// A described element that owns its lists.
class scanned_element {
public:
    explicit scanned_element(pugi::xml_node xml) : element_(scanner_.describe(xml)) {}
    scanned_element(const scanned_element&) = delete;
    scanned_element& operator=(const scanned_element&) = delete;
    [[nodiscard]] const described_element& operator*() const noexcept { return element_; }
    [[nodiscard]] const described_element* operator->() const noexcept { return &element_; }

private:
    element_scanner scanner_;
    described_element element_;
};

/// The text of the first child of that name; empty when absent.
[[nodiscard]] std::string_view child_text(pugi::xml_node element, const char* name) noexcept;

[[nodiscard]] inline std::string_view child_text(const described_element& element, child name) noexcept {
    return element.text(name);
}

}  // namespace GenICam
