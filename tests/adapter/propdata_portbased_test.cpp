#include "adapter/propdata_portbased.h"

#include "tests/adapter/scripted_camera.h"

#include <gtest/gtest.h>

#include <limits>

namespace adapter_test {
namespace {

using GenICam::IEnumeration;
using GenICam::IInteger;
using genicam_adapter::node_as;
using ZELAdapterHelper::AbsRangeInfo;
using ZELAdapterHelper::RangeInfo;
using ZELAdapterHelper::SharedString;

constexpr HRESULT bad_parameter = static_cast<HRESULT>(0x80070057);

std::string Element(const std::string& kind, const std::string& name, const std::string& content) {
    return "<" + kind + " Name=\"" + name + "\">" + ElementMark() + content + "</" + kind + ">";
}

std::string Entry(const std::string& name, int value, const std::string& more = "") {
    return "<EnumEntry Name=\"" + name + "\">" + more + "<Value>" + std::to_string(value) +
           "</Value></EnumEntry>";
}

// A 4-byte register at an address that its name ends in, so that calls can be told apart.
std::string RegisterNode(const std::string& name, const std::string& address, const std::string& more = "") {
    return "<IntReg Name=\"" + name + "\"><Address>" + address +
           "</Address><Length>4</Length>"
           "<AccessMode>RW</AccessMode>" +
           more +
           "<pPort>Device</pPort><Sign>Signed</Sign>"
           "<Endianess>LittleEndian</Endianess></IntReg>";
}

const std::string device_port = "<Port Name=\"Device\"/>";

// A register behind a port that nobody binds: every access fails.
std::string DeadRegister(const std::string& name) {
    return "<Port Name=\"Dead\"/><IntReg Name=\"" + name +
           "\"><Address>0</Address><Length>4</Length><pPort>Dead</pPort></IntReg>";
}

std::string MarkWithDefault(const std::string& default_element) {
    return "<Extension><ZELElementGUID>{00000000-0000-0000-0000-000000000001}</ZELElementGUID>" +
           default_element + "</Extension>";
}

std::vector<std::uint64_t> RegistersRead(OneItem& item) {
    std::vector<std::uint64_t> addresses;
    for (const DriverRequest& request : item.Requests()) {
        EXPECT_EQ(request.kind, DriverRequest::Kind::get);
        EXPECT_EQ(request.id, 3U);
        std::uint64_t address = 0;
        EXPECT_EQ(request.instance.size(), sizeof(address));
        std::memcpy(&address, request.instance.data(), sizeof(address));
        addresses.push_back(address);
    }
    return addresses;
}

// An item of one feature.
class OneFeature {
public:
    OneFeature(const std::string& kind, const std::string& content, const std::string& others = "")
        : item_(AccessPath::Registers, Element(kind, "F", content) + others, {"F"}) {}

    CZELItemDataBase* operator->() { return item_.operator->(); }
    [[nodiscard]] InterfaceKey Key() { return item_.Key("F"); }
    [[nodiscard]] OneItem& Item() { return item_; }
    [[nodiscard]] RangeInfo Range(HRESULT expected = S_OK) {
        RangeInfo range = {-9, -8, -7, -6};
        EXPECT_EQ(item_->GetRange(Key(), range), expected);
        return range;
    }

private:
    OneItem item_;
};

TEST(PortbasedItem, SupportsEverything) {
    OneFeature feature("Integer", "<Value>1</Value>");
    EXPECT_TRUE(feature->SupportsInterface(feature.Key()));
}

TEST(PortbasedItem, IsAvailableWhileLocked) {
    const std::string lock = "<Integer Name=\"Lock\"><Value>0</Value></Integer>";
    OneFeature feature("Integer", "<pIsLocked>Lock</pIsLocked><Value>1</Value>", lock);
    auto* const locked = node_as<IInteger>(feature.Item().Node("Lock"));
    for (const bool is_locked : {false, true}) {
        ASSERT_FALSE(locked->set_val(is_locked ? 1 : 0, 0));
        bool available = !is_locked;
        EXPECT_EQ(feature->IsAvailable(feature.Key(), available), S_OK);
        EXPECT_EQ(available, is_locked);
    }
}

TEST(PortbasedItem, AsksForTheLockAlone) {
    OneFeature read_only("Integer", "<ImposedAccessMode>RO</ImposedAccessMode><Value>1</Value>");
    bool available = true;
    EXPECT_EQ(read_only->IsAvailable(read_only.Key(), available), S_OK);
    EXPECT_FALSE(available) << "the access mode does not come in";

    OneFeature broken("Integer", "<pIsLocked>Lock</pIsLocked><Value>1</Value>",
                      device_port + RegisterNode("Lock", "0"));
    broken.Item().camera.register_result = device_is_lost;
    available = true;
    EXPECT_EQ(broken->IsAvailable(broken.Key(), available), S_OK) << "always";
    EXPECT_FALSE(available);
}

TEST(PortbasedItem, IsNeverReadOnly) {
    OneFeature feature("Integer", "<ImposedAccessMode>RO</ImposedAccessMode><Value>1</Value>");
    bool read_only = true;
    EXPECT_EQ(feature->IsReadOnly(feature.Key(), read_only), S_OK);
    EXPECT_FALSE(read_only);
}

TEST(PortbasedItem, ReadsAndWritesASwitch) {
    OneFeature feature("Boolean", "<Extension><Default>1</Default></Extension><Value>false</Value>");
    bool on = true;
    EXPECT_EQ(feature->GetSwitch(feature.Key(), on), S_OK);
    EXPECT_FALSE(on);
    EXPECT_EQ(feature->SetSwitch(feature.Key(), true), S_OK);
    EXPECT_EQ(feature->GetSwitch(feature.Key(), on), S_OK);
    EXPECT_TRUE(on);
}

TEST(PortbasedItem, ReadsTheDefaultOfASwitch) {
    OneFeature without("Boolean", "<Value>false</Value>");
    bool on = true;
    EXPECT_EQ(without->GetSwitchDefault(without.Key(), on), E_NOTIMPL);
    EXPECT_TRUE(on) << "left alone";
    OneItem with(AccessPath::Registers,
                 "<Boolean Name=\"F\"><Extension><ZELElementGUID>{00000000-0000-0000-0000-000000000001}"
                 "</ZELElementGUID><Default>1</Default></Extension><Value>false</Value></Boolean>",
                 {"F"});
    on = false;
    EXPECT_EQ(with->GetSwitchDefault(with.Key("F"), on), S_OK);
    EXPECT_TRUE(on);
}

struct IntegerLimits {
    using Info = RangeInfo;
    static constexpr const char* element = "Integer";
    static constexpr double half_of_11 = 5;
    static constexpr const char* step_link = "<pInc>Step</pInc>";
    static std::vector<std::uint64_t> RegistersAskedFor() { return {0x10, 0x20, 0x30, 0x40}; }
    static HRESULT Read(CZELItemDataBase& item, InterfaceKey key, Info& limits) {
        return item.GetRange(key, limits);
    }
    static void ExpectStep(const Info& limits, std::int32_t step) { EXPECT_EQ(limits.step, step); }
};

// Physical ranges have no step.
struct FloatLimits {
    using Info = AbsRangeInfo;
    static constexpr const char* element = "Float";
    static constexpr double half_of_11 = 5.5;
    static constexpr const char* step_link = "";
    static std::vector<std::uint64_t> RegistersAskedFor() { return {0x10, 0x20, 0x30}; }
    static HRESULT Read(CZELItemDataBase& item, InterfaceKey key, Info& limits) {
        return item.GetAbsRange(key, limits);
    }
    static void ExpectStep(const Info&, std::int32_t) {}
};

/// What is the same with the limits of integers and floats.
template <class Kind>
class PortbasedLimits : public testing::Test {
protected:
    // The feature F with the child of its extension that tells the default.
    static std::string Feature(const std::string& default_element, const std::string& content) {
        const std::string element = Kind::element;
        return "<" + element + " Name=\"F\">" + MarkWithDefault(default_element) + "<Value>11</Value>" +
               content + "</" + element + ">";
    }
    static void Expect(OneItem& item, HRESULT result, double min, double max, double default_value,
                       std::int32_t step) {
        typename Kind::Info limits{-9, -8, -7};
        EXPECT_EQ(Kind::Read(*item, item.Key("F"), limits), result);
        EXPECT_EQ(static_cast<double>(limits.min), min);
        EXPECT_EQ(static_cast<double>(limits.max), max);
        EXPECT_EQ(static_cast<double>(limits.default_value), default_value);
        Kind::ExpectStep(limits, step);
    }
};
struct LimitsName {
    template <class Kind>
    static std::string GetName(int) {
        return Kind::element;
    }
};
using LimitKinds = testing::Types<IntegerLimits, FloatLimits>;
TYPED_TEST_SUITE(PortbasedLimits, LimitKinds, LimitsName);

TYPED_TEST(PortbasedLimits, ComeFromTheNode) {
    OneItem item(AccessPath::Registers,
                 this->Feature("<Default>4</Default>", "<Min>-3</Min><Max>12</Max><Inc>5</Inc>"), {"F"});
    this->Expect(item, S_OK, -3, 12, 4, 5);
}

TYPED_TEST(PortbasedLimits, FallBackToHalfTheSpan) {
    OneItem item(AccessPath::Registers, this->Feature("", "<Min>10</Min><Max>21</Max>"), {"F"});
    this->Expect(item, S_OK, 10, 21, TypeParam::half_of_11, 1);  // the minimum is not added
}

TYPED_TEST(PortbasedLimits, AreAskedForInOrder) {
    const std::string links = "<pMin>Min</pMin><pMax>Max</pMax>";
    OneItem item(AccessPath::Registers,
                 device_port + RegisterNode("Min", "0x10") + RegisterNode("Max", "0x20") +
                     RegisterNode("Start", "0x30") + RegisterNode("Step", "0x40") +
                     this->Feature("<pDefault>Start</pDefault>", links + TypeParam::step_link),
                 {"F"});
    item.camera.PutMemory(0x10, {1, 0, 0, 0});
    item.camera.PutMemory(0x20, {9, 0, 0, 0});
    item.camera.PutMemory(0x30, {3, 0, 0, 0});
    item.camera.PutMemory(0x40, {4, 0, 0, 0});
    this->Expect(item, S_OK, 1, 9, 3, 4);
    EXPECT_EQ(RegistersRead(item), TypeParam::RegistersAskedFor());
}

TYPED_TEST(PortbasedLimits, FallBackWhenTheDefaultCannotBeRead) {
    OneItem item(
        AccessPath::Registers,
        DeadRegister("Start") + this->Feature("<pDefault>Start</pDefault>", "<Min>10</Min><Max>21</Max>"),
        {"F"});
    this->Expect(item, S_OK, 10, 21, TypeParam::half_of_11, 1);
}

TYPED_TEST(PortbasedLimits, FailWithTheCodeOfTheFirstThatFails) {
    const std::string limit = device_port + RegisterNode("Limit", "0");
    OneItem no_min(AccessPath::Registers, limit + this->Feature("", "<pMin>Limit</pMin><Max>8</Max>"), {"F"});
    no_min.camera.register_result = device_is_lost;
    this->Expect(no_min, device_is_lost, -9, -8, -7, 0);
    OneItem no_max(AccessPath::Registers, limit + this->Feature("", "<Min>3</Min><pMax>Limit</pMax>"), {"F"});
    no_max.camera.register_result = E_ACCESSDENIED;
    this->Expect(no_max, E_ACCESSDENIED, 3, -8, -7, 0);
}

TEST(PortbasedRange, TruncatesHalfTheSpanTowardZero) {
    OneFeature negative("Integer", "<Value>0</Value><Min>21</Min><Max>10</Max>");
    EXPECT_EQ(negative.Range().default_value, -5);
}

TEST(PortbasedRange, ComputesTheFallbackIn32Bits) {
    OneFeature feature("Integer", "<Value>0</Value>");  // limits of 64 bits: 0 and -1 in their low halves
    EXPECT_EQ(BytesOf(feature.Range()), BytesOf(RangeInfo{0, -1, 0, 1}));
    OneFeature wrapping("Integer", "<Value>0</Value><Min>-2147483648</Min><Max>2147483647</Max>");
    EXPECT_EQ(wrapping.Range().default_value, 0) << "the difference wraps to -1";
    OneFeature reversed("Integer", "<Value>0</Value><Min>2147483647</Min><Max>-2147483648</Max>");
    EXPECT_EQ(reversed.Range().default_value, 0) << "the difference wraps to 1";
    OneFeature high("Integer", "<Value>0</Value><Min>0x100000002</Min><Max>0x30000000C</Max>");
    EXPECT_EQ(BytesOf(high.Range()), BytesOf(RangeInfo{2, 12, 5, 1}));
}

TEST(PortbasedRange, FallsBackToAStepOfOne) {
    OneFeature feature("Integer", "<Value>0</Value><Min>0</Min><Max>8</Max><pInc>Step</pInc>",
                       device_port + RegisterNode("Step", "0x10"));
    feature.Item().camera.PutMemory(0x10, {4, 0, 0, 0});
    EXPECT_EQ(feature.Range().step, 4);
    feature.Item().camera.register_result = E_FAIL;
    EXPECT_EQ(feature.Range().step, 1);
}

TEST(PortbasedItem, ReadsAndWritesAValue) {
    OneFeature feature("Integer", "<Value>0x180000005</Value>");
    std::int32_t value = 0;
    EXPECT_EQ(feature->GetValue(feature.Key(), value), S_OK);
    EXPECT_EQ(value, static_cast<std::int32_t>(0x80000005)) << "the low half";
    EXPECT_EQ(feature->SetValue(feature.Key(), -2), S_OK);
    EXPECT_EQ(node_as<IInteger>(feature.Key())->get_val(0).value(), -2) << "sign-extended";
}

TEST(PortbasedItem, TurnsARefusedValueIntoABadParameter) {
    OneFeature feature("Integer", "<Value>5</Value><Min>0</Min><Max>10</Max>");
    EXPECT_EQ(feature->SetValue(feature.Key(), 11), bad_parameter);
    std::int32_t value = 0;
    EXPECT_EQ(feature->GetValue(feature.Key(), value), S_OK);
    EXPECT_EQ(value, 5);
}

TEST(PortbasedItem, TurnsCodesOfTheEngineIntoResults) {
    OneFeature constant("Integer", "<ImposedAccessMode>RO</ImposedAccessMode><Value>5</Value>");
    EXPECT_EQ(constant->SetValue(constant.Key(), 5), E_ACCESSDENIED);
    OneFeature absent("Integer", "<pIsAvailable>Zero</pIsAvailable><Value>5</Value>",
                      "<Integer Name=\"Zero\"><Value>0</Value></Integer>");
    std::int32_t value = -7;
    EXPECT_EQ(absent->GetValue(absent.Key(), value), bad_parameter) << "node_not_available";
    EXPECT_EQ(absent->SetValue(absent.Key(), 1), bad_parameter);
    EXPECT_EQ(value, -7) << "left alone";
}

struct RoundTrip {
    HRESULT driver;
    HRESULT item;
};

constexpr RoundTrip round_trips[] = {
    {S_FALSE, bad_parameter},
    {E_NOTIMPL, E_NOTIMPL},
    {E_ACCESSDENIED, E_ACCESSDENIED},
    {E_INVALIDARG, bad_parameter},
    {buffer_is_small, buffer_is_small},
    {device_is_lost, device_is_lost},
    {E_FAIL, bad_parameter},
    {test_support::property_unknown, bad_parameter},
};

TEST(PortbasedItem, GivesTheDriversFailureAsFarAsTheCodesKeepIt) {
    OneItem item(AccessPath::Registers,
                 device_port + RegisterNode("Reg", "0x20") +
                     Element("Integer", "Num", "<pValue>Reg</pValue>") +
                     Element("Boolean", "Flag", "<pValue>Reg</pValue>") +
                     Element("Float", "Real", "<pValue>Reg</pValue><Min>0</Min><Max>9</Max>") +
                     Element("Enumeration", "Mode", Entry("Off", 0) + "<pValue>Reg</pValue>"),
                 {"Num", "Flag", "Real", "Mode"});
    for (const RoundTrip& trip : round_trips) {
        item.camera.register_result = trip.driver;
        bool flag = false;
        std::int32_t number = 0;
        double real = 0;
        EXPECT_EQ(item->GetSwitch(item.Key("Flag"), flag), trip.item) << trip.driver;
        EXPECT_EQ(item->SetSwitch(item.Key("Flag"), true), trip.item) << trip.driver;
        EXPECT_EQ(item->GetValue(item.Key("Num"), number), trip.item) << trip.driver;
        EXPECT_EQ(item->SetValue(item.Key("Num"), 1), trip.item) << trip.driver;
        EXPECT_EQ(item->GetValue(item.Key("Mode"), number), trip.item) << trip.driver;
        EXPECT_EQ(item->SetValue(item.Key("Mode"), 0), trip.item) << trip.driver;
        EXPECT_EQ(item->GetAbsValue(item.Key("Real"), real), trip.item) << trip.driver;
        EXPECT_EQ(item->SetAbsValue(item.Key("Real"), 1), trip.item) << trip.driver;
    }
}

TEST(PortbasedItem, ReachesTheDriverThroughRegistersOnly) {
    OneItem item(
        AccessPath::Registers,
        device_port + RegisterNode("Reg", "0x20") + Element("Integer", "Num", "<pValue>Reg</pValue>"),
        {"Num"});
    item.camera.PutMemory(0x20, {0xFB, 0xFF, 0xFF, 0xFF});
    std::int32_t value = 0;
    EXPECT_EQ(item->GetValue(item.Key("Num"), value), S_OK);
    EXPECT_EQ(value, -5);
    EXPECT_EQ(item->SetValue(item.Key("Num"), 0x01020304), S_OK);
    const auto requests = item.Requests();
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_EQ(requests[0].id, 3U);
    EXPECT_EQ(requests[0].instance, BytesOf(std::uint64_t{0x20}));
    EXPECT_EQ(requests[0].data.size(), 4U);
    EXPECT_EQ(requests[1], RegisterSet(0x20, {4, 3, 2, 1}));
}

TEST(PortbasedItem, LeavesCachingToTheNodes) {
    OneItem item(AccessPath::Registers,
                 device_port + RegisterNode("Kept", "0x20", "<Cachable>WriteThrough</Cachable>") +
                     Element("Integer", "Num", "<pValue>Kept</pValue>"),
                 {"Num"});
    std::int32_t value = 0;
    EXPECT_EQ(item->GetValue(item.Key("Num"), value), S_OK);
    EXPECT_EQ(item->GetValue(item.Key("Num"), value), S_OK);
    EXPECT_EQ(item.Requests().size(), 1U);
    EXPECT_EQ(item->SetValue(item.Key("Num"), 5), S_OK);
    EXPECT_EQ(item->GetValue(item.Key("Num"), value), S_OK);
    EXPECT_EQ(value, 5);
    const auto requests = item.Requests();
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests[0], RegisterSet(0x20, {5, 0, 0, 0}));
}

TEST(PortbasedItem, ReadsAndWritesAPhysicalValue) {
    OneFeature feature("Float", "<Value>1.25</Value><Min>0</Min><Max>10</Max>");
    double value = 0;
    EXPECT_EQ(feature->GetAbsValue(feature.Key(), value), S_OK);
    EXPECT_EQ(value, 1.25);
    EXPECT_EQ(feature->SetAbsValue(feature.Key(), 2.5), S_OK);
    EXPECT_EQ(feature->SetAbsValue(feature.Key(), 11), bad_parameter);
    EXPECT_EQ(feature->GetAbsValue(feature.Key(), value), S_OK);
    EXPECT_EQ(value, 2.5);
}

TEST(PortbasedItem, TakesUnitAndScaleFromTheNode) {
    OneFeature feature("Float", "<Value>1</Value><Unit>\xC2\xB5s</Unit>");
    SharedString unit;
    std::int32_t scale = 5;
    EXPECT_EQ(feature->GetAbsUnit(feature.Key(), unit, scale), S_OK);
    EXPECT_EQ(unit.View(), L"\u00B5s");
    EXPECT_EQ(scale, 0);
}

TEST(PortbasedItem, PushesAButton) {
    OneFeature feature("Command", "<pValue>Reg</pValue><CommandValue>9</CommandValue>",
                       device_port + RegisterNode("Reg", "0x30"));
    EXPECT_EQ(feature->Push(feature.Key()), S_OK);
    EXPECT_EQ(feature.Item().Requests().back(), RegisterSet(0x30, {9, 0, 0, 0}));
}

TEST(PortbasedItem, FailsAButtonWithOneResultForEveryCode) {
    OneFeature feature("Command", "<pValue>Reg</pValue><CommandValue>9</CommandValue>",
                       device_port + RegisterNode("Reg", "0x30"));
    for (const RoundTrip& trip : round_trips) {
        feature.Item().camera.register_result = trip.driver;
        EXPECT_EQ(feature->Push(feature.Key()), static_cast<HRESULT>(0x80004005)) << trip.driver;
    }
    OneFeature denied(
        "Command", "<ImposedAccessMode>RO</ImposedAccessMode><Value>0</Value><CommandValue>9</CommandValue>");
    EXPECT_EQ(denied->Push(denied.Key()), static_cast<HRESULT>(0x80004005));
}

class PortbasedEnumeration : public testing::Test {
protected:
    OneFeature feature_{"Enumeration", Entry("Three", 3) +
                                           Entry("Seven", 7, "<DisplayName>Sieben \xC3\xA4</DisplayName>") +
                                           "<Value>7</Value>"};
    InterfaceKey key_ = feature_.Key();
    IEnumeration* const node_ = node_as<IEnumeration>(key_);
};

TEST_F(PortbasedEnumeration, ReadsTheValueAndWritesTheIndex) {
    std::int32_t value = 0;
    EXPECT_EQ(feature_->GetValue(key_, value), S_OK);
    EXPECT_EQ(value, 7) << "not its index";
    EXPECT_EQ(feature_->SetValue(key_, 0), S_OK);
    EXPECT_EQ(feature_->GetValue(key_, value), S_OK);
    EXPECT_EQ(value, 3);
    EXPECT_EQ(feature_->SetValue(key_, 1), S_OK);
    EXPECT_EQ(node_->get_selected_entry(0).value()->get_name(), "Seven");
}

TEST_F(PortbasedEnumeration, RefusesAnIndexOutsideTheList) {
    for (const std::int32_t index :
         {-1, 2, 3, 7, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
        EXPECT_EQ(feature_->SetValue(key_, index), bad_parameter) << index;
    }
    EXPECT_EQ(node_->get_selected_entry(0).value()->get_name(), "Seven");
}

TEST_F(PortbasedEnumeration, HasARangeOfIndices) {
    EXPECT_EQ(BytesOf(feature_.Range()), BytesOf(RangeInfo{0, 1, 0, 1}));
}

TEST_F(PortbasedEnumeration, AppendsItsTexts) {
    std::vector<SharedString> strings = {SharedString(L"before")};
    EXPECT_EQ(feature_->GetMapStrings(key_, strings), S_OK);
    ASSERT_EQ(strings.size(), 3U);
    EXPECT_EQ(strings[1].View(), L"Three");
    EXPECT_EQ(strings[2].View(), L"Sieben \u00E4");
}

TEST_F(PortbasedEnumeration, CutsAValueToItsLowHalf) {
    OneItem item(
        AccessPath::Registers,
        "<Enumeration Name=\"E\">" + ElementMark() +
            "<EnumEntry Name=\"Big\"><Value>0x100000002</Value></EnumEntry><Value>0x100000002</Value>"
            "</Enumeration>",
        {"E"});
    std::int32_t value = 0;
    EXPECT_EQ(item->GetValue(item.Key("E"), value), S_OK);
    EXPECT_EQ(value, 2);
}

TEST_F(PortbasedEnumeration, FailsWithoutAnEntryForItsValue) {
    OneFeature lost("Enumeration", Entry("One", 1) + "<Value>5</Value>");
    std::int32_t value = -7;
    EXPECT_EQ(lost->GetValue(lost.Key(), value), bad_parameter) << "index_out_of_range";
    EXPECT_EQ(value, -7) << "left alone";
}

TEST_F(PortbasedEnumeration, ListsEntriesThatAreNotImplementedThemselves) {
    OneFeature feature(
        "Enumeration",
        Entry("Yes", 1) + Entry("No", 2, "<pIsImplemented>Zero</pIsImplemented>") + "<Value>1</Value>",
        "<Integer Name=\"Zero\"><Value>0</Value></Integer>");
    EXPECT_EQ(feature.Range().max, 1);
    EXPECT_EQ(feature->SetValue(feature.Key(), 1), S_OK);
}

TEST_F(PortbasedEnumeration, OffersNothingWhenItIsNotImplemented) {
    OneItem item(
        AccessPath::Registers,
        Element("Enumeration", "E",
                Entry("A", 0) + Entry("B", 1) + "<pIsImplemented>Switch</pIsImplemented><Value>0</Value>") +
            "<Integer Name=\"Switch\"><Value>1</Value></Integer>",
        {"E"});
    const InterfaceKey key = item.Key("E");
    auto* const implemented = node_as<IInteger>(item.Node("Switch"));
    ASSERT_FALSE(implemented->set_val(0, 0));
    RangeInfo range;
    std::vector<SharedString> strings;
    EXPECT_EQ(item->GetRange(key, range), E_NOTIMPL);
    EXPECT_EQ(item->GetMapStrings(key, strings), S_OK);
    EXPECT_TRUE(strings.empty());
    EXPECT_EQ(item->SetValue(key, 0), bad_parameter);

    ASSERT_FALSE(implemented->set_val(1, 0));
    EXPECT_EQ(item->GetRange(key, range), S_OK) << "an empty list is looked up anew";
    EXPECT_EQ(range.max, 1);
    ASSERT_FALSE(implemented->set_val(0, 0));
    EXPECT_EQ(item->GetRange(key, range), S_OK) << "the list stands";
    EXPECT_EQ(item->Refresh(key), S_OK);
    EXPECT_EQ(item->GetRange(key, range), E_NOTIMPL);
}

TEST_F(PortbasedEnumeration, TakesTheFirstEntryOfTheNameAtAnIndex) {
    OneFeature twins("Enumeration", Entry("Twin", 3) + Entry("Twin", 7) + "<Value>7</Value>");
    EXPECT_EQ(twins.Range().max, 1);
    EXPECT_EQ(twins->SetValue(twins.Key(), 1), S_OK);
    EXPECT_EQ(node_as<IEnumeration>(twins.Key())->get_selected_entry(0).value()->get_value(), 3);
}

TEST_F(PortbasedEnumeration, LoadsItsEntriesBeforeTheSelectedOne) {
    OneItem item(AccessPath::Registers,
                 device_port + RegisterNode("Present", "0x40") + RegisterNode("Chosen", "0x50") +
                     Element("Enumeration", "E",
                             Entry("A", 0) + Entry("B", 1) +
                                 "<pIsImplemented>Present</pIsImplemented><pValue>Chosen</pValue>") +
                     Element("Integer", "Other", "<Value>1</Value>"),
                 {"E", "Other"});
    item.camera.PutMemory(0x40, {1, 0, 0, 0});
    item.camera.PutMemory(0x50, {1, 0, 0, 0});
    std::int32_t value = 0;
    EXPECT_EQ(item->GetValue(item.Key("E"), value), S_OK);
    EXPECT_EQ(value, 1);
    const auto first = RegistersRead(item);
    ASSERT_GE(first.size(), 3U);
    EXPECT_EQ(first[0], 0x40U);
    EXPECT_EQ(first[1], 0x40U) << "once for each entry";
    EXPECT_EQ(first.back(), 0x50U);
    EXPECT_EQ(item->GetValue(item.Key("E"), value), S_OK);
    EXPECT_EQ(RegistersRead(item).size(), first.size() - 2) << "the list stands";
}

TEST_F(PortbasedEnumeration, AsksWhetherItIsImplementedForEachEntry) {
    OneItem item(AccessPath::Registers,
                 device_port + RegisterNode("Switch", "0x44", "<Cachable>NoCache</Cachable>") +
                     Element("Enumeration", "E",
                             Entry("A", 0) + Entry("B", 1) + Entry("C", 2) +
                                 "<pIsImplemented>Switch</pIsImplemented><Value>0</Value>") +
                     Element("Integer", "Other", "<Value>1</Value>"),
                 {"E", "Other"});
    EXPECT_EQ(item->Refresh(item.Key("E")), S_OK);
    EXPECT_EQ(item.Requests().size(), 3U);
}

TEST(PortbasedItem, HasNothingForKindsOfAnotherInterface) {
    OneItem item(AccessPath::Registers,
                 Element("Integer", "Num", "<Value>1</Value>") +
                     Element("Float", "Real", "<Value>1</Value>") +
                     Element("Boolean", "Flag", "<Value>true</Value>") +
                     Element("Command", "Go", "<Value>0</Value><CommandValue>1</CommandValue>") +
                     Element("Enumeration", "Mode", Entry("A", 0) + "<Value>0</Value>"),
                 {"Num", "Real", "Flag", "Go", "Mode"});
    const InterfaceKey num = item.Key("Num");
    const InterfaceKey real = item.Key("Real");
    const InterfaceKey flag = item.Key("Flag");
    const InterfaceKey go = item.Key("Go");
    const InterfaceKey mode = item.Key("Mode");
    bool on = false;
    std::int32_t number = 0;
    double value = 0;
    RangeInfo range;
    AbsRangeInfo abs_range;
    SharedString unit;
    std::vector<SharedString> strings;
    for (const InterfaceKey key : {num, real, go, mode}) {
        EXPECT_EQ(item->GetSwitch(key, on), E_NOTIMPL);
        EXPECT_EQ(item->SetSwitch(key, true), E_NOTIMPL);
        EXPECT_EQ(item->GetSwitchDefault(key, on), E_NOTIMPL);
    }
    for (const InterfaceKey key : {real, flag, go}) {
        EXPECT_EQ(item->GetRange(key, range), E_NOTIMPL);
        EXPECT_EQ(item->GetValue(key, number), E_NOTIMPL);
        EXPECT_EQ(item->SetValue(key, 0), E_NOTIMPL);
    }
    for (const InterfaceKey key : {num, flag, go, mode}) {
        EXPECT_EQ(item->GetAbsRange(key, abs_range), E_NOTIMPL);
        EXPECT_EQ(item->GetAbsValue(key, value), E_NOTIMPL);
        EXPECT_EQ(item->SetAbsValue(key, 0), E_NOTIMPL);
    }
    for (const InterfaceKey key : {flag, go, mode}) EXPECT_EQ(item->GetAbsUnit(key, unit, number), E_NOTIMPL);
    for (const InterfaceKey key : {num, real, flag, go})
        EXPECT_EQ(item->GetMapStrings(key, strings), E_NOTIMPL);
    for (const InterfaceKey key : {num, real, flag, mode}) EXPECT_EQ(item->Push(key), E_NOTIMPL);
}

}  // namespace
}  // namespace adapter_test
