#include "genicam/base/value_links.h"

#include "tests/support/node_test.h"

namespace node_test {
namespace {

TestDocument with_min(const std::string& children) {
    return TestDocument("<Integer Name='n'><Value>5</Value>" + children +
                        "</Integer>"
                        "<Integer Name='limit'><Value>3</Value></Integer>");
}

TEST(Pairs, NumberLinkBothOrNeither) {
    const struct {
        const char* children;
        std::int64_t min;
        const char* message;
    } rows[] = {
        {"", lowest, nullptr},
        {"<Min/>", lowest, nullptr},
        {"<Min>2</Min>", 2, nullptr},
        {"<Min>2</Min><pMin/>", 2, nullptr},
        {"<pMin>limit</pMin>", 3, nullptr},
        {"<Min>2</Min><pMin>limit</pMin>", 3,
         "GenICam::resolve_link_or_value_, Integer \"n\". Node contains both \"Min\" and \"pMin\" nodes.\n"},
        {"<Min>x</Min>", lowest,
         "GenICam::resolve_link_or_value_, Integer \"n\". Failed to parse content of \"Min\" node.\n"},
        {"<pMin>gone</pMin>", lowest,
         "GenICam::resolve_link_or_value_, Integer \"n\". Failed to resolve node in \"Min\" .\n"},
    };
    for (const auto& row : rows) {
        TestDocument doc = with_min(row.children);
        EXPECT_EQ(doc.Integer("n").get_min(0).value(), row.min) << row.children;
        if (row.message == nullptr) {
            EXPECT_THAT(doc.load_messages, ElementsAre()) << row.children;
        } else {
            EXPECT_THAT(doc.load_messages, ElementsAre(row.message));
        }
    }
}

TEST(Pairs, AnUnresolvedLinkBeatsTheNumber) {
    TestDocument doc = with_min("<Min>2</Min><pMin>gone</pMin>");
    EXPECT_EQ(doc.Integer("n").get_min(0).value(), lowest);
    EXPECT_THAT(
        doc.load_messages,
        ElementsAre("GenICam::resolve_link_or_value_, Integer \"n\". Node contains both \"Min\" and \"pMin\" "
                    "nodes.\n",
                    "GenICam::resolve_link_or_value_, Integer \"n\". Failed to resolve node in \"Min\" .\n"));
}

TEST(Pairs, DefaultsComeFromTheExtension) {
    const struct {
        const char* extension;
        bool found;
        std::int64_t value;
        const char* message;
    } rows[] = {
        {"<Default>7</Default>", true, 7, nullptr},
        {"<pDefault>limit</pDefault>", true, 3, nullptr},
        {"<Default>7</Default><pDefault>limit</pDefault>", true, 3,
         "GenICam::resolve_link_or_value_from_contents, Integer \"n\". XML element contains both "
         "\"pDefault\" and "
         "\"Default\" nodes.\n"},
        {"<Default>x</Default>", false, 0,
         "GenICam::resolve_link_or_value_from_contents, Integer \"n\". Failed to parse content of "
         "\"Default\" "
         "node.\n"},
        {"<pDefault>gone</pDefault>", false, 0,
         "GenICam::resolve_link_or_value_from_contents, Integer \"n\". Failed to resolve node in "
         "\"pDefault\" .\n"},
        {"<Default/>", false, 0, nullptr},
    };
    for (const auto& row : rows) {
        TestDocument doc = with_min(std::string("<Extension>") + row.extension + "</Extension>");
        const result<std::int64_t> value = doc.Integer("n").get_default(0);
        EXPECT_EQ(value.has_value(), row.found) << row.extension;
        if (row.found) {
            EXPECT_EQ(value.value(), row.value) << row.extension;
        } else {
            EXPECT_EQ(value.error(), code(not_implemented));
        }
        if (row.message == nullptr) {
            EXPECT_THAT(doc.load_messages, ElementsAre()) << row.extension;
        } else {
            EXPECT_THAT(doc.load_messages, ElementsAre(row.message));
        }
    }
    TestDocument child = with_min("<Default>7</Default>");
    EXPECT_FALSE(child.Integer("n").get_default(0)) << "a child of the node itself is not looked at";
}

class Evaluation : public testing::Test {
protected:
    TestDocument doc{R"(
        <Integer Name='i'><Value>7</Value></Integer><Integer Name='zero'><Value>0</Value></Integer>
        <Float Name='f'><Value>2.5</Value><Min>-100</Min></Float><Float Name='m'><Value>-2.5</Value><Min>-100</Min></Float>
        <Float Name='low'><Value>0.4</Value></Float><Float Name='high'><Value>0.6</Value></Float>
        <Boolean Name='t'><Value>true</Value><OnValue>9</OnValue></Boolean>
        <Boolean Name='b'><Value>false</Value></Boolean>
        <Enumeration Name='e'><Value>3</Value><EnumEntry Name='x'><Value>3</Value></EnumEntry>
            <EnumEntry Name='y'><Value>8</Value><NumericValue>0.5</NumericValue></EnumEntry></Enumeration>
        <Enumeration Name='numeric'><Value>8</Value><EnumEntry Name='y'><Value>8</Value>
            <NumericValue>0.5</NumericValue></EnumEntry></Enumeration>
        <Enumeration Name='lost'><Value>4</Value></Enumeration>
        <Enumeration Name='broken'><pValue>gone</pValue></Enumeration>
        <String Name='s'><Value>1</Value></String><Command Name='c'><Value>1</Value><CommandValue>1</CommandValue></Command>
        <Category Name='g'/><Register Name='r'><Address>0</Address><Length>4</Length></Register>
        <Integer Name='unread'><pValue>gone</pValue></Integer>)"};

    INode* node(const char* name) { return &doc.Node(name); }
};

TEST_F(Evaluation, AsInteger) {
    const struct {
        const char* name;
        std::int64_t value;
    } rows[] = {{"i", 7}, {"f", 3}, {"m", -3}, {"low", 0}, {"t", 1}, {"b", 0}, {"e", 3}, {"numeric", 8}};
    for (const auto& row : rows)
        EXPECT_EQ(get_eval_val<std::int64_t>(node(row.name), 0).value(), row.value) << row.name;
}

TEST_F(Evaluation, AsDouble) {
    const struct {
        const char* name;
        double value;
    } rows[] = {{"i", 7}, {"f", 2.5}, {"t", 1}, {"b", 0}, {"e", 3}, {"numeric", 0.5}};
    for (const auto& row : rows)
        EXPECT_EQ(get_eval_val<double>(node(row.name), 0).value(), row.value) << row.name;
}

TEST_F(Evaluation, AsTaggedValue) {
    const struct {
        const char* name;
        bool is_integer;
        double value;
    } rows[] = {{"i", true, 7}, {"f", false, 2.5}, {"t", true, 1},
                {"b", true, 0}, {"e", true, 3},    {"numeric", false, 0.5}};
    for (const auto& row : rows) {
        const eval_value value = get_eval_val<eval_value>(node(row.name), 0).value();
        EXPECT_EQ(value.is_integer, row.is_integer) << row.name;
        EXPECT_EQ(to_double(value), row.value) << row.name;
    }
}

TEST_F(Evaluation, AsBool) {
    const struct {
        const char* name;
        bool value;
    } rows[] = {{"i", true},    {"zero", false}, {"f", true},  {"low", false},
                {"high", true}, {"t", true},     {"b", false}, {"e", true}};
    for (const auto& row : rows)
        EXPECT_EQ(get_eval_val<bool>(node(row.name), 0).value(), row.value) << row.name;
}

TEST_F(Evaluation, FailuresOfTheTargetPassThrough) {
    EXPECT_EQ(get_eval_val<std::int64_t>(node("unread"), 0).error(), code(not_implemented));
    EXPECT_EQ(get_eval_val<double>(node("unread"), 0).error(), code(not_implemented));
    EXPECT_EQ(get_eval_val<bool>(node("unread"), 0).error(), code(not_implemented));
    EXPECT_EQ(get_eval_val<eval_value>(node("unread"), 0).error(), code(not_implemented));
    EXPECT_EQ(get_eval_val<std::int64_t>(node("lost"), 0).error(), code(index_out_of_range));
}

TEST_F(Evaluation, TheDoubleFormReplacesAnEnumerationsFailure) {
    EXPECT_EQ(get_eval_val<std::int64_t>(node("broken"), 0).error(), code(not_implemented));
    EXPECT_EQ(get_eval_val<eval_value>(node("broken"), 0).error(), code(not_implemented));
    EXPECT_EQ(get_eval_val<double>(node("broken"), 0).error(), code(index_out_of_range));
}

TEST_F(Evaluation, NodesWithoutAValueAreRefusedWithTheirNumber) {
    const struct {
        const char* name;
        int type;
    } rows[] = {{"s", 4}, {"c", 5}, {"g", 6}, {"r", 7}, {"Device", 8}};
    for (const auto& row : rows) {
        INode* target = node(row.name);
        EXPECT_EQ(get_eval_val<eval_value>(target, 0).error(), code(not_implemented));
        EXPECT_EQ(get_eval_val<std::int64_t>(target, 0).error(), code(not_implemented));
        EXPECT_EQ(get_eval_val<double>(target, 0).error(), code(not_implemented));
        EXPECT_EQ(get_eval_val<bool>(target, 0).error(), code(not_implemented));
        const std::string get = "GenICam::get_eval_val, get value on a (" + std::to_string(row.type) +
                                ") node_type seems to be futile ...\n";
        EXPECT_THAT(doc.log.Take(), ElementsAre(get, get, get, get));
        EXPECT_EQ(set_eval_val(target, std::int64_t{1}, 0), code(not_implemented));
        EXPECT_EQ(set_eval_val(target, 1.0, 0), code(not_implemented));
        const std::string set = "GenICam::set_eval_val, get value on a (" + std::to_string(row.type) +
                                ") node_type seems to be futile ...\n";
        EXPECT_THAT(doc.log.Take(), ElementsAre(set, set));
        EXPECT_EQ(get_eval_min<std::int64_t>(target, 0).error(), code(not_implemented));
        EXPECT_THAT(doc.log.Take(), ElementsAre());
    }
}

TEST_F(Evaluation, WritingAnInteger) {
    EXPECT_FALSE(set_eval_val(node("i"), std::int64_t{11}, 0));
    EXPECT_EQ(doc.Integer("i").get_val(0).value(), 11);
    EXPECT_FALSE(set_eval_val(node("f"), std::int64_t{11}, 0));
    EXPECT_EQ(doc.Float("f").get_val(0).value(), 11.0);
    EXPECT_FALSE(set_eval_val(node("b"), std::int64_t{11}, 0));
    EXPECT_TRUE(doc.Boolean("b").get_val(0).value());
    EXPECT_FALSE(set_eval_val(node("e"), std::int64_t{8}, 0));
    EXPECT_EQ(doc.Enumeration("e").get_selected_entry(0).value()->get_name(), "y");
    EXPECT_EQ(set_eval_val(node("e"), std::int64_t{9}, 0), code(index_out_of_range));
}

TEST_F(Evaluation, WritingADouble) {
    EXPECT_FALSE(set_eval_val(node("i"), 2.9, 0));
    EXPECT_EQ(doc.Integer("i").get_val(0).value(), 2);
    EXPECT_FALSE(set_eval_val(node("i"), -2.9, 0));
    EXPECT_EQ(doc.Integer("i").get_val(0).value(), -2);
    EXPECT_FALSE(set_eval_val(node("f"), 1.25, 0));
    EXPECT_EQ(doc.Float("f").get_val(0).value(), 1.25);
    EXPECT_FALSE(set_eval_val(node("b"), 0.25, 0));
    EXPECT_TRUE(doc.Boolean("b").get_val(0).value());
    EXPECT_FALSE(set_eval_val(node("b"), -0.0, 0));
    EXPECT_FALSE(doc.Boolean("b").get_val(0).value());
    EXPECT_FALSE(set_eval_val(node("e"), 0.9, 0));
    EXPECT_EQ(doc.Enumeration("e").get_selected_entry(0).value()->get_name(), "y");
}

TEST(RangeEvaluation, ConvertsBetweenTheKinds) {
    TestDocument doc(
        "<Integer "
        "Name='i'><Value>1</Value><Min>1</Min><Max>9</Max><Inc>2</Inc><Extension><Default>5</Default>"
        "</Extension></Integer><Float Name='f'><Value>1</Value><Min>-2.5</Min><Max>2.5</Max><Inc>0.4</Inc>"
        "<Extension><Default>1.5</Default></Extension></Float>");
    INode* integer = &doc.Node("i");
    INode* real = &doc.Node("f");
    EXPECT_EQ(get_eval_min<std::int64_t>(integer, 0).value(), 1);
    EXPECT_EQ(get_eval_max<double>(integer, 0).value(), 9.0);
    EXPECT_EQ(get_eval_inc<double>(integer, 0).value(), 2.0);
    EXPECT_EQ(get_eval_default<std::int64_t>(integer, 0).value(), 5);
    EXPECT_EQ(get_eval_min<std::int64_t>(real, 0).value(), -3);
    EXPECT_EQ(get_eval_max<std::int64_t>(real, 0).value(), 3);
    EXPECT_EQ(get_eval_inc<std::int64_t>(real, 0).value(), 0);
    EXPECT_EQ(get_eval_default<double>(real, 0).value(), 1.5);
    EXPECT_EQ(get_eval_default<std::int64_t>(real, 0).value(), 2);
}

// Every kind of target, and every kind that it is read as. The double form has a word of its own for an
// enumeration without a selected entry.
TEST(Values, AFailingTargetFailsWhoeverReadsIt) {
    TestDocument doc(
        "<Integer Name='integer'><pValue>register</pValue></Integer>"
        "<Float Name='float'><pValue>register</pValue></Float>"
        "<Boolean Name='boolean'><pValue>register</pValue></Boolean>"
        "<Enumeration Name='enumeration'><EnumEntry Name='A'><Value>0</Value></EnumEntry>"
        "<pValue>register</pValue></Enumeration>"
        "<IntReg Name='register'><Address>0</Address><Length>4</Length><pPort>Device</pPort></IntReg>");
    const std::error_code lost = code(device_lost);
    doc.device.before_access = [lost](const test_support::PortAccess&) { return lost; };
    for (const char* name : {"integer", "float", "boolean", "enumeration"}) {
        INode* node = &doc.Node(name);
        const bool is_selection = node->get_node_type() == node_type::enumeration;
        EXPECT_EQ(get_eval_value(node, 0).error(), lost) << name;
        EXPECT_EQ(get_eval_int(node, 0).error(), lost) << name;
        EXPECT_EQ(get_eval_double(node, 0).error(), is_selection ? code(index_out_of_range) : lost) << name;
        EXPECT_EQ(get_eval_bool(node, 0).error(), lost) << name;
    }
}

}  // namespace
}  // namespace node_test
