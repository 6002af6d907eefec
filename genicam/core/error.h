#pragma once

#include "platform/hresult.h"

#include <boost/outcome/std_result.hpp>
#include <boost/outcome/try.hpp>

#include <cstdint>
#include <system_error>

namespace GenICam {

/// The failure codes of the engine, as 32-bit numbers of `genicam_error_category`.
enum error_number : std::uint32_t {
    success = 0,
    buffer_too_small = 0x80000002,
    device_lost = 0x80000003,
    no_cached_value = 0x80000004,
    index_out_of_range = 0x80000102,
    formula_parse_failed = 0x80000103,
    value_out_of_range = 0x80000104,
    value_locked = 0x80000105,
    node_not_available = 0x80000106,
    not_implemented = 0x80008001,
    invalid_parameter = 0x80008002,
    invalid_address = 0x80008003,
    bad_alignment = 0x80008004,
    access_denied = 0x80008006,
};

/// Category "GenICam Error": texts and portable conditions of the codes above. One object per process.
class genicam_error_category final : public std::error_category {
public:
    [[nodiscard]] const char* name() const noexcept override;
    [[nodiscard]] std::string message(int value) const override;
    [[nodiscard]] std::error_condition default_error_condition(int value) const noexcept override;

    [[nodiscard]] static const genicam_error_category& instance() noexcept;
};

/// Any 32-bit number in `genicam_error_category`.
[[nodiscard]] std::error_code make_error_code(std::uint32_t value) noexcept;
[[nodiscard]] std::error_code make_error_code(error_number value) noexcept;

/// The HRESULT with which the adapter reports an engine code. Several codes share one HRESULT.
[[nodiscard]] HRESULT to_hresult(std::uint32_t code) noexcept;
[[nodiscard]] HRESULT to_hresult(const std::error_code& code) noexcept;

/// The engine code for what the driver returned; `invalid_parameter` for every value without a code of its
/// own, success codes other than 0 included.
[[nodiscard]] std::error_code from_hresult(HRESULT hr) noexcept;

/// A value or a `std::error_code`. Reading the value of a failed result throws `std::system_error`.
template <class T>
using result = boost::outcome_v2::std_result<T>;

}  // namespace GenICam

namespace std {
template <>
struct is_error_code_enum<GenICam::error_number> : true_type {};
}  // namespace std
