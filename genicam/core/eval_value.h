#pragma once

#include <cstdint>

namespace GenICam {

/// A number of either kind: int64 or double in the same place, and a tag that says which.
struct eval_value {
    union payload {
        std::int64_t integer;
        double real;
    } value = {0};
    bool is_integer = true;

    constexpr eval_value() noexcept = default;

    [[nodiscard]] static constexpr eval_value of(std::int64_t number) noexcept {
        eval_value made;
        made.value.integer = number;
        return made;
    }
    [[nodiscard]] static constexpr eval_value of(double number) noexcept {
        eval_value made;
        made.value.real = number;
        made.is_integer = false;
        return made;
    }
};

static_assert(sizeof(eval_value) == 16);

/// Truncates toward zero; NaN and everything beyond the range of int64 give its minimum, on every compiler.
[[nodiscard]] std::int64_t truncate_to_int(double number) noexcept;

/// Rounds to the nearest integer, halves away from zero, and then truncates as `truncate_to_int`.
[[nodiscard]] std::int64_t round_to_int(double number) noexcept;

/// An integer as it is, a float through `round_to_int`.
[[nodiscard]] inline std::int64_t to_int(const eval_value& number) noexcept {
    return number.is_integer ? number.value.integer : round_to_int(number.value.real);
}

/// A float as it is, an integer converted.
[[nodiscard]] inline double to_double(const eval_value& number) noexcept {
    return number.is_integer ? static_cast<double>(number.value.integer) : number.value.real;
}

}  // namespace GenICam
