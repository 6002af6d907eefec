// Messages as data: a row, what it is about, and arguments of its kinds.

#include "genicam/core/messages.h"

#include "tests/support/decimal_comma.h"
#include "tests/support/test_document.h"

#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace GenICam;
using test_support::TestDocument;

template <class Row, class... Given>
using reported = decltype(report(std::declval<const Row&>(), message_origin(), std::declval<Given>()...));

template <class Enable, class Row, class... Given>
struct fits : std::false_type {};
template <class Row, class... Given>
struct fits<std::void_t<reported<Row, Given...>>, Row, Given...> : std::true_type {};
template <class Row, class... Given>
constexpr bool can_report = fits<void, Row, Given...>::value;

static_assert(can_report<message<>>);
static_assert(can_report<message<std::int64_t>, std::int64_t>);
static_assert(can_report<message<std::string_view>, const char*>);
static_assert(!can_report<message<std::int64_t>>, "an argument is missing");
static_assert(!can_report<message<>, std::int64_t>, "there is one too many");
static_assert(!can_report<message<std::int64_t>, double>, "nothing is converted on the way");
static_assert(!can_report<message<std::int64_t>, std::uint64_t>);
static_assert(!can_report<message<double>, std::int64_t>);
static_assert(!can_report<message<std::string_view>, std::int64_t>);

struct heard_message {
    const message_row* row;
    std::string element;
    std::string node;
    std::string attribute;
    std::string text;
};

class Listener final : public message_listener {
public:
    void hear(const reported_message& said) override {
        heard.push_back({&said.row, said.origin.element.attribute("Name").value(), said.origin.node().name(),
                         said.origin.attribute().name(), said.text()});
    }
    std::vector<heard_message> heard;
};

constexpr const char* faulty = R"(<Integer Name="I"><Value>1</Value></Integer>
<Integer Name="A"><pIndex>I</pIndex><pValueIndexed Index="one">I</pValueIndexed><ValueDefault>1</ValueDefault></Integer>
<Integer Name="B"><Value>1</Value><pMax>Gone</pMax></Integer>
<Category Name="C"><pFeature>Gone</pFeature></Category>)";

TEST(Message, AListenerGetsTheRowTheElementAndTheChild) {
    Listener listener;
    const listening to(listener);
    const TestDocument doc(faulty);
    ASSERT_EQ(listener.heard.size(), 3U);
    const auto& [index, link, feature] = std::tie(listener.heard[0], listener.heard[1], listener.heard[2]);
    EXPECT_EQ(index.row, &messages::index_of_link_invalid);
    EXPECT_EQ(index.element, "A");
    EXPECT_EQ(index.node, "pValueIndexed");
    EXPECT_EQ(index.attribute, "Index");
    EXPECT_EQ(link.row, &messages::pair_link_unresolved);
    EXPECT_EQ(link.element, "B");
    EXPECT_EQ(link.node, "pMax");
    EXPECT_EQ(feature.row, &messages::feature_unresolved);
    EXPECT_EQ(feature.node, "pFeature");
}

TEST(Message, AListenerGetsTheTextsThatTheLogPrints) {
    const TestDocument printed(faulty);
    Listener listener;
    const listening to(listener);
    const TestDocument heard(faulty);
    EXPECT_TRUE(heard.load_messages.empty()) << "nothing is printed beside";
    std::vector<std::string> texts;
    for (const heard_message& one : listener.heard) texts.push_back(one.text);
    EXPECT_EQ(texts, printed.load_messages);
    EXPECT_EQ(texts.back(),
              "GenICam::category_type::_resolve_references, Category (\"C\"). Failed to resolve "
              "\"pFeature\" for feature=Gone.\n");
}

TEST(Message, InTheSilenceNobodyHears) {
    Listener listener;
    const listening to(listener);
    {
        const silence quiet;
        report(messages::minimum_of_variable_missing, {});
        EXPECT_TRUE(listener.heard.empty());
    }
    report(messages::minimum_of_variable_missing, {});
    EXPECT_EQ(listener.heard.size(), 1U);
}

TEST(Message, NumbersHaveAPointWhateverTheLocaleOfTheHost) {
    const test_support::DecimalComma comma;
    test_support::LogCapture log;
    report(messages::float_value_out_of_range, {}, 0.25);
    const std::vector<std::string> told = log.Take();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0].substr(told[0].find('=')), "=2.500000e-01.\n");
}

TEST(Message, TheLogIsSilentAgainBehindAListener) {
    const std::uint32_t before = log_threshold;
    Listener listener;
    { const listening to(listener); }
    EXPECT_EQ(log_threshold, before);
    report(messages::minimum_of_variable_missing, {});
    EXPECT_TRUE(listener.heard.empty());
}

TEST(Message, EachKindOfArgument) {
    test_support::LogCapture log;
    report(messages::pair_has_both, {}, "Max", std::string_view("pMax!").substr(0, 4));
    report(messages::boolean_value_is_neither, {}, std::int64_t{-5});
    report(messages::chunk_port_read_address, {}, ~std::uint64_t{0});
    report(messages::float_value_out_of_range, {}, -1.5);
    EXPECT_EQ(
        log.Take(),
        (std::vector<std::string>{
            "GenICam::resolve_link_or_value_,  \"\". Node contains both \"Max\" and \"pMax\" nodes.\n",
            "GenICam::boolean_Value_type::get_val, Boolean (\"\"). Invalid floating_value contents=-5.\n",
            "GenICam::port_chunk_type::read, IPort (\"\"). Failed due to out of range "
            "address=18446744073709551615 parameter.\n",
            "GenICam::float_floating_value_type::set_val, Float (\"\"). Failed range check for "
            "parameter value=-1.500000e+00.\n"}));
}

TEST(Message, TextsAreCutAndNeverActAsFormats) {
    test_support::LogCapture log;
    report(messages::name_unresolved, {}, "%s%n%100000d");
    report(messages::name_unresolved, {}, std::string(1000, '%'));
    const std::vector<std::string> printed = log.Take();
    ASSERT_EQ(printed.size(), 2U);
    EXPECT_EQ(printed[0],
              "math_parser::add_identifier_token, failed to map variable \"%s%n%100000d\" to either a "
              "constant or a pValue.\n");
    EXPECT_EQ(printed[1].size(), log_message_size - 1);
}

}  // namespace
