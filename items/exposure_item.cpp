#include "items/builtin_factories.h"
#include "items/exposure_base.h"
#include "items/interface_keys.h"

namespace ZELAdapterHelper {
namespace {

constexpr PropertyAddress float_exposure = VendorFloat(SELVANE_EXPOSURE_FLOAT);

// What the driver tells when the item is made.
struct ExposureAbilities {
    ExposureAbilities(IKsPropertySet& filter, IAMCameraControl* camera) {
        wire::float_record exposure = {};
        if (SUCCEEDED(GetFloatProperty(filter, SELVANE_EXPOSURE_FLOAT, exposure))) {
            float_auto = (exposure.capabilities & wire::automatic) != 0;
            has_auto = true;
        }
        const LONG modes = ControlCapabilities(camera, wire::camera_control_exposure);
        has_manual = (modes & control_manual) != 0;
        has_auto = has_auto || (modes & control_automatic) != 0;
        has_auto_limit = PropertySupported(filter, SELVANE_AUTO_MAX_AUTOMATIC);
        integer_exposure = PropertySupported(filter, SELVANE_EXPOSURE_TICKS);
    }

    bool float_auto = false;
    bool has_auto = false;
    bool has_manual = false;
    bool integer_exposure = false;
    bool has_auto_limit = false;
};

ExposureProperties PropertiesOf(const ExposureAbilities& abilities) noexcept {
    return {abilities.integer_exposure ? Vendor(SELVANE_EXPOSURE_TICKS) : camera_exposure, float_exposure,
            abilities.float_auto ? float_exposure : camera_exposure, VendorFloat(SELVANE_AUTO_MAX_FLOAT),
            10000};
}

// Exposure over the float properties.
class exposure_item final : public CExposureBase {
public:
    exposure_item(Device device, const ExposureAbilities& abilities)
        : CExposureBase(std::move(device), PropertiesOf(abilities)), abilities_(abilities) {}

    bool SupportsInterface(InterfaceKey key) override;

private:
    ExposureAbilities abilities_;
};

bool exposure_item::SupportsInterface(InterfaceKey key) {
    switch (key) {
        case exposure_key::value:
            return abilities_.has_manual;
        case exposure_key::abs_value:
            return true;
        case exposure_key::automatic:
            return abilities_.has_auto;
        case exposure_key::auto_max_automatic:
            return abilities_.has_auto_limit;
        default:
            return CPropertyItem::SupportsInterface(key);
    }
}

}  // namespace

void MakeExposureItem(CZELItemDataBase** result, IUnknown* filter, const ItemRecord&) {
    *result = nullptr;
    auto properties = platform::query<IKsPropertySet>(filter);
    if (!properties || !PropertySupported(*properties, SELVANE_EXPOSURE_FLOAT)) {
        return;
    }
    auto camera = platform::query<IAMCameraControl>(filter);
    const ExposureAbilities abilities(*properties, camera.get());
    *result = new exposure_item({std::move(properties), std::move(camera), {}}, abilities);
}

}  // namespace ZELAdapterHelper
