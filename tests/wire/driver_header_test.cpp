// The header for drivers, as programs in C++ and in C see it.

#ifdef _WIN32
#define SELVANE_DRIVER_GUIDS
#endif
#include "wire/selvane_driver.h"

#include "platform/text.h"
#include "tests/wire/c_view.h"
#include "wire/device_set.h"
#include "wire/page_classes.h"
#include "wire/vendor_set.h"

#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

std::wstring text_of(const c_guid& id) {
    GUID same = {};
    static_assert(sizeof(same) == sizeof(id));
    std::memcpy(&same, &id, sizeof(same));
    return platform::format_guid(same);
}

TEST(DriverHeader, NamesThePropertySets) {
    EXPECT_EQ(platform::format_guid(wire::device_set), L"{9DDD5EDC-5EFF-4D3B-B85B-46FBC4E49E59}");
    EXPECT_EQ(platform::format_guid(wire::gate_set), L"{8E4DEEF8-B53B-4A30-B9B6-AFBBCBD182B4}");
    EXPECT_EQ(platform::format_guid(wire::vendor_set), L"{515E97D1-C453-4772-A489-CC070A5A2442}");
    EXPECT_EQ(platform::format_guid(wire::color_enhancement_set), L"{8CBCF1C6-53C3-4D79-8EDB-C0646575DAC8}");
    EXPECT_EQ(text_of(c_device_set()), platform::format_guid(wire::device_set));
    EXPECT_EQ(text_of(c_gate_set()), platform::format_guid(wire::gate_set));
    EXPECT_EQ(text_of(c_vendor_set()), platform::format_guid(wire::vendor_set));
    EXPECT_EQ(text_of(c_color_enhancement_set()), platform::format_guid(wire::color_enhancement_set));
}

TEST(DriverHeader, NamesTheClassesOfThePages) {
    const wchar_t* const ids[] = {
        L"{01F8BA96-06C1-4888-B9FF-8B60F3A1221A}", L"{01F8BA96-06C1-4888-B9FF-8B60F3A1221B}",
        L"{C423731D-D4C5-41EE-B17D-A311A7B27DEC}", L"{A522337D-5324-4123-9DA4-84D17EF1EADA}"};
    for (int page = 0; page < 4; ++page) {
        EXPECT_EQ(platform::format_guid(wire::page_classes[static_cast<std::size_t>(page)]), ids[page]);
        EXPECT_EQ(text_of(c_page_class(page)), ids[page]);
    }
}

#ifdef _WIN32
TEST(DriverHeader, GivesConstantsWhereTheyAreAskedFor) {
    EXPECT_EQ(selvane_device_set, wire::device_set);
    EXPECT_EQ(selvane_gate_set, wire::gate_set);
    EXPECT_EQ(selvane_vendor_set, wire::vendor_set);
    EXPECT_EQ(selvane_color_enhancement_set, wire::color_enhancement_set);
    EXPECT_EQ(selvane_exposure_page, wire::page_classes[0]);
    EXPECT_EQ(selvane_feature_page, wire::page_classes[1]);
    EXPECT_EQ(selvane_lens_page, wire::page_classes[2]);
    EXPECT_EQ(selvane_color_page, wire::page_classes[3]);
}
#endif

TEST(DriverHeader, RecordsHaveTheSameSizesInBothLanguages) {
    EXPECT_EQ(sizeof(selvane_integer_record), 48U);
    EXPECT_EQ(sizeof(selvane_float_record), 56U);
    EXPECT_EQ(sizeof(selvane_gpio_record), 40U);
    EXPECT_EQ(sizeof(selvane_strobe_record), 88U);
    EXPECT_EQ(c_integer_record_size(), sizeof(selvane_integer_record));
    EXPECT_EQ(c_float_record_size(), sizeof(selvane_float_record));
    EXPECT_EQ(c_gpio_record_size(), sizeof(selvane_gpio_record));
    EXPECT_EQ(c_strobe_record_size(), sizeof(selvane_strobe_record));
}

constexpr std::string_view path = "Gain/Value";

std::vector<char> request_for(std::string_view asked) {
    const auto size = static_cast<std::uint32_t>(asked.size());
    std::vector<char> request(selvane_named_request_size(size), '?');
    selvane_write_named_request(request.data(), asked.data(), size);
    return request;
}

TEST(DriverHeader, BuildsANamedRequestBetweenZeros) {
    const std::string expected = std::string(8, '\0') + std::string(path) + std::string(64, '\0');
    const std::vector<char> request = request_for(path);
    EXPECT_EQ(std::string(request.begin(), request.end()), expected);
    std::vector<char> in_c(c_named_request_size(static_cast<std::uint32_t>(path.size())), '?');
    c_write_named_request(in_c.data(), path.data(), static_cast<std::uint32_t>(path.size()));
    EXPECT_EQ(in_c, request);
    EXPECT_EQ(request_for({}), std::vector<char>(72, '\0'));
}

TEST(DriverHeader, ReadsThePathOfANamedRequest) {
    for (const std::string_view asked : {path, std::string_view()}) {
        const std::vector<char> request = request_for(asked);
        const auto size = static_cast<std::uint32_t>(request.size());
        const char* const read = selvane_read_named_request(request.data(), size);
        ASSERT_NE(read, nullptr);
        EXPECT_EQ(read, asked);
        EXPECT_EQ(c_read_named_request(request.data(), size), read);
    }
}

TEST(DriverHeader, RefusesWhatIsNoNamedRequest) {
    std::vector<char> request = request_for(path);
    const auto size = static_cast<std::uint32_t>(request.size());
    EXPECT_EQ(selvane_read_named_request(nullptr, size), nullptr);
    EXPECT_NE(selvane_read_named_request(request.data(), 72), nullptr);
    EXPECT_EQ(selvane_read_named_request(request.data(), 71), nullptr);
    request[7] = 1;
    EXPECT_EQ(selvane_read_named_request(request.data(), size), nullptr);
    request = request_for(path);
    std::fill(request.begin() + 8, request.end(), 'x');
    EXPECT_EQ(selvane_read_named_request(request.data(), size), nullptr);
    request.back() = 0;
    EXPECT_NE(selvane_read_named_request(request.data(), size), nullptr);
}

TEST(DriverHeader, NamesWhatCanBeAskedOfAFeature) {
    EXPECT_EQ(wire::path_suffix::value, "/Value");
    EXPECT_EQ(wire::path_suffix::min, "/Min");
    EXPECT_EQ(wire::path_suffix::max, "/Max");
    EXPECT_EQ(wire::path_suffix::inc, "/Inc");
    EXPECT_EQ(wire::path_suffix::default_value, "/Default");
    EXPECT_EQ(wire::path_suffix::is_locked, "/IsLocked");
    EXPECT_EQ(wire::path_suffix::execute, "/Execute");
    EXPECT_EQ(wire::path_suffix::selected_entry, "/SelectedEntry");
    EXPECT_EQ(wire::path_suffix::is_implemented, "/IsImplemented");
}

}  // namespace
