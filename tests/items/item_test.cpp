#include "tests/items/item_test.h"

#include "platform/text.h"

namespace item_tests {
namespace {

using Kind = DriverRequest::Kind;
using ZELAdapterHelper::CZELItemDataBase;

DriverRequest Request(Kind kind, REFGUID set, std::uint32_t id) {
    DriverRequest request;
    request.kind = kind;
    request.set = set;
    request.id = id;
    return request;
}

DriverRequest WithBlock(DriverRequest request, const Bytes& block) {
    request.instance = block;
    request.data = block;
    request.shared_memory = true;
    return request;
}

void ExpectNoSwitch(CZELItemDataBase& item, InterfaceKey key, unsigned implemented) {
    for (const bool before : {false, true}) {
        bool on = before;
        if ((implemented & op_get_switch) == 0) {
            EXPECT_EQ(item.GetSwitch(key, on), E_NOTIMPL);
        }
        if ((implemented & op_switch_default) == 0) {
            EXPECT_EQ(item.GetSwitchDefault(key, on), E_NOTIMPL);
        }
        EXPECT_EQ(on, before);
        if ((implemented & op_set_switch) == 0) {
            EXPECT_EQ(item.SetSwitch(key, before), E_NOTIMPL);
        }
    }
}

void ExpectNoRange(CZELItemDataBase& item, InterfaceKey key, unsigned implemented) {
    const RangeInfo untouched{-7, -8, -9, -10};
    RangeInfo range = untouched;
    std::int32_t value = -11;
    if ((implemented & op_get_range) == 0) {
        EXPECT_EQ(item.GetRange(key, range), E_NOTIMPL);
    }
    if ((implemented & op_get_value) == 0) {
        EXPECT_EQ(item.GetValue(key, value), E_NOTIMPL);
    }
    if ((implemented & op_set_value) == 0) {
        EXPECT_EQ(item.SetValue(key, 1), E_NOTIMPL);
    }
    EXPECT_EQ(range, untouched);
    EXPECT_EQ(value, -11);
}

void ExpectNoAbs(CZELItemDataBase& item, InterfaceKey key, unsigned implemented) {
    const AbsRangeInfo untouched{-7, -8, -9};
    AbsRangeInfo range = untouched;
    double value = -11;
    if ((implemented & op_get_abs_range) == 0) {
        EXPECT_EQ(item.GetAbsRange(key, range), E_NOTIMPL);
    }
    if ((implemented & op_get_abs_value) == 0) {
        EXPECT_EQ(item.GetAbsValue(key, value), E_NOTIMPL);
    }
    if ((implemented & op_set_abs_value) == 0) {
        EXPECT_EQ(item.SetAbsValue(key, 1.0), E_NOTIMPL);
    }
    EXPECT_EQ(range, untouched);
    EXPECT_EQ(value, -11);
}

void ExpectNoTexts(CZELItemDataBase& item, InterfaceKey key, unsigned implemented) {
    SharedString unit(L"as it was");
    std::int32_t scale = -12;
    if ((implemented & op_abs_unit) == 0) {
        EXPECT_EQ(item.GetAbsUnit(key, unit, scale), E_NOTIMPL);
        EXPECT_EQ(unit.View(), L"as it was");
        EXPECT_EQ(scale, -12);
    }
    std::vector<SharedString> strings;
    if ((implemented & op_map_strings) == 0) {
        EXPECT_EQ(item.GetMapStrings(key, strings), E_NOTIMPL);
        EXPECT_TRUE(strings.empty());
    }
    if ((implemented & op_push) == 0) {
        EXPECT_EQ(item.Push(key), E_NOTIMPL);
    }
}

}  // namespace

GUID Guid(const wchar_t* text) {
    GUID guid{};
    EXPECT_TRUE(platform::parse_guid(text, guid));
    return guid;
}

const GUID& VendorSet() {
    static const GUID set = Guid(L"{515E97D1-C453-4772-A489-CC070A5A2442}");
    return set;
}

Bytes IntRecord(std::int32_t value, std::uint32_t flags, std::uint32_t capabilities, std::int32_t min,
                std::int32_t max, std::int32_t default_value) {
    return Block(48)
        .Put(24, value)
        .Put(28, flags)
        .Put(32, capabilities)
        .Put(36, min)
        .Put(40, max)
        .Put(44, default_value);
}

Bytes FloatRecord(float value, float min, float max, float default_value, std::uint32_t flags,
                  std::uint32_t capabilities) {
    return Block(56)
        .Put(24, value)
        .Put(28, min)
        .Put(32, max)
        .Put(36, default_value)
        .Put(40, flags)
        .Put(44, capabilities);
}

DriverRequest Get(REFGUID set, std::uint32_t id, std::size_t size) {
    return WithBlock(Request(Kind::get, set, id), Bytes(size));
}

DriverRequest Set(REFGUID set, std::uint32_t id, const Bytes& record) {
    return WithBlock(Request(Kind::set, set, id), record);
}

DriverRequest Query(REFGUID set, std::uint32_t id) { return Request(Kind::query_supported, set, id); }

DriverRequest Control(Kind kind, std::uint32_t property, std::int32_t value, std::int32_t flags) {
    DriverRequest request;
    request.kind = kind;
    request.id = property;
    request.value = value;
    request.flags = flags;
    return request;
}

DriverRequest GetInt(std::uint32_t id) { return Get(VendorSet(), id, 48); }

DriverRequest GetFloat(std::uint32_t id) { return Get(VendorSet(), id, 56); }

DriverRequest SetVendor(std::uint32_t id, const Bytes& record) { return Set(VendorSet(), id, record); }

DriverRequest QueryVendor(std::uint32_t id) { return Query(VendorSet(), id); }

void ExpectOnly(CZELItemDataBase& item, InterfaceKey key, unsigned implemented) {
    SCOPED_TRACE(key);
    ExpectNoSwitch(item, key, implemented);
    ExpectNoRange(item, key, implemented);
    ExpectNoAbs(item, key, implemented);
    ExpectNoTexts(item, key, implemented);
}

std::vector<std::wstring> TextsOf(const std::vector<SharedString>& strings) {
    std::vector<std::wstring> texts;
    for (const SharedString& string : strings) {
        texts.emplace_back(string.View());
    }
    return texts;
}

ItemTest::ItemTest() : live_objects_before_(ZELAdapterHelper::CUnknown::LiveObjects()) {}

ItemTest::~ItemTest() {
    EXPECT_EQ(ZELAdapterHelper::CUnknown::LiveObjects(), live_objects_before_);
    EXPECT_EQ(driver.OutstandingReferences(), 0);
}

void ItemTest::ExpectNeedsNoProperty(ZELAdapterHelper::ItemFactory factory,
                                     std::initializer_list<InterfaceKey> keys) {
    CZELItemDataBase* made = nullptr;
    factory(&made, &driver, *ZELAdapterHelper::StaticItemTable().begin());
    {
        const Item item = Item::attach(made);
        ASSERT_TRUE(item);
        EXPECT_TRUE(Asked().empty());
        for (const InterfaceKey key : keys) {
            EXPECT_FALSE(item->SupportsInterface(key)) << key;
        }
    }
    driver.has_property_set = false;
    EXPECT_FALSE(Make(factory));
}

Item ItemTest::Make(ZELAdapterHelper::ItemFactory factory) {
    CZELItemDataBase* made = nullptr;
    factory(&made, &driver, *ZELAdapterHelper::StaticItemTable().begin());
    (void)Asked();
    return Item::attach(made);
}

bool ItemTest::Switch(const Item& item, InterfaceKey key) {
    bool on = false;
    EXPECT_EQ(item->GetSwitch(key, on), S_OK);
    return on;
}

bool ItemTest::Available(const Item& item, InterfaceKey key) {
    bool available = false;
    EXPECT_EQ(item->IsAvailable(key, available), S_OK);
    return available;
}

RangeInfo ItemTest::Range(const Item& item, InterfaceKey key) {
    RangeInfo range;
    EXPECT_EQ(item->GetRange(key, range), S_OK);
    return range;
}

std::int32_t ItemTest::Value(const Item& item, InterfaceKey key) {
    std::int32_t value = -999;
    EXPECT_EQ(item->GetValue(key, value), S_OK);
    return value;
}

AbsRangeInfo ItemTest::AbsRange(const Item& item, InterfaceKey key) {
    AbsRangeInfo range;
    EXPECT_EQ(item->GetAbsRange(key, range), S_OK);
    return range;
}

double ItemTest::AbsValue(const Item& item, InterfaceKey key) {
    double value = -999;
    EXPECT_EQ(item->GetAbsValue(key, value), S_OK);
    return value;
}

}  // namespace item_tests
