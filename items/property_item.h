#pragma once

#include "items/standard_controls.h"

#include <cstdint>

namespace ZELAdapterHelper {

/// How a value is reached.
enum class PropertySource : std::uint8_t {
    Integer,        ///< integer record of the vendor set
    Float,          ///< float record of the vendor set
    CameraControl,  ///< IAMCameraControl
    VideoProcAmp,   ///< IAMVideoProcAmp
};

struct PropertyAddress {
    PropertySource source;
    std::uint16_t property;
};

constexpr PropertyAddress Vendor(selvane_vendor_property property) noexcept {
    return {PropertySource::Integer, static_cast<std::uint16_t>(property)};
}
constexpr PropertyAddress VendorFloat(selvane_vendor_property property) noexcept {
    return {PropertySource::Float, static_cast<std::uint16_t>(property)};
}
constexpr PropertyAddress OnCamera(LONG property) noexcept {
    return {PropertySource::CameraControl, static_cast<std::uint16_t>(property)};
}
constexpr PropertyAddress OnProcAmp(LONG property) noexcept {
    return {PropertySource::VideoProcAmp, static_cast<std::uint16_t>(property)};
}

/// What a device must have for a key to be supported.
enum class Need : std::uint8_t {
    Property,          ///< the driver supports it
    ReadableProperty,  ///< and it can be read
    ControlRange,      ///< the control tells a range
    ManualMode,        ///< the control has the mode
    AutomaticMode,
    Nothing,
};

/// What a switch of the item says of the elements that it governs: see the functions of these names.
enum class Available : std::uint8_t { Always, UnlessOn, WhileOn, UnlessKnownOn, WhileKnownOn };

/// What a key of an item stands for. The operations of its type work on its property; the others are not
/// there.
struct PropertyRow {
    constexpr PropertyRow(InterfaceKey its_key, InterfaceType its_type, PropertyAddress its_address) noexcept
        : key(static_cast<std::uint16_t>(its_key)),
          type(static_cast<std::uint8_t>(its_type)),
          address(its_address),
          needed(its_address) {}

    [[nodiscard]] constexpr PropertyRow Needs(Need what) const noexcept { return Needs(what, address); }
    [[nodiscard]] constexpr PropertyRow Needs(Need what, PropertyAddress where) const noexcept {
        PropertyRow row = *this;
        row.need = what;
        row.needed = where;
        return row;
    }
    [[nodiscard]] constexpr PropertyRow Is(Available when, InterfaceKey switch_key) const noexcept {
        PropertyRow row = *this;
        row.available = when;
        row.governor = static_cast<std::uint16_t>(switch_key);
        return row;
    }
    [[nodiscard]] constexpr PropertyRow Ticks(std::int32_t per_unit) const noexcept {
        PropertyRow row = *this;
        row.ticks_per_unit = per_unit;
        return row;
    }
    [[nodiscard]] constexpr PropertyRow Logarithmic() const noexcept {
        PropertyRow row = *this;
        row.logarithmic = true;
        return row;
    }
    [[nodiscard]] constexpr PropertyRow Writes(ModeWrite how) const noexcept {
        PropertyRow row = *this;
        row.write = how;
        return row;
    }
    [[nodiscard]] constexpr PropertyRow ReadOnly() const noexcept {
        PropertyRow row = *this;
        row.read_only = true;
        return row;
    }

    std::uint16_t key;
    std::uint16_t governor = 0;
    /// Of integers that stand for physical values, and of floats that show as a range.
    std::int32_t ticks_per_unit = 0;
    std::uint8_t type;  ///< an `InterfaceType`
    PropertyAddress address;
    PropertyAddress needed;  ///< where `need` is looked for
    Need need = Need::Property;
    Available available = Available::Always;
    ModeWrite write = ModeWrite::OnChange;  ///< of controls
    bool logarithmic = false;
    bool read_only = false;
};

/// An item whose keys stand for properties of the driver, as rows tell. A key without a row is not supported
/// and always available.
class CPropertyItem : public CZELItemDataBase {
public:
    bool SupportsInterface(InterfaceKey key) override;
    HRESULT IsAvailable(InterfaceKey key, bool& available) override;
    HRESULT IsReadOnly(InterfaceKey key, bool& read_only) override;
    HRESULT GetSwitch(InterfaceKey key, bool& on) override;
    HRESULT SetSwitch(InterfaceKey key, bool on) override;
    HRESULT GetRange(InterfaceKey key, RangeInfo& range) override;
    HRESULT GetValue(InterfaceKey key, std::int32_t& value) override;
    HRESULT SetValue(InterfaceKey key, std::int32_t value) override;
    HRESULT GetAbsRange(InterfaceKey key, AbsRangeInfo& range) override;
    HRESULT GetAbsValue(InterfaceKey key, double& value) override;
    HRESULT SetAbsValue(InterfaceKey key, double value) override;
    HRESULT GetAbsUnit(InterfaceKey key, SharedString& unit, std::int32_t& scale) override;
    HRESULT Push(InterfaceKey key) override;

protected:
    /// The interfaces of a filter that the rows ask for; a control that is null has no modes and no values.
    struct Device {
        platform::com_ptr<IKsPropertySet> properties;
        platform::com_ptr<IAMCameraControl> camera;
        platform::com_ptr<IAMVideoProcAmp> amp;
    };

    /// The rows outlive the item. `unit` is the one of all absolute values; null: none is told.
    CPropertyItem(Device device, RecordSpan<PropertyRow> rows, const wchar_t* unit = nullptr)
        : device_(std::move(device)), rows_(rows), unit_(unit) {}

    void UseRows(RecordSpan<PropertyRow> rows) noexcept { rows_ = rows; }

    [[nodiscard]] IKsPropertySet& Properties() const noexcept { return *device_.properties; }

private:
    [[nodiscard]] const PropertyRow* Find(InterfaceKey key) const noexcept;
    [[nodiscard]] const PropertyRow* Find(InterfaceKey key, InterfaceType type) const noexcept;
    [[nodiscard]] bool IsReadable(const PropertyAddress& address) const;
    // Calls `use` with the control of an address, which may be null.
    template <class Use>
    auto WithControl(PropertySource source, Use use) const;

    Device device_;
    RecordSpan<PropertyRow> rows_;
    const wchar_t* unit_;
};

/// All rows of an item, in an array that lasts.
template <class Rows>
constexpr RecordSpan<PropertyRow> AllOf(const Rows& rows) noexcept {
    return {std::data(rows), std::size(rows)};
}

}  // namespace ZELAdapterHelper
