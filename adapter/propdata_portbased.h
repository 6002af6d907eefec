#pragma once

#include "adapter/propdata.h"

namespace genicam_adapter {

/// Items of a driver with register access only: every operation asks the local node, which reaches the camera
/// through its registers. An engine code comes out as the HRESULT of `to_hresult`; a key whose node has not
/// the type that an operation needs gives E_NOTIMPL.
class genicam_propdata_portbased final : public genicam_propdata {
public:
    explicit genicam_propdata_portbased(platform::com_ptr<IKsPropertySet> filter);

    /// Hands on the lock state as it stands: a locked feature has the control that is enabled. Always S_OK.
    [[nodiscard]] HRESULT IsAvailable(InterfaceKey key, bool& available) override;
    [[nodiscard]] HRESULT GetSwitch(InterfaceKey key, bool& on) override;
    HRESULT SetSwitch(InterfaceKey key, bool on) override;
    [[nodiscard]] HRESULT GetSwitchDefault(InterfaceKey key, bool& on) override;
    /// Without a default of its own an integer gets half of its span, without the minimum.
    [[nodiscard]] HRESULT GetRange(InterfaceKey key, ZELAdapterHelper::RangeInfo& range) override;
    /// For an enumeration the value of the selected entry, although `SetValue` takes an index in the list.
    [[nodiscard]] HRESULT GetValue(InterfaceKey key, std::int32_t& value) override;
    HRESULT SetValue(InterfaceKey key, std::int32_t value) override;
    [[nodiscard]] HRESULT GetAbsRange(InterfaceKey key, ZELAdapterHelper::AbsRangeInfo& range) override;
    [[nodiscard]] HRESULT GetAbsValue(InterfaceKey key, double& value) override;
    HRESULT SetAbsValue(InterfaceKey key, double value) override;
    /// E_FAIL for every failure of the command.
    HRESULT Push(InterfaceKey key) override;

protected:
    /// All entries of an implemented enumeration, none of another: the entries themselves are not asked.
    [[nodiscard]] bool offers_entry(GenICam::IEnumeration& enumeration, GenICam::IEnumEntry& entry) override;
};

/// The factory of these items.
void make_genicam_propdata_portbased(ZELAdapterHelper::CZELItemDataBase** result, IUnknown* filter,
                                     const ZELAdapterHelper::ItemRecord& record);

}  // namespace genicam_adapter
