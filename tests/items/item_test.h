#pragma once

#include "items/builtin_factories.h"
#include "items/item_contract.h"
#include "tests/support/not_empty.h"
#include "tests/support/scripted_property_set.h"
#include "wire/vendor_set.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace item_tests {

using test_support::Bytes;
using test_support::DriverRequest;
using test_support::NotEmpty;
using test_support::ScriptedControl;
using test_support::ScriptedFilter;
using test_support::ScriptedProperty;
using Requests = std::vector<DriverRequest>;
using Item = platform::com_ptr<ZELAdapterHelper::CZELItemDataBase>;
using ZELAdapterHelper::AbsRangeInfo;
using ZELAdapterHelper::InterfaceKey;
using ZELAdapterHelper::RangeInfo;
using ZELAdapterHelper::SharedString;

constexpr HRESULT driver_failure = static_cast<HRESULT>(0x8007001F);
constexpr HRESULT driver_refusal = static_cast<HRESULT>(0x80070005);

/// A GUID from its braced text.
GUID Guid(const wchar_t* text);
const GUID& VendorSet();

/// A block of zero bytes into which fields are put.
class Block {
public:
    explicit Block(std::size_t size) : bytes_(size) {}
    template <class T>
    Block& Put(std::size_t offset, T value) {
        const auto* raw = reinterpret_cast<const std::uint8_t*>(&value);
        for (std::size_t at = 0; at < sizeof(T); ++at) {
            bytes_.at(offset + at) = raw[at];
        }
        return *this;
    }
    operator const Bytes&() const { return bytes_; }

private:
    Bytes bytes_;
};

/// The fields of an integer property's record, in their order from offset 24.
Bytes IntRecord(std::int32_t value, std::uint32_t flags = 0, std::uint32_t capabilities = 0,
                std::int32_t min = 0, std::int32_t max = 0, std::int32_t default_value = 0);
/// The fields of a float property's record, in their order from offset 24.
Bytes FloatRecord(float value, float min = 0, float max = 0, float default_value = 0, std::uint32_t flags = 0,
                  std::uint32_t capabilities = 0);

/// The requests that an item sends, with one block as instance and data.
DriverRequest Get(REFGUID set, std::uint32_t id, std::size_t size);
DriverRequest Set(REFGUID set, std::uint32_t id, const Bytes& record);
DriverRequest Query(REFGUID set, std::uint32_t id);
DriverRequest Control(DriverRequest::Kind kind, std::uint32_t property, std::int32_t value = 0,
                      std::int32_t flags = 0);
/// The same on the vendor property set; an integer record is 48 bytes, a float record 56.
DriverRequest GetInt(std::uint32_t id);
DriverRequest GetFloat(std::uint32_t id);
DriverRequest SetVendor(std::uint32_t id, const Bytes& record);
DriverRequest QueryVendor(std::uint32_t id);

/// Operations of an item that a class may leave out, as bits.
enum Operation : unsigned {
    op_none = 0,
    op_get_switch = 1U << 0,
    op_set_switch = 1U << 1,
    op_switch_default = 1U << 2,
    op_get_range = 1U << 3,
    op_get_value = 1U << 4,
    op_set_value = 1U << 5,
    op_get_abs_range = 1U << 6,
    op_get_abs_value = 1U << 7,
    op_set_abs_value = 1U << 8,
    op_abs_unit = 1U << 9,
    op_push = 1U << 10,
    op_map_strings = 1U << 11,
};
constexpr unsigned op_switch = op_get_switch | op_set_switch;
constexpr unsigned op_value = op_get_value | op_set_value;
constexpr unsigned op_range = op_get_range | op_value;
constexpr unsigned op_abs = op_get_abs_range | op_get_abs_value | op_set_abs_value;

/// An operation that fails, and leaves its out value alone.
struct FailingOperation {
    Operation operation;
    InterfaceKey key;
    HRESULT result;
};
void ExpectFailures(ZELAdapterHelper::CZELItemDataBase& item,
                    const std::vector<FailingOperation>& operations);

/// Every operation that is not among `implemented` answers E_NOTIMPL and leaves its out value alone.
void ExpectOnly(ZELAdapterHelper::CZELItemDataBase& item, InterfaceKey key, unsigned implemented);

std::vector<std::wstring> TextsOf(const std::vector<SharedString>& strings);

/// A driver to script, and a look at what its items leave behind.
class ItemTest : public ::testing::Test {
protected:
    ItemTest();
    ~ItemTest() override;

    /// The item, null where the factory declines; the requests of the making are dropped.
    Item Make(ZELAdapterHelper::ItemFactory factory);
    /// It makes its item wherever the filter has the property set, and asks for nothing then; none of the
    /// keys is supported.
    void ExpectNeedsNoProperty(ZELAdapterHelper::ItemFactory factory,
                               std::initializer_list<InterfaceKey> keys);
    ScriptedProperty& Vendor(std::uint32_t id) { return driver.Property(VendorSet(), id); }

    // Operations with their results checked, for values that must come.
    static bool Switch(const Item& item, InterfaceKey key);
    static bool Available(const Item& item, InterfaceKey key);
    static RangeInfo Range(const Item& item, InterfaceKey key);
    static std::int32_t Value(const Item& item, InterfaceKey key);
    static AbsRangeInfo AbsRange(const Item& item, InterfaceKey key);
    static double AbsValue(const Item& item, InterfaceKey key);

    /// What the driver was asked since the last look.
    Requests Asked() { return driver.TakeRequests(); }

    ScriptedFilter driver;

private:
    std::int32_t live_objects_before_;
};

}  // namespace item_tests

namespace ZELAdapterHelper {

inline bool operator==(const RangeInfo& left, const RangeInfo& right) {
    return left.min == right.min && left.max == right.max && left.default_value == right.default_value &&
           left.step == right.step;
}

inline void PrintTo(const RangeInfo& range, std::ostream* out) {
    *out << '{' << range.min << ", " << range.max << ", " << range.default_value << ", " << range.step << '}';
}

inline bool operator==(const AbsRangeInfo& left, const AbsRangeInfo& right) {
    return left.min == right.min && left.max == right.max && left.default_value == right.default_value;
}

inline void PrintTo(const AbsRangeInfo& range, std::ostream* out) {
    *out << '{' << range.min << ", " << range.max << ", " << range.default_value << '}';
}

}  // namespace ZELAdapterHelper
