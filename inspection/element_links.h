#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include <gsl/span>
#include <pugixml.hpp>

namespace selvane_inspect {

/// What can be asked of a node, as far as it makes a difference which other nodes take part.
enum class operation : std::uint8_t {
    implemented,
    available,
    locked,
    access,
    value,
    minimum,
    maximum,
    increment,
    default_value,
    unit,
    store,
    count,
};
constexpr std::size_t operation_count = static_cast<std::size_t>(operation::count);

/// One reference of an element to a node by its name.
struct element_link {
    std::string_view role;    ///< the child's name; "pOffset" for that attribute
    std::string_view label;   ///< the `Name` of a variable or the `Index` of a value; else empty
    std::string_view target;  ///< the name of the node
    pugi::xml_node xml;       ///< the child
};

/// What an element refers to, in document order: every child whose name begins with a p and a capital,
/// embedded formulas, the links in the extension.
class link_list {
public:
    explicit link_list(pugi::xml_node element);

    /// Calls with each `element_link`.
    template <class Function>
    void for_each(Function fn) const {
        for (const element_link& link : links_) fn(link);
    }
    template <class Function>
    void for_each_of(std::string_view role, Function fn) const {
        for (const std::size_t at : of_role(role)) fn(links_[at]);
    }

private:
    [[nodiscard]] gsl::span<const std::size_t> of_role(std::string_view role) const;

    std::vector<element_link> links_;
    std::map<std::string_view, std::vector<std::size_t>> by_role_;
};

/// Reads what elements refer to. The lists live as long as the reader does.
class link_reader {
public:
    [[nodiscard]] const link_list& read(pugi::xml_node element) {
        return lists_.try_emplace(element, element).first->second;
    }

private:
    std::map<pugi::xml_node, link_list> lists_;
};

/// What a variable with such a name asks its node for: the value, or a limit; not set where it is an entry.
[[nodiscard]] std::optional<operation> asked_by_variable(std::string_view name);

}  // namespace selvane_inspect
