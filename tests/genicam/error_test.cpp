#include "genicam/core/error.h"

#include <optional>

#include <gtest/gtest.h>
#include <boost/outcome/bad_access.hpp>

namespace {

using namespace GenICam;

struct code_row {
    std::uint32_t value;
    const char* message;
    std::optional<std::errc> condition;
    std::uint32_t hresult;
};

const code_row code_rows[] = {
    {0x80000002, "Buffer too small", std::errc::no_buffer_space, 0x8007007A},
    {0x80000003, "Device lost", std::errc::no_such_device, 0x80070651},
    {0x80000004, "Failed to fetch cached value in a 'NoCache' request", std::nullopt, 0x80070057},
    {0x80000102, "Index out of range", std::errc::invalid_argument, 0x80070057},
    {0x80000103, "Failed to parse formula", std::nullopt, 0x80004005},
    {0x80000104, "Passed in value is out of range of Min/Max", std::errc::result_out_of_range, 0x80070057},
    {0x80000105, "writing failed because value was locked,  INode::is_locked() == true", std::nullopt,
     0x80070057},
    {0x80000106, "writing failed because node was not available INode::is_available() == false", std::nullopt,
     0x80070057},
    {0x80008001, "Feature not implemented", std::errc::not_supported, 0x80004001},
    {0x80008002, "Invalid parameter", std::errc::invalid_argument, 0x80070057},
    {0x80008003, "Invalid address", std::errc::address_not_available, 0x80070057},
    {0x80008004, "Bad Alignment", std::nullopt, 0x80070057},
    {0x80008006, "Access denied", std::errc::permission_denied, 0x80070005},
};

TEST(Error, EveryCodeHasItsTextConditionAndHresult) {
    for (const code_row& row : code_rows) {
        const std::error_code code = make_error_code(row.value);
        EXPECT_EQ(code.message(), row.message);
        EXPECT_EQ(static_cast<std::uint32_t>(code.value()), row.value);
        EXPECT_EQ(&code.category(), &genicam_error_category::instance());
        if (row.condition) {
            EXPECT_EQ(code.default_error_condition(), std::make_error_condition(*row.condition))
                << row.message;
            EXPECT_TRUE(code == *row.condition);
        } else {
            EXPECT_EQ(&code.default_error_condition().category(), &genicam_error_category::instance());
            EXPECT_EQ(code.default_error_condition().value(), code.value());
        }
        EXPECT_EQ(static_cast<std::uint32_t>(to_hresult(row.value)), row.hresult) << row.message;
    }
}

TEST(Error, TheNamesAreTheNumbersOfTheTable) {
    const std::uint32_t names[] = {
        buffer_too_small,   device_lost,   no_cached_value,    index_out_of_range, formula_parse_failed,
        value_out_of_range, value_locked,  node_not_available, not_implemented,    invalid_parameter,
        invalid_address,    bad_alignment, access_denied};
    for (std::size_t at = 0; at < std::size(names); ++at) EXPECT_EQ(names[at], code_rows[at].value);
}

TEST(Error, SuccessIsZeroInTheGenericCategory) {
    const std::error_code none = make_error_code(success);
    EXPECT_FALSE(none);
    EXPECT_EQ(none.message(), "Success");
    EXPECT_EQ(none.default_error_condition(), std::error_condition(0, std::generic_category()));
    EXPECT_EQ(to_hresult(success), 0);
}

TEST(Error, UnknownNumbersKeepThemselves) {
    for (const std::uint32_t value : {1U, 0x80000001U, 0x80000005U, 0x80000101U, 0x80008005U, 0xFFFFFFFFU}) {
        const std::error_code code = make_error_code(value);
        EXPECT_EQ(code.message(), "Unknown error");
        EXPECT_EQ(code.default_error_condition().value(), static_cast<int>(value));
        EXPECT_EQ(&code.default_error_condition().category(), &genicam_error_category::instance());
        EXPECT_EQ(static_cast<std::uint32_t>(to_hresult(value)), 0x80070057U);
    }
}

TEST(Error, CategoryHasOneNameAndOneObject) {
    EXPECT_STREQ(genicam_error_category::instance().name(), "GenICam Error");
    EXPECT_EQ(&make_error_code(success).category(), &make_error_code(access_denied).category());
}

TEST(Error, DriverResultsBecomeCodes) {
    const struct {
        std::uint32_t hresult;
        std::uint32_t code;
    } rows[] = {
        {0, success},
        {0x80004001, not_implemented},
        {0x80070005, access_denied},
        {0x80070057, invalid_parameter},
        {0x8007007A, buffer_too_small},
        {0x80070651, device_lost},
        {0x80004005, invalid_parameter},  // although a failed formula gives this one
        {1, invalid_parameter},
        {0x8007000E, invalid_parameter},
        {0xFFFFFFFF, invalid_parameter},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(from_hresult(static_cast<HRESULT>(row.hresult)), make_error_code(row.code))
            << std::hex << row.hresult;
    }
}

TEST(Result, MisuseThrows) {
    const result<int> failed = make_error_code(access_denied);
    try {
        static_cast<void>(failed.value());
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), make_error_code(access_denied));
    }
    const result<int> good = 7;
    EXPECT_EQ(good.value(), 7);
    try {
        static_cast<void>(good.error());
        FAIL();
    } catch (const boost::outcome_v2::bad_result_access& error) {
        EXPECT_STREQ(error.what(), "no error");
    }
}

}  // namespace
