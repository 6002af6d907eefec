#pragma once

#include "genicam/core/children.h"
#include "genicam/core/error.h"
#include "genicam/core/log.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include <gsl/span>
#include <pugixml.hpp>

namespace GenICam {

/// How a message begins to name what it is about, before its own arguments.
enum class message_subject : std::uint8_t { nothing, name, kind_and_name };

/// A row of the table of messages, whatever its arguments.
struct message_row {
    std::uint32_t level;
    message_subject subject;
    const char* format;  ///< with printf conventions
};

/// An argument of a message.
struct message_argument {
    enum class kind : std::uint8_t { text, integer, natural, real };

    constexpr message_argument(std::string_view given) noexcept : is(kind::text), text(given) {}
    constexpr message_argument(std::int64_t given) noexcept : is(kind::integer), integer(given) {}
    constexpr message_argument(std::uint64_t given) noexcept : is(kind::natural), natural(given) {}
    constexpr message_argument(double given) noexcept : is(kind::real), real(given) {}

    kind is;
    union {
        std::string_view text;
        std::int64_t integer;
        std::uint64_t natural;
        double real;
    };
};

/// What the next conversion of a format looks like, and the rest of the format.
struct message_conversion {
    std::string_view before;  ///< plain text
    char letter;              ///< 0 for none: the format ends
    std::string_view behind;
};

constexpr message_conversion next_conversion(std::string_view format) noexcept {
    constexpr std::string_view letters = "sdue";
    const std::size_t start = format.find('%');
    if (start == std::string_view::npos) return {format, 0, {}};
    const std::size_t letter = format.find_first_of(letters, start);
    if (letter == std::string_view::npos) return {format.substr(0, start), '?', {}};
    return {format.substr(0, start), format[letter], format.substr(letter + 1)};
}

/// A message of the engine: its level, its text, and the kinds of its arguments. A format that does not fit
/// them does not compile.
template <class... Arguments>
struct message : message_row {
    constexpr message(message_subject about, const char* text, std::uint32_t of_level = log_failure)
        : message_row{of_level, about, fits(about, text) ? text : throw "the format does not fit"} {}

private:
    template <class Argument>
    static constexpr char letter_of() noexcept {
        if constexpr (std::is_same_v<Argument, std::string_view>) return 's';
        if constexpr (std::is_same_v<Argument, std::int64_t>) return 'd';
        if constexpr (std::is_same_v<Argument, std::uint64_t>) return 'u';
        return 'e';
    }
    static constexpr bool fits(message_subject about, const char* text) {
        const char wanted[] = {'s', 's', letter_of<Arguments>()..., 0};
        const char* at = wanted + 2 - static_cast<std::size_t>(about);
        message_conversion next = next_conversion(text);
        for (; next.letter != 0 && next.letter == *at; ++at) next = next_conversion(next.behind);
        return next.letter == *at;
    }
};

/// Which element a message is about, and which part of it. Null where the engine cannot tell.
struct message_origin {
    message_origin() noexcept = default;
    message_origin(pugi::xml_node of) noexcept : element(of) {}
    /// The first child of that name, if there is one.
    message_origin(pugi::xml_node of, const char* child_name) noexcept : element(of), name(child_name) {}
    message_origin(pugi::xml_node of, GenICam::child which) noexcept : element(of), name(name_of(which)) {}
    message_origin(pugi::xml_node of, pugi::xml_node child) noexcept : element(of), part(child) {}
    message_origin(pugi::xml_node of, pugi::xml_node child, const char* attribute) noexcept
        : element(of), part(child), name(attribute) {}

    /// The child at fault, or else the element.
    [[nodiscard]] pugi::xml_node node() const;
    /// Of that; null for none.
    [[nodiscard]] pugi::xml_attribute attribute() const;

    pugi::xml_node element;
    pugi::xml_node part;
    const char* name = nullptr;  ///< of a child, or of an attribute of the part
};

/// A message with all that it was made of. Valid while a listener hears it.
struct reported_message {
    const message_row& row;
    const message_origin& origin;
    gsl::span<const message_argument> arguments;

    /// The text of the message, cut as the log cuts it.
    [[nodiscard]] std::string text() const;
};

class message_listener {
public:
    virtual void hear(const reported_message& said) = 0;

protected:
    ~message_listener() = default;
};

/// Lets a listener hear every message of the engine in the place of the log. One inside another: the inner
/// one counts while it lives.
class listening {
public:
    explicit listening(message_listener& to) noexcept;
    ~listening();
    listening(const listening&) = delete;
    listening& operator=(const listening&) = delete;

private:
    message_listener* former_listener_;
    std::uint32_t former_threshold_;
};

/// To whoever listens, else into the log. Call only after `log_enabled` said yes.
void report_enabled(const message_row& row, const message_origin& origin,
                    gsl::span<const message_argument> arguments);

template <class Wanted, class Given>
constexpr bool is_argument = std::is_same_v<Wanted, Given> ||
                             (std::is_same_v<Wanted, std::string_view> &&
                              std::is_convertible_v<Given, std::string_view>);

/// Reports a message. Costs one comparison when nobody wants to know.
template <class... Wanted, class... Given, class = std::enable_if_t<sizeof...(Wanted) == sizeof...(Given)>,
          class = std::enable_if_t<(is_argument<Wanted, Given> && ...)>>
void report(const message<Wanted...>& row, const message_origin& origin, const Given&... given) {
    if (!log_enabled(row.level)) return;
    if constexpr (sizeof...(given) == 0) {
        report_enabled(row, origin, {});
    } else {
        const message_argument arguments[] = {Wanted(given)...};
        report_enabled(row, origin, arguments);
    }
}

/// The message, at its level, and the code of a refused value.
template <class Number>
[[nodiscard]] std::error_code refuse_range(const message<Number>& row, const message_origin& origin,
                                           Number value) {
    report(row, origin, value);
    return make_error_code(value_out_of_range);
}

}  // namespace GenICam
