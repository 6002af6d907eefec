#include "items/builtin_factories.h"
#include "items/interface_keys.h"
#include "items/property_item.h"

namespace ZELAdapterHelper {
namespace {

constexpr PropertyRow RegionEdge(InterfaceKey key, selvane_vendor_property property) noexcept {
    return PropertyRow(key, InterfaceType::Range, Vendor(property))
        .Is(Available::WhileKnownOn, focus_key::region_enable);
}

constexpr PropertyRow focus_rows[] = {
    PropertyRow(focus_key::one_push, InterfaceType::Button, Vendor(SELVANE_FOCUS_ONE_PUSH)),
    PropertyRow(focus_key::value, InterfaceType::Range, OnCamera(wire::camera_control_focus))
        .Needs(Need::ControlRange)
        .Writes(ModeWrite::Unread),
    PropertyRow(focus_key::one_push_running, InterfaceType::Switch, Vendor(SELVANE_FOCUS_ONE_PUSH))
        .ReadOnly(),
    PropertyRow(focus_key::auto_min, InterfaceType::Range, Vendor(SELVANE_FOCUS_AUTO_MIN)),
    PropertyRow(focus_key::auto_max, InterfaceType::Range, Vendor(SELVANE_FOCUS_AUTO_MAX)),
    PropertyRow(focus_key::region_enable, InterfaceType::Switch, Vendor(SELVANE_FOCUS_REGION_ENABLE)),
    RegionEdge(focus_key::region_left, SELVANE_FOCUS_REGION_LEFT),
    RegionEdge(focus_key::region_top, SELVANE_FOCUS_REGION_TOP),
    RegionEdge(focus_key::region_bottom, SELVANE_FOCUS_REGION_BOTTOM),
    RegionEdge(focus_key::region_right, SELVANE_FOCUS_REGION_RIGHT),
};

// Focus: the position over the camera control, the rest over the driver's properties.
class CItem final : public CPropertyItem {
public:
    explicit CItem(Device device) : CPropertyItem(std::move(device), AllOf(focus_rows)) {}

    HRESULT GetSwitchDefault(InterfaceKey key, bool& on) override {
        if (key != focus_key::region_enable) {
            return E_NOTIMPL;
        }
        on = false;
        return S_OK;
    }
    // Whatever is pushed: the item has one button.
    HRESULT Push(InterfaceKey) override { return CPropertyItem::Push(focus_key::one_push); }
};

}  // namespace

void MakeFocusItem(CZELItemDataBase** result, IUnknown* filter, const ItemRecord&) {
    *result = nullptr;
    auto properties = platform::query<IKsPropertySet>(filter);
    auto camera = platform::query<IAMCameraControl>(filter);
    if (properties && camera && PropertySupported(*properties, SELVANE_FOCUS_ONE_PUSH)) {
        *result = new CItem({std::move(properties), std::move(camera), {}});
    }
}

}  // namespace ZELAdapterHelper
