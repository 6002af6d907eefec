#pragma once

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
    [[nodiscard]] bool has(child name) const noexcept {
        return (bits_ >> static_cast<unsigned>(name) & 1U) != 0;
    }

    template <class... Names>
    [[nodiscard]] bool has_any(Names... names) const noexcept {
        return (bits_ & ((std::uint64_t{1} << static_cast<unsigned>(names)) | ...)) != 0;
    }

    void add(child name) noexcept { bits_ |= std::uint64_t{1} << static_cast<unsigned>(name); }

private:
    std::uint64_t bits_ = 0;
};

static_assert(static_cast<unsigned>(child::count) <= 64);

struct known_child {
    pugi::xml_node element;
    const char* terminated_text;  ///< looked up with the element, while its surroundings are warm
    child name;

    [[nodiscard]] std::string_view text() const noexcept { return terminated_text; }
};

/// An element whose known children were looked up in one pass, so that what reads it needs no search in the
/// XML. The list of children belongs to whoever looked.
class described_element : public pugi::xml_node {
public:
    described_element(pugi::xml_node xml, const child_set& present,
                      gsl::span<const known_child> children) noexcept
        : pugi::xml_node(xml), present_(present), children_(children) {}

    [[nodiscard]] const child_set& present() const noexcept { return present_; }
    [[nodiscard]] bool has(GenICam::child name) const noexcept { return present_.has(name); }
    /// All known children, in document order.
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

    /// Of a `StructEntry`: the element with the settings that it shares, looked up once for all its entries.
    /// Null where nobody did.
    [[nodiscard]] const described_element* frame() const noexcept { return frame_; }
    void set_frame(const described_element* frame) noexcept { frame_ = frame; }

private:
    child_set present_;
    gsl::span<const known_child> children_;
    const described_element* frame_ = nullptr;
};

/// Appends the known children of an element, in document order.
[[nodiscard]] child_set list_children(pugi::xml_node xml, std::vector<known_child>& children);

/// A described element that owns its list.
class scanned_element {
public:
    explicit scanned_element(pugi::xml_node xml)
        : present_(list_children(xml, children_)), element_(xml, present_, children_) {}
    scanned_element(const scanned_element&) = delete;
    scanned_element& operator=(const scanned_element&) = delete;
    [[nodiscard]] const described_element& operator*() const noexcept { return element_; }
    [[nodiscard]] const described_element* operator->() const noexcept { return &element_; }

private:
    std::vector<known_child> children_;
    child_set present_;
    described_element element_;
};

/// The text of the first child of that name; empty when absent.
[[nodiscard]] inline std::string_view child_text(pugi::xml_node element, const char* name) noexcept {
    return element.child(name).child_value();
}

[[nodiscard]] inline std::string_view child_text(const described_element& element, child name) noexcept {
    return element.text(name);
}

}  // namespace GenICam
