#include "adapter/propdata_named.h"

#include "tests/adapter/scripted_camera.h"

#include <gtest/gtest.h>

#include <limits>

namespace adapter_test {
namespace {

using ZELAdapterHelper::AbsRangeInfo;
using ZELAdapterHelper::RangeInfo;
using ZELAdapterHelper::SharedString;

constexpr HRESULT refused = test_support::property_unknown;

const std::vector<std::string> features = {"Num", "Real", "Flag", "Go", "Mode"};

// The local values differ from all that the driver answers: none of them may show.
std::string Nodes() {
    return "<Integer Name=\"Num\">" + ElementMark(1) +
           "<Value>77</Value><Min>70</Min><Max>80</Max><Inc>7</Inc><Unit>px\xC2\xB2</Unit></Integer>"
           "<Float Name=\"Real\">" +
           ElementMark(2) +
           "<Value>7.5</Value><Min>7</Min><Max>8</Max><Unit>\xC2\xB5s</Unit>"
           "<Representation>Logarithmic</Representation></Float>"
           "<Boolean Name=\"Flag\">" +
           ElementMark(3) +
           "<Value>true</Value></Boolean>"
           "<Command Name=\"Go\">" +
           ElementMark(4) +
           "<Value>0</Value><CommandValue>9</CommandValue></Command>"
           "<Enumeration Name=\"Mode\">" +
           ElementMark(5) +
           "<EnumEntry Name=\"Off\"><Value>10</Value></EnumEntry>"
           "<EnumEntry Name=\"Once\"><DisplayName>Einmal \xC3\xA4</DisplayName><Value>20</Value></EnumEntry>"
           "<EnumEntry Name=\"Continuous\"><DisplayName>Immer</DisplayName><Value>30</Value></EnumEntry>"
           "<Value>10</Value></Enumeration>";
}

std::vector<std::wstring> TextsOf(const std::vector<SharedString>& strings) {
    std::vector<std::wstring> texts;
    for (const SharedString& each : strings) texts.emplace_back(each.View());
    return texts;
}

class NamedItem : public testing::Test {
protected:
    OneItem item_{AccessPath::Named, Nodes(), features};
    ScriptedCamera& camera_ = item_.camera;
    InterfaceKey num_ = item_.Key("Num");
    InterfaceKey real_ = item_.Key("Real");
    InterfaceKey flag_ = item_.Key("Flag");
    InterfaceKey go_ = item_.Key("Go");
    InterfaceKey mode_ = item_.Key("Mode");

    void OfferEntries(const std::vector<std::string>& names) {
        for (const std::string name : {"Off", "Once", "Continuous"})
            camera_.named.erase("Mode/" + name + "/IsImplemented");
        for (const std::string& name : names)
            camera_.Answer("Mode/" + name + "/IsImplemented", std::uint64_t{1});
    }
    // Fills the list of the enumeration and forgets the requests.
    void LoadEntries(const std::vector<std::string>& names) {
        OfferEntries(names);
        item_->Refresh(mode_);
        (void)item_.Requests();
    }
    void EveryGetGives(HRESULT hr) {
        camera_.filter
            .Property({0x9DDD5EDC, 0x5EFF, 0x4D3B, {0xB8, 0x5B, 0x46, 0xFB, 0xC4, 0xE4, 0x9E, 0x59}}, 4)
            .get = [=](GetArguments& call) {
            std::memset(call.data, 0x11, call.size);
            return hr;
        };
    }
};

const std::vector<DriverRequest> entry_requests = {NamedGet("Mode/Off/IsImplemented"),
                                                   NamedGet("Mode/Once/IsImplemented"),
                                                   NamedGet("Mode/Continuous/IsImplemented")};

TEST_F(NamedItem, SupportsEverything) {
    for (const InterfaceKey key : {num_, real_, flag_, go_, mode_})
        EXPECT_TRUE(item_->SupportsInterface(key));
    EXPECT_TRUE(item_.Requests().empty());
}

TEST_F(NamedItem, RefreshReloadsTheEntriesOfAnEnumeration) {
    LoadEntries({"Off"});
    OfferEntries({"Off", "Continuous"});
    RangeInfo range;
    EXPECT_EQ(item_->GetRange(mode_, range), S_OK);
    EXPECT_EQ(range.max, 0);
    EXPECT_TRUE(item_.Requests().empty()) << "none while the list stands";
    EXPECT_EQ(item_->Refresh(mode_), S_OK);
    EXPECT_EQ(item_.Requests(), entry_requests);
    EXPECT_EQ(item_->GetRange(mode_, range), S_OK);
    EXPECT_EQ(range.max, 1);
}

TEST_F(NamedItem, RefreshOfOthersDoesNothing) {
    for (const InterfaceKey key : {num_, real_, flag_, go_}) EXPECT_EQ(item_->Refresh(key), S_OK);
    EXPECT_TRUE(item_.Requests().empty());
}

TEST_F(NamedItem, IsAvailableWhileLocked) {
    for (const auto& [value, available] :
         {std::pair<std::uint64_t, bool>{0, false}, {1, true}, {1ULL << 40, true}}) {
        camera_.Answer("Num/IsLocked", value);
        bool out = !available;
        EXPECT_EQ(item_->IsAvailable(num_, out), S_OK);
        EXPECT_EQ(out, available) << value;
        EXPECT_EQ(item_.Requests(), std::vector{NamedGet("Num/IsLocked")});
    }
}

TEST_F(NamedItem, LeavesAvailabilityAloneWhenItFails) {
    for (bool before : {false, true}) {
        bool out = before;
        EXPECT_EQ(item_->IsAvailable(num_, out), refused);
        EXPECT_EQ(out, before);
    }
}

TEST_F(NamedItem, IsNeverReadOnly) {
    for (const InterfaceKey key : {num_, real_, flag_, go_, mode_}) {
        bool out = true;
        EXPECT_EQ(item_->IsReadOnly(key, out), S_OK);
        EXPECT_FALSE(out);
    }
    EXPECT_TRUE(item_.Requests().empty());
}

TEST_F(NamedItem, ReadsASwitch) {
    for (const auto& [value, on] :
         {std::pair<std::uint64_t, bool>{0, false}, {1, true}, {1ULL << 63, true}}) {
        camera_.Answer("Flag/Value", value);
        bool out = !on;
        EXPECT_EQ(item_->GetSwitch(flag_, out), S_OK);
        EXPECT_EQ(out, on) << value;
        EXPECT_EQ(item_.Requests(), std::vector{NamedGet("Flag/Value")});
    }
    camera_.named.erase("Flag/Value");
    bool out = false;
    EXPECT_EQ(item_->GetSwitch(flag_, out), refused);
}

TEST_F(NamedItem, WritesASwitch) {
    EXPECT_EQ(item_->SetSwitch(flag_, true), S_OK);
    EXPECT_EQ(item_->SetSwitch(flag_, false), S_OK);
    EXPECT_EQ(item_.Requests(), (std::vector{NamedSet("Flag/Value", {1, 0, 0, 0, 0, 0, 0, 0}),
                                             NamedSet("Flag/Value", Bytes(8))}));
}

TEST_F(NamedItem, ReadsTheDefaultOfASwitch) {
    bool out = true;
    EXPECT_EQ(item_->GetSwitchDefault(flag_, out), refused);
    EXPECT_TRUE(out) << "left alone";
    camera_.Answer("Flag/Default", std::uint64_t{0});
    EXPECT_EQ(item_->GetSwitchDefault(flag_, out), S_OK);
    EXPECT_FALSE(out);
    EXPECT_EQ(item_.Requests(), (std::vector{NamedGet("Flag/Default"), NamedGet("Flag/Default")}));
}

class NamedRange : public NamedItem {
protected:
    void Answer(std::int64_t min, std::int64_t max) {
        camera_.Answer("Num/Min", min);
        camera_.Answer("Num/Max", max);
    }
    RangeInfo Range() {
        RangeInfo range = {-9, -9, -9, -9};
        EXPECT_EQ(item_->GetRange(num_, range), S_OK);
        return range;
    }
};

TEST_F(NamedRange, AsksForFourNumbersInOrder) {
    Answer(-3, 12);
    camera_.Answer("Num/Inc", std::int64_t{5});
    camera_.Answer("Num/Default", std::int64_t{4});
    EXPECT_EQ(BytesOf(Range()), BytesOf(RangeInfo{-3, 12, 4, 5}));
    EXPECT_EQ(item_.Requests(),
              (std::vector{NamedGet("Num/Min"), NamedGet("Num/Max", BytesOf(std::int64_t{1})),
                           NamedGet("Num/Inc", BytesOf(std::int64_t{1})), NamedGet("Num/Default")}));
}

TEST_F(NamedRange, FallsBackForStepAndDefault) {
    Answer(10, 21);
    EXPECT_EQ(BytesOf(Range()), BytesOf(RangeInfo{10, 21, 15, 1}));
    Answer(-21, -10);
    EXPECT_EQ(Range().default_value, -16);
    Answer(21, 10);
    EXPECT_EQ(Range().default_value, 16) << "truncated toward zero";
}

TEST_F(NamedRange, TakesTheFallbackStepWhateverAFailedCallWrote) {
    int calls = 0;
    camera_.filter.Property({0x9DDD5EDC, 0x5EFF, 0x4D3B, {0xB8, 0x5B, 0x46, 0xFB, 0xC4, 0xE4, 0x9E, 0x59}}, 4)
        .get = [&](GetArguments& call) {
        std::memset(call.data, 0, call.size);
        call.data[0] = 100;
        return ++calls <= 2 ? S_OK : E_FAIL;
    };
    EXPECT_EQ(BytesOf(Range()), BytesOf(RangeInfo{100, 100, 100, 1}));
}

TEST_F(NamedRange, KeepsTheLowHalves) {
    Answer(-5, 0x1'0000'0000);
    camera_.Answer("Num/Inc", std::int64_t{0x2'0000'0003});
    camera_.Answer("Num/Default", std::int64_t{0x7'8000'0000});
    EXPECT_EQ(BytesOf(Range()), BytesOf(RangeInfo{-5, 0, std::numeric_limits<std::int32_t>::min(), 3}));
}

TEST_F(NamedRange, WrapsAtTheEndsOf64Bits) {
    constexpr auto least = std::numeric_limits<std::int64_t>::min();
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    Answer(least, most);  // the difference wraps to -1, half of it is 0
    EXPECT_EQ(BytesOf(Range()), BytesOf(RangeInfo{0, -1, 0, 1}));
    Answer(most, least);  // the difference wraps to 1
    EXPECT_EQ(BytesOf(Range()), BytesOf(RangeInfo{-1, 0, -1, 1}));
    Answer(0, 0x2'0000'000A);  // computed in 64 bits, then cut
    EXPECT_EQ(Range().default_value, 5);
}

TEST_F(NamedRange, FailsWithoutALimit) {
    RangeInfo range = {-9, -8, -7, -6};
    EXPECT_EQ(item_->GetRange(num_, range), refused);
    EXPECT_EQ(item_.Requests(), std::vector{NamedGet("Num/Min")});
    camera_.Answer("Num/Min", std::int64_t{1});
    EXPECT_EQ(item_->GetRange(num_, range), refused);
    EXPECT_EQ(item_.Requests(),
              (std::vector{NamedGet("Num/Min"), NamedGet("Num/Max", BytesOf(std::int64_t{1}))}));
    EXPECT_EQ(BytesOf(range), BytesOf(RangeInfo{-9, -8, -7, -6})) << "left alone";
}

TEST_F(NamedRange, OfAnEnumerationCountsItsEntries) {
    OfferEntries({"Off", "Continuous"});
    RangeInfo range = {-9, -9, -9, -9};
    EXPECT_EQ(item_->GetRange(mode_, range), S_OK);
    EXPECT_EQ(BytesOf(range), BytesOf(RangeInfo{0, 1, 0, 1}));
    EXPECT_EQ(item_.Requests(), entry_requests) << "the driver's default is not asked for";
}

TEST_F(NamedRange, OfAnEnumerationWithoutEntriesIsNotThere) {
    RangeInfo range = {-9, -8, -7, -6};
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(item_->GetRange(mode_, range), static_cast<HRESULT>(0x80004001));
        EXPECT_EQ(item_.Requests(), entry_requests) << "an empty list is looked up anew";
    }
    EXPECT_EQ(BytesOf(range), BytesOf(RangeInfo{-9, -8, -7, -6}));
}

TEST_F(NamedItem, ReadsTheLowHalfOfAValue) {
    camera_.Answer("Num/Value", std::int64_t{0x1'8000'0005});
    std::int32_t value = 0;
    EXPECT_EQ(item_->GetValue(num_, value), S_OK);
    EXPECT_EQ(value, static_cast<std::int32_t>(0x80000005));
    EXPECT_EQ(item_.Requests(), std::vector{NamedGet("Num/Value")});
}

TEST_F(NamedItem, GivesTheResultOfAValueRead) {
    std::int32_t value = 5;
    EXPECT_EQ(item_->GetValue(num_, value), refused);
    EveryGetGives(S_FALSE);
    EXPECT_EQ(item_->GetValue(num_, value), S_FALSE);
    EXPECT_EQ(value, 0x11111111);
}

TEST_F(NamedItem, WritesAValueSignExtended) {
    EXPECT_EQ(item_->SetValue(num_, -2), S_OK);
    EXPECT_EQ(item_->SetValue(num_, 0x7FFFFFFF), S_OK);
    EXPECT_EQ(item_.Requests(),
              (std::vector{NamedSet("Num/Value", {0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}),
                           NamedSet("Num/Value", {0xFF, 0xFF, 0xFF, 0x7F, 0, 0, 0, 0})}));
}

const DriverRequest selected_request = NamedGet("Mode/SelectedEntry", Bytes(256));

TEST_F(NamedItem, ReadsTheIndexOfTheSelectedEntry) {
    OfferEntries({"Off", "Continuous"});
    camera_.AnswerText("Mode/SelectedEntry", "Continuous");
    std::int32_t value = -7;
    EXPECT_EQ(item_->GetValue(mode_, value), S_OK);
    EXPECT_EQ(value, 1) << "in the list of those offered";
    auto expected = entry_requests;
    expected.push_back(selected_request);
    EXPECT_EQ(item_.Requests(), expected);
    camera_.AnswerText("Mode/SelectedEntry", std::string("Off\0Continuous", 14));
    EXPECT_EQ(item_->GetValue(mode_, value), S_OK);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(item_.Requests(), std::vector{selected_request});
}

TEST_F(NamedItem, DoesNotFindAnEntryThatIsNotOffered) {
    LoadEntries({"Off", "Continuous"});
    for (const char* name : {"Once", "Of", "Offf", "off", "", "Immer"}) {
        camera_.AnswerText("Mode/SelectedEntry", name);
        std::int32_t value = -7;
        EXPECT_EQ(item_->GetValue(mode_, value), static_cast<HRESULT>(0x80004005)) << name;
        EXPECT_EQ(value, 0) << name;
    }
}

TEST_F(NamedItem, PassesAFailureOfTheSelectedEntryOn) {
    LoadEntries({"Off"});
    std::int32_t value = -7;
    EXPECT_EQ(item_->GetValue(mode_, value), refused);
    EXPECT_EQ(value, 0);
}

TEST(NamedEnumeration, MatchesNoEntryThatTheBufferDoesNotHold) {
    for (const std::size_t length : {254U, 255U, 256U, 257U, 400U}) {
        const std::string name(length, 'x');
        OneItem item(AccessPath::Named,
                     "<Enumeration Name=\"E\">" + ElementMark() + "<EnumEntry Name=\"" + name +
                         "\"><Value>1</Value></EnumEntry><Value>1</Value></Enumeration>",
                     {"E"});
        item.camera.Answer("E/" + name + "/IsImplemented", std::uint64_t{1});
        item.camera.AnswerText("E/SelectedEntry", name);
        std::int32_t value = -7;
        EXPECT_EQ(item->GetValue(item.Key("E"), value), length <= 255 ? S_OK : E_FAIL) << length;
        EXPECT_EQ(value, 0);
    }
}

TEST(NamedEnumeration, FindsTheFirstOfEntriesWithOneName) {
    OneItem item(AccessPath::Named,
                 "<Enumeration Name=\"E\">" + ElementMark() +
                     "<EnumEntry Name=\"A\"><Value>1</Value></EnumEntry><EnumEntry "
                     "Name=\"B\"><Value>2</Value></EnumEntry>"
                     "<EnumEntry Name=\"B\"><Value>3</Value></EnumEntry><Value>1</Value></Enumeration>",
                 {"E"});
    item.camera.Answer("E/A/IsImplemented", std::uint64_t{1});
    item.camera.Answer("E/B/IsImplemented", std::uint64_t{1});
    item.camera.AnswerText("E/SelectedEntry", "B");
    std::int32_t value = -7;
    EXPECT_EQ(item->GetValue(item.Key("E"), value), S_OK);
    EXPECT_EQ(value, 1);
}

TEST_F(NamedItem, SelectsAnEntryByItsName) {
    OfferEntries({"Once", "Continuous"});
    EXPECT_EQ(item_->SetValue(mode_, 1), S_OK);
    auto expected = entry_requests;
    expected.push_back(NamedSet("Mode/SelectedEntry", BytesOfText("Continuous")));
    EXPECT_EQ(item_.Requests(), expected);
    EXPECT_EQ(item_->SetValue(mode_, 0), S_OK);
    EXPECT_EQ(item_.Requests(), std::vector{NamedSet("Mode/SelectedEntry", BytesOfText("Once"))});
}

TEST_F(NamedItem, RefusesAnIndexOutsideTheList) {
    LoadEntries({"Once", "Continuous"});
    for (const std::int32_t index :
         {-1, 2, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
        EXPECT_EQ(item_->SetValue(mode_, index), static_cast<HRESULT>(0x80070057)) << index;
    }
    EXPECT_TRUE(item_.Requests().empty());
    OfferEntries({});
    item_->Refresh(mode_);
    EXPECT_EQ(item_->SetValue(mode_, 0), static_cast<HRESULT>(0x80070057));
}

TEST_F(NamedItem, ReadsThePhysicalRange) {
    camera_.Answer("Real/Min", -1.5);
    camera_.Answer("Real/Max", 9.25);
    camera_.Answer("Real/Default", 3.0);
    AbsRangeInfo range = {7, 8, 9};
    EXPECT_EQ(item_->GetAbsRange(real_, range), S_OK);
    EXPECT_EQ(BytesOf(range), BytesOf(AbsRangeInfo{-1.5, 9.25, 3.0}));
    EXPECT_EQ(item_.Requests(),
              (std::vector{NamedGet("Real/Min", BytesOf(7.0)), NamedGet("Real/Max", BytesOf(8.0)),
                           NamedGet("Real/Default", BytesOf(9.0))}));
}

TEST_F(NamedItem, FallsBackToHalfTheSpan) {
    camera_.Answer("Real/Min", 10.0);
    camera_.Answer("Real/Max", 21.0);
    AbsRangeInfo range;
    EXPECT_EQ(item_->GetAbsRange(real_, range), S_OK);
    EXPECT_EQ(range.default_value, 5.5) << "the minimum is not added";
}

TEST_F(NamedItem, FailsWithoutAPhysicalLimit) {
    AbsRangeInfo range;
    EXPECT_EQ(item_->GetAbsRange(real_, range), refused);
    EXPECT_EQ(item_.Requests(), std::vector{NamedGet("Real/Min")});
    camera_.Answer("Real/Min", 1.0);
    EXPECT_EQ(item_->GetAbsRange(real_, range), refused);
    EXPECT_EQ(item_.Requests(), (std::vector{NamedGet("Real/Min"), NamedGet("Real/Max")}));
}

TEST_F(NamedItem, ReadsAPhysicalValueIntoZeros) {
    camera_.Answer("Real/Value", -2.75);
    double value = 5;
    EXPECT_EQ(item_->GetAbsValue(real_, value), S_OK);
    EXPECT_EQ(value, -2.75);
    EXPECT_EQ(item_.Requests(), std::vector{NamedGet("Real/Value")});
    camera_.named.erase("Real/Value");
    EXPECT_EQ(item_->GetAbsValue(real_, value), refused);
    EXPECT_EQ(value, 0.0);
}

TEST_F(NamedItem, WritesTheBytesOfAPhysicalValue) {
    EXPECT_EQ(item_->SetAbsValue(real_, 0.1), S_OK);
    EXPECT_EQ(item_.Requests(), std::vector{NamedSet("Real/Value", BytesOf(0.1))});
}

TEST_F(NamedItem, TakesTheUnitFromTheNode) {
    SharedString unit;
    std::int32_t scale = 5;
    EXPECT_EQ(item_->GetAbsUnit(real_, unit, scale), S_OK);
    EXPECT_EQ(unit.View(), L"\u00B5s");
    EXPECT_EQ(scale, 0) << "whatever the representation";
    EXPECT_EQ(item_->GetAbsUnit(num_, unit, scale), S_OK);
    EXPECT_EQ(unit.View(), L"px\u00B2");
    EXPECT_TRUE(item_.Requests().empty());
}

TEST_F(NamedItem, HasNoUnitForOtherKinds) {
    SharedString unit;
    std::int32_t scale = 5;
    for (const InterfaceKey key : {flag_, go_, mode_})
        EXPECT_EQ(item_->GetAbsUnit(key, unit, scale), E_NOTIMPL);
    EXPECT_EQ(scale, 5);
}

TEST_F(NamedItem, PushesAButton) {
    EXPECT_EQ(item_->Push(go_), S_OK);
    EXPECT_EQ(item_.Requests(), std::vector{NamedSet("Go/Execute", {1, 0, 0, 0, 0, 0, 0, 0})});
}

TEST_F(NamedItem, AppendsTheTextsOfOfferedEntries) {
    OfferEntries({"Off", "Once"});
    std::vector<SharedString> strings = {SharedString(L"before")};
    EXPECT_EQ(item_->GetMapStrings(mode_, strings), S_OK);
    EXPECT_EQ(TextsOf(strings), (std::vector<std::wstring>{L"before", L"Off", L"Einmal \u00E4"}));
    EXPECT_EQ(item_.Requests(), entry_requests);
    EXPECT_EQ(item_->GetMapStrings(mode_, strings), S_OK);
    EXPECT_EQ(strings.size(), 5U);
    EXPECT_TRUE(item_.Requests().empty());
}

TEST_F(NamedItem, HasNoTextsForOtherKinds) {
    std::vector<SharedString> strings;
    for (const InterfaceKey key : {num_, real_, flag_, go_})
        EXPECT_EQ(item_->GetMapStrings(key, strings), E_NOTIMPL);
    EXPECT_TRUE(strings.empty());
}

TEST_F(NamedItem, KeepsTheListsOfItsEnumerationsApart) {
    OneItem two(AccessPath::Named,
                "<Enumeration Name=\"E\">" + ElementMark() +
                    "<EnumEntry Name=\"A\"><Value>1</Value></EnumEntry>"
                    "<Value>1</Value></Enumeration><Enumeration Name=\"F\">" +
                    ElementMark() +
                    "<EnumEntry Name=\"A\"><Value>1</Value></EnumEntry><EnumEntry "
                    "Name=\"B\"><Value>1</Value></EnumEntry>"
                    "<Value>1</Value></Enumeration>",
                {"E", "F"});
    for (const std::string path : {"E/A", "F/A", "F/B"})
        two.camera.Answer(path + "/IsImplemented", std::uint64_t{1});
    RangeInfo range;
    EXPECT_EQ(two->GetRange(two.Key("E"), range), S_OK);
    EXPECT_EQ(range.max, 0);
    EXPECT_EQ(two->GetRange(two.Key("F"), range), S_OK);
    EXPECT_EQ(range.max, 1);
    (void)two.Requests();
    two->Refresh(two.Key("E"));
    EXPECT_EQ(two.Requests(), std::vector{NamedGet("E/A/IsImplemented")});
}

TEST(DescribedItem, IsNotSerializedWithTheExtensionKey) {
    const auto node = [](const std::string& name, const std::string& extension) {
        return "<Integer Name=\"" + name +
               "\"><Extension><ZELElementGUID>{00000000-0000-0000-0000-000000000001}"
               "</ZELElementGUID>" +
               extension + "</Extension><Value>1</Value></Integer>";
    };
    const std::string nodes = node("No", "") + node("Empty", "<DoNotSerialize/>") +
                              node("Zero", "<DoNotSerialize>0</DoNotSerialize>") +
                              node("Yes", "<DoNotSerialize>Yes</DoNotSerialize>");
    for (const AccessPath access_path : {AccessPath::Named, AccessPath::Registers}) {
        OneItem item(access_path, nodes, {"No", "Empty", "Zero", "Yes"});
        EXPECT_FALSE(item->IsDoNotSerialize(item.Key("No")));
        EXPECT_FALSE(item->IsDoNotSerialize(item.Key("Empty")));
        EXPECT_TRUE(item->IsDoNotSerialize(item.Key("Zero")));
        EXPECT_TRUE(item->IsDoNotSerialize(item.Key("Yes")));
        EXPECT_TRUE(item.Requests().empty());
    }
}

TEST_F(NamedItem, LeavesTheRestToTheBase) {
    EXPECT_EQ(item_->Reserved1(num_), E_NOTIMPL);
    EXPECT_EQ(item_->Reserved2(num_), E_NOTIMPL);
    EXPECT_EQ(item_->Reserved3(num_), E_NOTIMPL);
    EXPECT_EQ(item_->Closing1(num_), 1);
    EXPECT_EQ(item_->Closing2(num_), 1);
}

TEST_F(NamedItem, PassesEveryResultOfTheDriverOn) {
    LoadEntries({"Off"});
    for (const HRESULT hr : {E_FAIL, E_NOTIMPL, E_ACCESSDENIED, device_is_lost, buffer_is_small}) {
        EveryGetGives(hr);
        camera_.filter
            .Property({0x9DDD5EDC, 0x5EFF, 0x4D3B, {0xB8, 0x5B, 0x46, 0xFB, 0xC4, 0xE4, 0x9E, 0x59}}, 4)
            .set = [=](const Bytes&, const Bytes&) { return hr; };
        bool flag = false;
        std::int32_t number = 0;
        double real = 0;
        RangeInfo range;
        AbsRangeInfo abs_range;
        EXPECT_EQ(item_->IsAvailable(num_, flag), hr);
        EXPECT_EQ(item_->GetSwitch(flag_, flag), hr);
        EXPECT_EQ(item_->SetSwitch(flag_, true), hr);
        EXPECT_EQ(item_->GetSwitchDefault(flag_, flag), hr);
        EXPECT_EQ(item_->GetRange(num_, range), hr);
        EXPECT_EQ(item_->GetValue(num_, number), hr);
        EXPECT_EQ(item_->GetValue(mode_, number), hr);
        EXPECT_EQ(item_->SetValue(num_, 1), hr);
        EXPECT_EQ(item_->SetValue(mode_, 0), hr);
        EXPECT_EQ(item_->GetAbsRange(real_, abs_range), hr);
        EXPECT_EQ(item_->GetAbsValue(real_, real), hr);
        EXPECT_EQ(item_->SetAbsValue(real_, 1), hr);
        EXPECT_EQ(item_->Push(go_), hr);
    }
}

TEST_F(NamedItem, KeepsTheLocalValuesOutOfIt) {
    for (const std::string& feature : features) EXPECT_EQ(item_.camera.named.count(feature + "/Value"), 0U);
    EXPECT_EQ(item_->SetValue(num_, 71), S_OK);
    EXPECT_EQ(item_->SetAbsValue(real_, 1000), S_OK) << "no local range check";
    auto* const num = genicam_adapter::node_as<GenICam::IInteger>(num_);
    EXPECT_EQ(num->get_val(0).value(), 77) << "the local node hears of nothing";
}

// What one element asks of the driver in the life of its control.
TEST_F(NamedItem, RefreshCostsTwoCallsAnElement) {
    LoadEntries({"Off", "Once"});
    camera_.other_paths = [](std::string_view, Bytes& answer) {
        answer = BytesOf(std::uint64_t{0});
        return true;
    };
    bool flag = false;
    std::int32_t number = 0;
    for (const InterfaceKey key : {num_, real_, flag_, go_, mode_}) {
        EXPECT_EQ(item_->IsAvailable(key, flag), S_OK);
        EXPECT_EQ(item_->IsReadOnly(key, flag), S_OK);
        const std::string name(genicam_adapter::node_of(key)->get_name());
        EXPECT_EQ(item_.Requests(), std::vector{NamedGet(name + "/IsLocked")});
    }
    EXPECT_EQ(item_->GetValue(num_, number), S_OK);
    EXPECT_EQ(item_.Requests().size(), 1U);
    EXPECT_EQ(item_->GetValue(mode_, number), E_FAIL);
    EXPECT_EQ(item_.Requests().size(), 1U);
}

}  // namespace
}  // namespace adapter_test
