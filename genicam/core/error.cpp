#include "genicam/core/error.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace GenICam {
namespace {

constexpr HRESULT as_hresult(std::uint32_t value) noexcept { return static_cast<HRESULT>(value); }

constexpr HRESULT other_hresult = as_hresult(0x80070057);

struct error_row {
    error_number code;
    const char* message;
    std::optional<std::errc> condition;  // none: the code stays in its own category
    HRESULT hresult;
};

const error_row error_table[] = {
    {buffer_too_small, "Buffer too small", std::errc::no_buffer_space, as_hresult(0x8007007A)},
    {device_lost, "Device lost", std::errc::no_such_device, as_hresult(0x80070651)},
    {no_cached_value, "Failed to fetch cached value in a 'NoCache' request", std::nullopt, other_hresult},
    {index_out_of_range, "Index out of range", std::errc::invalid_argument, other_hresult},
    {formula_parse_failed, "Failed to parse formula", std::nullopt, as_hresult(0x80004005)},
    {value_out_of_range, "Passed in value is out of range of Min/Max", std::errc::result_out_of_range,
     other_hresult},
    {value_locked, "writing failed because value was locked,  INode::is_locked() == true", std::nullopt,
     other_hresult},
    {node_not_available, "writing failed because node was not available INode::is_available() == false",
     std::nullopt, other_hresult},
    {not_implemented, "Feature not implemented", std::errc::not_supported, as_hresult(0x80004001)},
    {invalid_parameter, "Invalid parameter", std::errc::invalid_argument, other_hresult},
    {invalid_address, "Invalid address", std::errc::address_not_available, other_hresult},
    {bad_alignment, "Bad Alignment", std::nullopt, other_hresult},
    {access_denied, "Access denied", std::errc::permission_denied, as_hresult(0x80070005)},
};

// The way back from a driver's HRESULT knows fewer codes than the way out: several of them share one HRESULT
// there.
constexpr error_number codes_with_a_way_back[] = {not_implemented, access_denied, invalid_parameter,
                                                  buffer_too_small, device_lost};

const error_row* find_row(std::uint32_t code) noexcept {
    const auto* row = std::find_if(std::begin(error_table), std::end(error_table),
                                   [code](const error_row& candidate) { return candidate.code == code; });
    return row == std::end(error_table) ? nullptr : row;
}

}  // namespace

const char* genicam_error_category::name() const noexcept { return "GenICam Error"; }

std::string genicam_error_category::message(int value) const {
    if (value == 0) return "Success";
    const error_row* row = find_row(static_cast<std::uint32_t>(value));
    return row != nullptr ? row->message : "Unknown error";
}

std::error_condition genicam_error_category::default_error_condition(int value) const noexcept {
    if (value == 0) return {0, std::generic_category()};
    const error_row* row = find_row(static_cast<std::uint32_t>(value));
    if (row != nullptr && row->condition) return std::make_error_condition(*row->condition);
    return {value, *this};
}

const genicam_error_category& genicam_error_category::instance() noexcept {
    static const genicam_error_category category;
    return category;
}

std::error_code make_error_code(std::uint32_t value) noexcept {
    return {static_cast<int>(value), genicam_error_category::instance()};
}

std::error_code make_error_code(error_number value) noexcept {
    return make_error_code(static_cast<std::uint32_t>(value));
}

HRESULT to_hresult(std::uint32_t code) noexcept {
    if (code == success) return 0;
    const error_row* row = find_row(code);
    return row != nullptr ? row->hresult : other_hresult;
}

HRESULT to_hresult(const std::error_code& code) noexcept {
    return to_hresult(static_cast<std::uint32_t>(code.value()));
}

std::error_code from_hresult(HRESULT hr) noexcept {
    if (hr == 0) return make_error_code(success);
    for (const error_number code : codes_with_a_way_back) {
        if (to_hresult(code) == hr) return make_error_code(code);
    }
    return make_error_code(invalid_parameter);
}

}  // namespace GenICam
