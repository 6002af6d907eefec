#include "genicam/base/xml_words.h"

#include "genicam/core/children.h"
#include "genicam/core/messages.h"
#include "genicam/core/number_parser.h"

namespace GenICam {
namespace {

template <class T>
struct word {
    std::string_view text;
    T value;
};

constexpr word<AccessMode> access_modes[] = {
    {"RW", AccessMode::RW}, {"RO", AccessMode::RO}, {"WO", AccessMode::WO}};
constexpr word<Visibility> visibilities[] = {
    {"Beginner", Visibility::Beginner},
    {"Expert", Visibility::Expert},
    {"Guru", Visibility::Guru},
    {"Invisible", Visibility::Invisible},
};
constexpr word<NameSpace> name_spaces[] = {{"Custom", NameSpace::Custom}, {"Standard", NameSpace::Standard}};
constexpr word<MergePriority> merge_priorities[] = {
    {"-1", MergePriority::low}, {"0", MergePriority::normal}, {"+1", MergePriority::high}};
constexpr word<Representation> representations[] = {
    {"Linear", Representation::Linear},         {"Logarithmic", Representation::Logarithmic},
    {"Boolean", Representation::Boolean},       {"PureNumber", Representation::PureNumber},
    {"HexNumber", Representation::HexNumber},   {"IPV4Address", Representation::IPV4Address},
    {"MACAddress", Representation::MACAddress},
};
constexpr word<FloatRepresentation> float_representations[] = {
    {"Linear", FloatRepresentation::Linear},
    {"Logarithmic", FloatRepresentation::Logarithmic},
    {"PureNumber", FloatRepresentation::PureNumber},
};
constexpr word<DisplayNotation> display_notations[] = {
    {"Automatic", DisplayNotation::Automatic},
    {"Fixed", DisplayNotation::Fixed},
    {"Scientific", DisplayNotation::Scientific},
};
constexpr word<Cachable> cachables[] = {{"WriteThrough", Cachable::WriteThrough},
                                        {"WriteAround", Cachable::WriteAround},
                                        {"NoCache", Cachable::NoCache}};
constexpr word<Endianess> endianesses[] = {{"LittleEndian", Endianess::LittleEndian},
                                           {"BigEndian", Endianess::BigEndian}};
constexpr word<Sign> signs[] = {{"Signed", Sign::Signed}, {"Unsigned", Sign::Unsigned}};
constexpr word<bool> yes_no[] = {{"Yes", true}, {"No", false}};
constexpr word<StandardNameSpace> standard_name_spaces[] = {
    {"None", StandardNameSpace::None}, {"IIDC", StandardNameSpace::IIDC}, {"GEV", StandardNameSpace::GEV},
    {"CL", StandardNameSpace::CL},     {"U3V", StandardNameSpace::U3V},   {"CXP", StandardNameSpace::CXP},
    {"CLHS", StandardNameSpace::CLHS},
};

template <class T, std::size_t Count>
std::optional<T> find_word(const word<T> (&words)[Count], std::string_view text) noexcept {
    for (const word<T>& candidate : words) {
        if (candidate.text == text) return candidate.value;
    }
    return std::nullopt;
}

// The word, or the default with a message where the text is none.
template <class T, std::size_t Count>
T parse_text(const word<T> (&words)[Count], const message_origin& origin, std::string_view text,
             T default_value, const message<std::string_view>& invalid) {
    if (text.empty()) return default_value;
    const std::optional<T> value = find_word(words, text);
    if (!value) report(invalid, origin, text);
    return value.value_or(default_value);
}

template <class T, std::size_t Count>
T parse_child(const word<T> (&words)[Count], pugi::xml_node xml, const char* name, T default_value,
              const message<std::string_view>& invalid) {
    return parse_text(words, {xml, name}, child_text(xml, name), default_value, invalid);
}

}  // namespace

AccessMode parse_imposed_access_mode(pugi::xml_node xml, std::string_view text) {
    return parse_text(access_modes, {xml, child::ImposedAccessMode}, text, AccessMode::RW,
                      messages::invalid_imposed_access_mode);
}

AccessMode parse_access_mode(pugi::xml_node xml, std::string_view text) {
    return parse_text(access_modes, {xml, child::AccessMode}, text, AccessMode::RW,
                      messages::invalid_access_mode);
}

Visibility parse_visibility(pugi::xml_node xml) {
    return parse_child(visibilities, xml, "Visibility", Visibility::Beginner, messages::invalid_visibility);
}

bool parse_streamable(pugi::xml_node xml) {
    return parse_child(yes_no, xml, "Streamable", false, messages::invalid_streamable);
}

Representation parse_representation(pugi::xml_node xml) {
    return parse_child(representations, xml, "Representation", Representation::PureNumber,
                       messages::invalid_representation);
}

FloatRepresentation parse_float_representation(pugi::xml_node xml) {
    return parse_child(float_representations, xml, "Representation", FloatRepresentation::PureNumber,
                       messages::invalid_float_representation);
}

DisplayNotation parse_display_notation(pugi::xml_node xml) {
    return parse_child(display_notations, xml, "DisplayNotation", DisplayNotation::Automatic,
                       messages::invalid_display_notation);
}

std::int64_t parse_display_precision(pugi::xml_node xml) {
    const std::optional<std::int64_t> precision = find_display_precision(xml);
    const std::string_view text = child_text(xml, "DisplayPrecision");
    if (!precision && !text.empty())
        report(messages::invalid_display_precision, {xml, "DisplayPrecision"}, text);
    return precision.value_or(default_display_precision);
}

Endianess parse_endianess(pugi::xml_node xml, std::string_view text) {
    return parse_text(endianesses, {xml, child::Endianess}, text, Endianess::BigEndian,
                      messages::invalid_endianess);
}

Sign parse_sign(pugi::xml_node xml, std::string_view text) {
    return parse_text(signs, {xml, child::Sign}, text, Sign::Unsigned, messages::invalid_sign);
}

Cachable parse_cachable(pugi::xml_node xml, std::string_view text, Cachable default_value) {
    return parse_text(cachables, {xml, child::Cachable}, text, default_value, messages::invalid_cachable);
}

std::optional<AccessMode> find_access_mode(std::string_view text) { return find_word(access_modes, text); }

std::optional<Cachable> find_cachable(std::string_view text) { return find_word(cachables, text); }

std::optional<Representation> find_representation(pugi::xml_node xml) {
    return find_word(representations, child_text(xml, "Representation"));
}

std::optional<FloatRepresentation> find_float_representation(pugi::xml_node xml) {
    return find_word(float_representations, child_text(xml, "Representation"));
}

std::optional<DisplayNotation> find_display_notation(pugi::xml_node xml) {
    return find_word(display_notations, child_text(xml, "DisplayNotation"));
}

std::optional<std::int64_t> find_display_precision(pugi::xml_node xml) {
    std::int64_t precision = 0;
    if (parse_int(child_text(xml, "DisplayPrecision"), precision) == 0) return std::nullopt;
    return precision;
}

NameSpace parse_name_space(pugi::xml_node xml) {
    return find_word(name_spaces, xml.attribute("NameSpace").value()).value_or(NameSpace::Custom);
}

MergePriority parse_merge_priority(pugi::xml_node xml) {
    return find_word(merge_priorities, xml.attribute("MergePriority").value())
        .value_or(MergePriority::normal);
}

std::optional<bool> parse_expose_static(pugi::xml_node xml) {
    return find_word(yes_no, xml.attribute("ExposeStatic").value());
}

StandardNameSpace parse_standard_name_space(pugi::xml_node xml) {
    return find_word(standard_name_spaces, xml.attribute("StandardNameSpace").value())
        .value_or(StandardNameSpace::None);
}

std::optional<std::int64_t> parse_polling_time(pugi::xml_node xml) {
    std::int64_t milliseconds = 0;
    if (parse_int(child_text(xml, "PollingTime"), milliseconds) == 0 || milliseconds < 0) return std::nullopt;
    return milliseconds;
}

bool says_yes(pugi::xml_node xml, const char* name) noexcept {
    return find_word(yes_no, child_text(xml, name)).value_or(false);
}

}  // namespace GenICam
