#include "adapter/propdata_named.h"
#include "adapter/propdata_portbased.h"
#include "tests/adapter/scripted_camera.h"

#include <gtest/gtest.h>

namespace adapter_test {
namespace {

using namespace genicam_adapter;
using ZELAdapterHelper::CUnknown;

const std::string number_node = "<Integer Name=\"N\">" + ElementMark() + "<Value>1</Value></Integer>";

class ItemLifetime : public testing::TestWithParam<ZELAdapterHelper::ItemFactory> {};

TEST_P(ItemLifetime, HoldsOneReferenceToTheFilter) {
    ScriptedFilter filter;
    const std::int32_t objects = CUnknown::LiveObjects();
    ItemRecord record = {};
    record.factory = GetParam();
    {
        const auto item = MakeItem(record, &filter);
        ASSERT_TRUE(item);
        EXPECT_EQ(filter.OutstandingReferences(), 1);
        EXPECT_EQ(CUnknown::LiveObjects(), objects + 1);
        EXPECT_EQ(item->AddRef(), 2U) << "it came with one reference";
        EXPECT_EQ(item->Release(), 1U);
    }
    EXPECT_EQ(filter.OutstandingReferences(), 0);
    EXPECT_EQ(CUnknown::LiveObjects(), objects);
    EXPECT_TRUE(filter.Calls().empty());
}

TEST_P(ItemLifetime, IsMadeForAnythingThatThePageGives) {
    ScriptedFilter filter;
    filter.has_property_set = false;
    ItemRecord record = {};
    record.factory = GetParam();
    EXPECT_TRUE(MakeItem(record, &filter));
    EXPECT_TRUE(MakeItem(record, nullptr));
}

INSTANTIATE_TEST_SUITE_P(BothAccessPaths, ItemLifetime,
                         testing::Values(&make_genicam_propdata_named, &make_genicam_propdata_portbased));

TEST(NamedItemWithoutPropertySet, FailsWhatNeedsTheDriver) {
    OneItem described(AccessPath::Named, number_node, {"N"});
    ItemRecord record = {};
    record.factory = &make_genicam_propdata_named;
    const auto item = MakeItem(record, nullptr);
    std::int32_t value = 3;
    EXPECT_EQ(item->GetValue(described.Key("N"), value), E_NOINTERFACE);
    EXPECT_EQ(item->SetValue(described.Key("N"), 3), E_NOINTERFACE);
    EXPECT_TRUE(described.Requests().empty());
}

TEST(PortbasedItem, UsesNoFilter) {
    OneItem described(AccessPath::Registers, number_node, {"N"});
    ItemRecord record = {};
    record.factory = &make_genicam_propdata_portbased;
    const auto item = MakeItem(record, nullptr);
    std::int32_t value = 0;
    EXPECT_EQ(item->GetValue(described.Key("N"), value), S_OK);
    EXPECT_EQ(value, 1);
}

TEST(DescribedItem, HoldsAReferenceOfItsOwn) {
    OneItem described(AccessPath::Named, number_node, {"N"});
    const std::int32_t before = described.camera.filter.OutstandingReferences();
    EXPECT_EQ(before, 2) << "the adapter's and the item's";
    const auto another = MakeItem(described.Adapter().get_item_table().front(), &described.camera.filter);
    EXPECT_EQ(described.camera.filter.OutstandingReferences(), before + 1);
}

}  // namespace
}  // namespace adapter_test
