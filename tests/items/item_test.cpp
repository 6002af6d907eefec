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

void ExpectFailingSwitch(CZELItemDataBase& item, const FailingOperation& failing) {
    for (const bool before : {false, true}) {
        bool on = before;
        if (failing.operation == op_get_switch) {
            EXPECT_EQ(item.GetSwitch(failing.key, on), failing.result);
        } else if (failing.operation == op_switch_default) {
            EXPECT_EQ(item.GetSwitchDefault(failing.key, on), failing.result);
        } else {
            EXPECT_EQ(item.SetSwitch(failing.key, before), failing.result);
        }
        EXPECT_EQ(on, before);
    }
}

// Everything but switches; out values begin as what no driver gives.
HRESULT CarryOut(CZELItemDataBase& item, const FailingOperation& failing) {
    const RangeInfo untouched_range{-7, -8, -9, -10};
    const AbsRangeInfo untouched_abs_range{-7, -8, -9};
    RangeInfo range = untouched_range;
    AbsRangeInfo abs_range = untouched_abs_range;
    std::int32_t number = -11;
    double abs_value = -11;
    SharedString unit(L"as it was");
    std::vector<SharedString> strings;
    const HRESULT result = [&] {
        switch (failing.operation) {
            case op_get_range:
                return item.GetRange(failing.key, range);
            case op_get_value:
                return item.GetValue(failing.key, number);
            case op_set_value:
                return item.SetValue(failing.key, 1);
            case op_get_abs_range:
                return item.GetAbsRange(failing.key, abs_range);
            case op_get_abs_value:
                return item.GetAbsValue(failing.key, abs_value);
            case op_set_abs_value:
                return item.SetAbsValue(failing.key, 1.0);
            case op_abs_unit:
                return item.GetAbsUnit(failing.key, unit, number);
            case op_map_strings:
                return item.GetMapStrings(failing.key, strings);
            default:
                return item.Push(failing.key);
        }
    }();
    EXPECT_EQ(range, untouched_range);
    EXPECT_EQ(abs_range, untouched_abs_range);
    EXPECT_EQ(number, -11);
    EXPECT_EQ(abs_value, -11);
    EXPECT_EQ(unit.View(), L"as it was");
    EXPECT_TRUE(strings.empty());
    return result;
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

void ExpectFailures(CZELItemDataBase& item, const std::vector<FailingOperation>& operations) {
    for (const FailingOperation& failing : NotEmpty(operations)) {
        SCOPED_TRACE(testing::Message() << "operation " << failing.operation << " of key " << failing.key);
        const bool is_switch = (failing.operation & (op_switch | op_switch_default)) != 0;
        if (is_switch) {
            ExpectFailingSwitch(item, failing);
        } else {
            EXPECT_EQ(CarryOut(item, failing), failing.result);
        }
    }
}

void ExpectOnly(CZELItemDataBase& item, InterfaceKey key, unsigned implemented) {
    std::vector<FailingOperation> missing;
    for (unsigned operation = 1; operation <= op_map_strings; operation <<= 1) {
        if ((implemented & operation) == 0)
            missing.push_back({static_cast<Operation>(operation), key, E_NOTIMPL});
    }
    ExpectFailures(item, missing);
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
