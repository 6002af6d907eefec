#pragma once

#include "adapter/propdata.h"

#include <string_view>

namespace genicam_adapter {

/// Items of a driver with named access: every value, limit and state is asked of the driver by the path of
/// the feature. Of the local nodes only names, types, units and entries are used. An operation gives the
/// HRESULT of the driver's call.
class genicam_propdata_named final : public genicam_propdata {
public:
    /// `filter` may be null: every operation that needs it then fails.
    explicit genicam_propdata_named(platform::com_ptr<IKsPropertySet> filter);

    /// Hands on the lock state as it stands: a feature that reads as locked has the control that is enabled.
    [[nodiscard]] HRESULT IsAvailable(InterfaceKey key, bool& available) override;
    [[nodiscard]] HRESULT GetSwitch(InterfaceKey key, bool& on) override;
    HRESULT SetSwitch(InterfaceKey key, bool on) override;
    [[nodiscard]] HRESULT GetSwitchDefault(InterfaceKey key, bool& on) override;
    [[nodiscard]] HRESULT GetRange(InterfaceKey key, ZELAdapterHelper::RangeInfo& range) override;
    [[nodiscard]] HRESULT GetValue(InterfaceKey key, std::int32_t& value) override;
    HRESULT SetValue(InterfaceKey key, std::int32_t value) override;
    [[nodiscard]] HRESULT GetAbsRange(InterfaceKey key, ZELAdapterHelper::AbsRangeInfo& range) override;
    [[nodiscard]] HRESULT GetAbsValue(InterfaceKey key, double& value) override;
    HRESULT SetAbsValue(InterfaceKey key, double value) override;
    HRESULT Push(InterfaceKey key) override;

protected:
    [[nodiscard]] bool offers_entry(GenICam::IEnumeration& enumeration, GenICam::IEnumEntry& entry) override;

private:
    template <class Number>
    [[nodiscard]] HRESULT get(InterfaceKey key, std::string_view suffix, Number& number) const;
    [[nodiscard]] HRESULT set(InterfaceKey key, std::string_view suffix, std::uint64_t value) const;
    [[nodiscard]] HRESULT get_flag(InterfaceKey key, std::string_view suffix, bool& flag) const;
    [[nodiscard]] HRESULT get_selected_index(GenICam::IEnumeration& enumeration, std::int32_t& index);
    [[nodiscard]] HRESULT select_index(GenICam::IEnumeration& enumeration, std::int32_t index);
};

/// The factory of these items.
void make_genicam_propdata_named(ZELAdapterHelper::CZELItemDataBase** result, IUnknown* filter,
                                 const ZELAdapterHelper::ItemRecord& record);

}  // namespace genicam_adapter
