#pragma once

#include "genicam/inode.h"

#include <cstdint>
#include <optional>
#include <string_view>

#include <pugixml.hpp>

namespace GenICam {

// Readers of the elements whose text is one of a few words, compared exactly. An absent or empty element
// gives the default in silence; other text gives the default and is logged where the element's rule says so.
// Some are handed the text of the child beside its parent, which has looked it up before.

[[nodiscard]] AccessMode parse_imposed_access_mode(pugi::xml_node xml, std::string_view text);
[[nodiscard]] AccessMode parse_access_mode(pugi::xml_node xml, std::string_view text);
[[nodiscard]] Visibility parse_visibility(pugi::xml_node xml);
[[nodiscard]] bool parse_streamable(pugi::xml_node xml);
[[nodiscard]] Representation parse_representation(pugi::xml_node xml);
[[nodiscard]] FloatRepresentation parse_float_representation(pugi::xml_node xml);
[[nodiscard]] DisplayNotation parse_display_notation(pugi::xml_node xml);
constexpr std::int64_t default_display_precision = 6;
[[nodiscard]] std::int64_t parse_display_precision(pugi::xml_node xml);
[[nodiscard]] Endianess parse_endianess(pugi::xml_node xml, std::string_view text);
[[nodiscard]] Sign parse_sign(pugi::xml_node xml, std::string_view text);
[[nodiscard]] Cachable parse_cachable(pugi::xml_node xml, std::string_view text, Cachable default_value);

// The same words without default and message: not set for everything that is no valid word.

[[nodiscard]] std::optional<AccessMode> find_access_mode(std::string_view text);
[[nodiscard]] std::optional<Cachable> find_cachable(std::string_view text);
[[nodiscard]] std::optional<Representation> find_representation(pugi::xml_node xml);
[[nodiscard]] std::optional<FloatRepresentation> find_float_representation(pugi::xml_node xml);
[[nodiscard]] std::optional<DisplayNotation> find_display_notation(pugi::xml_node xml);
[[nodiscard]] std::optional<std::int64_t> find_display_precision(pugi::xml_node xml);

// Attributes.

[[nodiscard]] NameSpace parse_name_space(pugi::xml_node xml);
[[nodiscard]] MergePriority parse_merge_priority(pugi::xml_node xml);
[[nodiscard]] std::optional<bool> parse_expose_static(pugi::xml_node xml);
[[nodiscard]] StandardNameSpace parse_standard_name_space(pugi::xml_node xml);

/// The child `PollingTime` in milliseconds; not set for anything but a number from 0 up.
[[nodiscard]] std::optional<std::int64_t> parse_polling_time(pugi::xml_node xml);

/// Whether the child of that name says "Yes".
[[nodiscard]] bool says_yes(pugi::xml_node xml, const char* name) noexcept;

}  // namespace GenICam
