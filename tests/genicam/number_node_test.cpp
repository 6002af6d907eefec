// What is the same with nodes of both kinds that hold numbers.

#include "tests/support/node_test.h"

#include <limits>
#include <string>
#include <type_traits>
#include <vector>

namespace node_test {
namespace {

template <class Kind>
class NumberNode : public testing::Test {
protected:
    // An element of the kind.
    static std::string Element(const std::string& name, const std::string& children) {
        const std::string element = Kind::element;
        return "<" + element + " Name='" + name + "'>" + children + "</" + element + ">";
    }
    static std::string UnresolvedMessage(const std::string& element) {
        return std::string(Kind::class_prefix) + "pValue_type::_resolve_references, " + Kind::element +
               " (\"" + element + "\"). Failed to parse or resolve \"pValue\" xml element.\n";
    }
    static typename Kind::node& Node(const TestDocument& doc) { return Kind::In(doc, "n"); }
};
TYPED_TEST_SUITE(NumberNode, Numbers, NumberName);

TYPED_TEST(NumberNode, ThatIsNotAvailableRefusesBeforeItLooksAtTheRange) {
    std::vector<std::string> bodies = {"<Value>1</Value>", "<pValue>a</pValue>",
                                       "<pIndex>a</pIndex><ValueDefault>1</ValueDefault>"};
    // Floats have no copies.
    if (std::is_same_v<TypeParam, Integers>) {
        bodies.emplace_back("<pValue>a</pValue><pValueCopy>b</pValueCopy>");
    }
    for (const std::string& body : bodies) {
        TestDocument doc(this->Element("n", body + "<Max>1</Max><pIsAvailable>no</pIsAvailable>") +
                         "<Integer Name='no'><Value>0</Value></Integer>"
                         "<Integer Name='a'><Value>0</Value></Integer>"
                         "<Integer Name='b'><Value>0</Value></Integer>");
        EXPECT_EQ(this->Node(doc).set_val(9, 0), code(node_not_available)) << body;
        EXPECT_EQ(this->Node(doc).get_val(0).error(), code(node_not_available)) << body;
        EXPECT_THAT(doc.log.Take(), IsEmpty());
    }
}

TYPED_TEST(NumberNode, WithoutItsTargetHasTheLimitsThatItStates) {
    TestDocument doc(this->Element("n", "<pValue>gone</pValue><Min>1</Min>") +
                     this->Element("m", "<pValue>gone</pValue><Max>1</Max>"));
    EXPECT_THAT(doc.load_messages, ElementsAre(this->UnresolvedMessage("m"), this->UnresolvedMessage("n")));
    EXPECT_EQ(this->Node(doc).get_val(0).error(), code(not_implemented));
    EXPECT_EQ(this->Node(doc).set_val(5, 0), code(not_implemented));
    EXPECT_TRUE(HasRange(this->Node(doc), 1, none, none, none));
    EXPECT_TRUE(HasRange(TypeParam::In(doc, "m"), none, 1, none, none));
}

TYPED_TEST(NumberNode, TakesTheLimitsThemselves) {
    TestDocument doc(this->Element("n", "<Value>5</Value><Min>-10</Min><Max>10</Max>"));
    EXPECT_FALSE(this->Node(doc).set_val(-10, 0));
    EXPECT_FALSE(this->Node(doc).set_val(10, 0));
}

TYPED_TEST(NumberNode, IsNotRefusedByALimitThatFails) {
    TestDocument doc(this->Element("n", "<Value>5</Value><pMin>s</pMin><Max>10</Max>") +
                     "<String Name='s'/>" + this->Element("m", "<Value>5</Value><Min>3</Min><pMax>s</pMax>"));
    EXPECT_EQ(this->Node(doc).get_min(0).error(), code(not_implemented)) << "but it reaches who asks for it";
    EXPECT_FALSE(this->Node(doc).set_val(-100, 0));
    EXPECT_EQ(this->Node(doc).set_val(11, 0), code(value_out_of_range));
    typename TypeParam::node& without_max = TypeParam::In(doc, "m");
    EXPECT_FALSE(without_max.set_val(100, 0));
    EXPECT_EQ(without_max.set_val(2, 0), code(value_out_of_range));
}

TYPED_TEST(NumberNode, TellsItsDependentsOfEveryChangeOnce) {
    TestDocument doc(this->Element("n", "<Value>5</Value>") + this->Element("p", "<pValue>n</pValue>"));
    ChangeCounter changes(doc.Node("p"));
    EXPECT_FALSE(this->Node(doc).set_val(6, 0));
    EXPECT_FALSE(this->Node(doc).set_val(6, 0));
    EXPECT_EQ(changes.Count(), 1);
}

TYPED_TEST(NumberNode, PrefersWhatItStatesToItsTarget) {
    TestDocument doc(
        this->Element("n",
                      "<pValue>v</pValue><Min>1</Min><Max>2</Max><Inc>3</Inc><Unit>own</Unit>"
                      "<Extension><Default>4</Default></Extension>") +
        this->Element("v", "<Value>1</Value><Unit>other</Unit><Representation>Logarithmic</Representation>") +
        this->Element("m", "<pValue>v</pValue>"));
    EXPECT_TRUE(HasRange(this->Node(doc), 1, 2, 3, 4));
    EXPECT_EQ(this->Node(doc).get_unit(), "own");
    typename TypeParam::node& silent = TypeParam::In(doc, "m");
    EXPECT_EQ(silent.get_unit(), "") << "the value link is not asked";
    EXPECT_EQ(silent.get_representation(), decltype(silent.get_representation())::PureNumber);
}

TYPED_TEST(NumberNode, NeedsAnIntegerNodeForItsIndex) {
    for (const char* index : {"gone", "f", "s", ""}) {
        TestDocument doc(this->Element("n", std::string("<pIndex>") + index +
                                                "</pIndex><ValueDefault>1</ValueDefault><Min>3</Min>"
                                                "<Unit>u</Unit>") +
                         "<Float Name='f'><Value>1</Value></Float><String Name='s'/>");
        EXPECT_THAT(doc.load_messages,
                    ElementsAre("GenICam::resolve_pIndex, " + std::string(TypeParam::element) +
                                " (\"n\"). Invalid or no IInteger base \"pIndex\" element.\n"));
        typename TypeParam::node& node = this->Node(doc);
        EXPECT_EQ(node.get_val(0).error(), code(not_implemented));
        EXPECT_EQ(node.set_val(1, 0), code(not_implemented));
        EXPECT_EQ(node.get_min(0).value(), std::numeric_limits<typename TypeParam::number>::min())
            << "the range was not read";
        EXPECT_EQ(node.get_unit(), "u");
        EXPECT_EQ(node.get_representation(), decltype(node.get_representation())::PureNumber);
        EXPECT_EQ(node.get_access_mode(), AccessMode::RW);
    }
}

TYPED_TEST(NumberNode, HasTheAccessModeOfTheTargetOfItsIndex) {
    TestDocument doc(this->Element("n",
                                   "<pIndex>i</pIndex><pValueIndexed Index='1'>ro</pValueIndexed>"
                                   "<ValueDefault>1</ValueDefault>") +
                     "<Integer Name='i'><Value>1</Value></Integer>" +
                     this->Element("ro", "<Value>1</Value><ImposedAccessMode>RO</ImposedAccessMode>"));
    EXPECT_EQ(this->Node(doc).get_access_mode(), AccessMode::RO);
    EXPECT_FALSE(doc.Integer("i").set_val(2, 0));
    EXPECT_EQ(this->Node(doc).get_access_mode(), AccessMode::RW) << "an entry without a node";
}

TYPED_TEST(NumberNode, ReadsItsIndexForTheAccessModeWhateverTheFlags) {
    TestDocument doc(
        this->Element("n",
                      "<pIndex>i</pIndex><pValueIndexed Index='1'>a</pValueIndexed>"
                      "<ValueDefault>2</ValueDefault>") +
        this->Element("a", "<Value>7</Value>") +
        "<IntReg Name='i'><Address>16</Address><Length>4</Length><pPort>Device</pPort></IntReg>");
    doc.device.Put(16, {0, 0, 0, 1});
    EXPECT_EQ(this->Node(doc).get_val(access_flags::cache_only).value(), 7);
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(test_support::ReadOf(16, 4)));
    EXPECT_EQ(this->Node(doc).get_val(access_flags::cache_only | access_flags::skip_access_check).value(), 7);
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty()) << "the value itself comes from the cache";
}

TEST(IntegerTable, TheAccessModeOfATargetOfAnotherKindDoesNotCount) {
    TestDocument doc(
        "<Integer Name='n'><pIndex>i</pIndex><pValueIndexed Index='2'>fro</pValueIndexed>"
        "<ValueDefault>1</ValueDefault></Integer><Integer Name='i'><Value>2</Value></Integer>"
        "<Float Name='fro'><Value>1</Value><ImposedAccessMode>RO</ImposedAccessMode></Float>");
    EXPECT_EQ(doc.Node("n").get_access_mode(), AccessMode::RW);
}

}  // namespace
}  // namespace node_test
