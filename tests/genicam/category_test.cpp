#include "tests/support/node_test.h"

namespace node_test {
namespace {

TEST(Category, ListsFeaturesInDocumentOrder) {
    TestDocument doc(
        "<Category "
        "Name='Root'><pFeature>b</pFeature><pFeature>gone</pFeature><pFeature>a</pFeature></Category>"
        "<Integer Name='a'><Value>1</Value></Integer><Integer Name='b'><Value>1</Value></Integer>");
    EXPECT_THAT(doc.Category("Root").get_features(), ElementsAre(&doc.Node("b"), &doc.Node("a")));
    EXPECT_THAT(doc.load_messages,
                ElementsAre("GenICam::category_type::_resolve_references, Category (\"Root\"). Failed "
                            "to resolve \"pFeature\" for feature=gone.\n"));
    EXPECT_EQ(doc.Node("a").get_eval()->get_dependent_count(), 0);
}

TEST(Category, WithoutFeatures) {
    TestDocument doc("<Category Name='Root'/><Category Name='Bad'><pFeature/></Category>");
    EXPECT_THAT(doc.Category("Root").get_features(), IsEmpty());
    EXPECT_THAT(doc.Category("Bad").get_features(), IsEmpty());
    EXPECT_THAT(doc.load_messages,
                ElementsAre("GenICam::category_type::_resolve_references, Category (\"Bad\"). Failed "
                            "to resolve \"pFeature\" for feature=.\n"));
}

TEST(Category, MayListItselfAndOthersInACircle) {
    TestDocument doc(
        "<Category Name='A'><pFeature>A</pFeature><pFeature>B</pFeature></Category>"
        "<Category Name='B'><pFeature>A</pFeature></Category>");
    EXPECT_THAT(doc.Category("A").get_features(), ElementsAre(&doc.Node("A"), &doc.Node("B")));
    EXPECT_THAT(doc.load_messages, IsEmpty());
}

}  // namespace
}  // namespace node_test
