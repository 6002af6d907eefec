#pragma once

#include <string_view>

#include <gsl/span>

/// What hostile bytes are thrown at. Each target takes any input of any length and ends the process where
/// something is wrong; inputs that reach a division or a circle, which are the description's own business, it
/// knows by looking, and leaves alone.
namespace fuzz {

void description(std::string_view input);  ///< a text is loaded and walked
void evaluation(std::string_view input);   ///< a text; everything is read and written, cached and uncached
void formula(std::string_view input);      ///< a formula, computed in every way
void numbers(std::string_view input);      ///< a number or a GUID, against plain readers
void edit(std::string_view input);         ///< a value and its limits, unit, and what the user types
void driver(std::string_view input);       ///< what a driver does wrong while a page lives
void inspector(std::string_view input);    ///< a line of arguments, and a file

struct target {
    const char* name;
    void (*run)(std::string_view input);
};
[[nodiscard]] gsl::span<const target> all_targets();

/// Ends the process with a word about what is wrong.
void require(bool holds, const char* what);

/// The numbers that an input begins with; zero behind its end.
template <class Number>
Number take(std::string_view& input) {
    Number number{};
    const std::size_t size = input.size() < sizeof number ? input.size() : sizeof number;
    input.copy(reinterpret_cast<char*>(&number), size);
    input.remove_prefix(size);
    return number;
}

}  // namespace fuzz
