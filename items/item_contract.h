#pragma once

#include "items/unknown.h"
#include "platform/com_ptr.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ZELAdapterHelper {

/// What an element is reached by; handed to every operation of its item. A small number or a driver property
/// for built-in items, the address of the node for items of a description.
using InterfaceKey = std::uint64_t;

/// Ordered from poor to rich: a page shows an element by the richest type that its item supports.
enum class InterfaceType : std::uint32_t {
    Switch = 0,
    Range = 1,
    Button = 2,
    MapStrings = 3,
    AbsoluteValue = 4
};

struct RangeInfo {
    std::int32_t min = 0;
    std::int32_t max = 0;
    std::int32_t default_value = 0;
    std::int32_t step = 0;
};
static_assert(sizeof(RangeInfo) == 16);

/// Limits in physical units.
struct AbsRangeInfo {
    double min = 0;
    double max = 0;
    double default_value = 0;
};
static_assert(sizeof(AbsRangeInfo) == 24);

/// Scale of an absolute value, as `GetAbsUnit` gives it.
constexpr std::int32_t scale_linear = 0;
constexpr std::int32_t scale_logarithmic = 1;

/// A wide string shared between item and caller; its last holder frees it.
class SharedString {
public:
    SharedString() = default;
    explicit SharedString(std::wstring text) : text_(std::make_shared<const std::wstring>(std::move(text))) {}
    [[nodiscard]] std::wstring_view View() const noexcept {
        return text_ ? std::wstring_view(*text_) : std::wstring_view();
    }

private:
    std::shared_ptr<const std::wstring> text_;
};

/// An item of a camera: elements behind keys. Used on the page's thread only; holds no model, each operation
/// asks the device. A key that a class does not know gives E_NOTIMPL. A failed getter leaves its out value
/// alone unless its class says otherwise.
class CZELItemDataBase : public CUnknown {
public:
    /// Starts with one reference, which belongs to whoever makes the item.
    explicit CZELItemDataBase(IUnknown* outer = nullptr);

    /// The zero id answers S_OK and writes nothing.
    HRESULT NonDelegatingQueryInterface(REFIID iid, void** out) override;

    /// Whether the device has what this interface needs.
    [[nodiscard]] virtual bool SupportsInterface(InterfaceKey key) = 0;
    /// Forgets cached device state.
    virtual HRESULT Refresh(InterfaceKey key);
    [[nodiscard]] virtual HRESULT IsAvailable(InterfaceKey key, bool& available);
    [[nodiscard]] virtual HRESULT IsReadOnly(InterfaceKey key, bool& read_only);
    [[nodiscard]] virtual HRESULT GetSwitch(InterfaceKey key, bool& on);
    virtual HRESULT SetSwitch(InterfaceKey key, bool on);
    [[nodiscard]] virtual HRESULT GetSwitchDefault(InterfaceKey key, bool& on);
    [[nodiscard]] virtual HRESULT GetRange(InterfaceKey key, RangeInfo& range);
    /// For map strings the index of the selected string.
    [[nodiscard]] virtual HRESULT GetValue(InterfaceKey key, std::int32_t& value);
    virtual HRESULT SetValue(InterfaceKey key, std::int32_t value);
    [[nodiscard]] virtual HRESULT GetAbsRange(InterfaceKey key, AbsRangeInfo& range);
    [[nodiscard]] virtual HRESULT GetAbsValue(InterfaceKey key, double& value);
    virtual HRESULT SetAbsValue(InterfaceKey key, double value);
    /// `scale` is left as it stands where the class has nothing to say of it.
    [[nodiscard]] virtual HRESULT GetAbsUnit(InterfaceKey key, SharedString& unit, std::int32_t& scale);
    /// Performs a button.
    virtual HRESULT Push(InterfaceKey key);
    /// Appends the texts of a combo box in index order.
    [[nodiscard]] virtual HRESULT GetMapStrings(InterfaceKey key, std::vector<SharedString>& strings);
    // Three places that no class gives a meaning; they keep the later ones where they are.
    virtual HRESULT Reserved1(InterfaceKey key);
    virtual HRESULT Reserved2(InterfaceKey key);
    virtual HRESULT Reserved3(InterfaceKey key);
    /// Whether the element is left out when settings are saved.
    [[nodiscard]] virtual bool IsDoNotSerialize(InterfaceKey key);
    // Two places that answer 1 in every class.
    virtual HRESULT Closing1(InterfaceKey key);
    virtual HRESULT Closing2(InterfaceKey key);
};

struct ItemRecord;

/// Stores a new item, with a reference for the caller, or null where the device lacks what the item needs.
using ItemFactory = void (*)(CZELItemDataBase** result, IUnknown* filter, const ItemRecord& record);

struct InterfaceEntry {
    InterfaceKey key;
    InterfaceType type;
};

struct ElementRecord {
    GUID id;
    const wchar_t* name;
    const InterfaceEntry* interfaces;  ///< used when there are 2 or more
    std::uint32_t interface_count;
    InterfaceEntry inline_interface;  ///< used when there are fewer than 2
    std::int32_t level;               ///< shown on pages only below 1
    GUID linked[2];  ///< an element that stands just before with one of these ids shares its row
};

struct ItemRecord {
    const wchar_t* group;    ///< null counts as "Exposure"
    std::uint32_t priority;  ///< among records of one id, larger first
    GUID id;
    const wchar_t* name;  ///< a record without a name is ignored
    ItemFactory factory;
    const ElementRecord* elements;  ///< used when the count is not 1
    std::uint32_t element_count;
    ElementRecord inline_element;  ///< used when the count is 1
};

/// A view of consecutive records.
template <class Record>
struct RecordSpan {
    const Record* first = nullptr;
    std::size_t count = 0;
    [[nodiscard]] const Record* begin() const noexcept { return first; }
    [[nodiscard]] const Record* end() const noexcept { return first + count; }
};

/// The elements of an item, wherever they are stored.
[[nodiscard]] RecordSpan<ElementRecord> ElementsOf(const ItemRecord& record) noexcept;
/// The interfaces of an element, wherever they are stored.
[[nodiscard]] RecordSpan<InterfaceEntry> InterfacesOf(const ElementRecord& record) noexcept;

/// The built-in items, in the order in which pages collect them.
[[nodiscard]] RecordSpan<ItemRecord> StaticItemTable() noexcept;

// Ids with a meaning for the page layout and the controllers.
constexpr GUID element_value = {0xB57D3000, 0x0AC6, 0x4819, {0xA6, 0x09, 0x27, 0x2A, 0x33, 0x14, 0x0A, 0xCA}};
constexpr GUID element_automatic = {
    0xB57D3001, 0x0AC6, 0x4819, {0xA6, 0x09, 0x27, 0x2A, 0x33, 0x14, 0x0A, 0xCA}};
constexpr GUID element_one_push = {
    0xB57D3002, 0x0AC6, 0x4819, {0xA6, 0x09, 0x27, 0x2A, 0x33, 0x14, 0x0A, 0xCA}};
constexpr GUID element_white_balance_blue = {
    0x6519038A, 0x1AD8, 0x4E91, {0x90, 0x21, 0x66, 0xD6, 0x40, 0x90, 0xCC, 0x85}};
constexpr GUID item_exposure = {0x90D5702E, 0xE43B, 0x4366, {0xAA, 0xEB, 0x7A, 0x7A, 0x10, 0xB4, 0x48, 0xB4}};
constexpr GUID item_white_balance = {
    0x284C0E0D, 0x010B, 0x45BF, {0x82, 0x91, 0x09, 0xD9, 0x0A, 0x45, 0x9B, 0x28}};

}  // namespace ZELAdapterHelper
