#pragma once

#include "genicam/idevice_port.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace selvane_inspect {

/// A camera on the network or on USB, as it tells of itself.
struct camera_identity {
    std::string name;  ///< what --camera takes
    std::string vendor;
    std::string model;
    std::string serial;
    std::string address;
    std::string protocol;  ///< "GigEVision" or "USB3Vision"
};

/// The cameras that answer. Throws `inspect_error` where none can be asked.
[[nodiscard]] std::vector<camera_identity> find_cameras();

/// A camera that is connected: its description, and its registers as a port. Only bytes pass; what they mean
/// is the engine's business. A camera that stops answering, or is busy with others, fails every access from
/// then on at once.
class live_camera : public GenICam::IDevicePort {
public:
    /// The text as the camera holds it, unpacked.
    [[nodiscard]] virtual std::string_view description() const = 0;
    /// Why the camera does not answer any more; empty while it does.
    [[nodiscard]] virtual const std::string& ending() const noexcept = 0;
    /// For whoever writes; throws `inspect_error` when another program has control. Until then others may
    /// take it.
    virtual void take_control() = 0;
    virtual void leave_control() noexcept = 0;
};

/// Throws `inspect_error` for a camera that is not there or cannot be reached.
[[nodiscard]] std::unique_ptr<live_camera> connect_camera(const std::string& name);

}  // namespace selvane_inspect
