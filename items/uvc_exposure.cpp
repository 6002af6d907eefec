#include "items/builtin_factories.h"
#include "items/exposure_base.h"

namespace ZELAdapterHelper {
namespace {

// The two families of properties that drivers have for exposure times. The first leaves the plain value to
// the camera control.
constexpr ExposureProperties ticks = {camera_exposure, Vendor(SELVANE_EXPOSURE_TICKS), camera_exposure,
                                      Vendor(SELVANE_AUTO_MAX_TICKS), 10000};
constexpr ExposureProperties microseconds = {Vendor(SELVANE_EXPOSURE_MICROSECONDS),
                                             Vendor(SELVANE_EXPOSURE_MICROSECONDS), camera_exposure,
                                             Vendor(SELVANE_AUTO_MAX_MICROSECONDS), 1000000};

// Exposure over the integer properties and the camera control.
class CUVCExposure final : public CExposureBase {
public:
    CUVCExposure(Device device, bool use_microseconds)
        : CExposureBase(std::move(device), use_microseconds ? microseconds : ticks) {}
};

}  // namespace

void MakeUVCExposure(CZELItemDataBase** result, IUnknown* filter, const ItemRecord&) {
    *result = nullptr;
    auto properties = platform::query<IKsPropertySet>(filter);
    if (!properties || !PropertySupported(*properties, SELVANE_EXPOSURE_TICKS)) {
        return;
    }
    const bool use_microseconds = PropertySupported(*properties, SELVANE_EXPOSURE_MICROSECONDS);
    auto camera = platform::query<IAMCameraControl>(filter);
    *result = new CUVCExposure({std::move(properties), std::move(camera), {}}, use_microseconds);
}

}  // namespace ZELAdapterHelper
