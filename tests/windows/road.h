#pragma once

#include "simcam/simulated_camera.h"

#include <ostream>
#include <string>

namespace page_test {

/// How the pages reach the features of a camera.
enum class Road { Named, Registers };

void PrintTo(Road road, std::ostream* out);
[[nodiscard]] std::string NameOf(Road road);

/// The ready-made camera of that name, with one road.
[[nodiscard]] simcam::camera_options CameraOn(Road road, const std::string& name);

/// The small camera with something on each page. On the register road its description has a register in place
/// of every value that a node holds by name: 8 bytes, little-endian, never cached.
[[nodiscard]] simcam::camera_options SimpleCamera(Road road);

/// Whether the driver may see this call while a page is reached by this road.
[[nodiscard]] bool IsOnRoad(Road road, const simcam::driver_call& call);

/// What the driver of the small camera writes down for one access to a feature.
class RoadLines {
public:
    explicit RoadLines(Road road) : road_(road) {}

    /// The read that tells whether a feature may be changed.
    [[nodiscard]] std::string Locked(const std::string& feature, bool enabled) const;
    [[nodiscard]] std::string Read(const std::string& feature, double value) const;
    [[nodiscard]] std::string Read(const std::string& feature, int value) const;
    [[nodiscard]] std::string Write(const std::string& feature, double value) const;
    [[nodiscard]] std::string Write(const std::string& feature, int value) const;
    [[nodiscard]] std::string RefusedWrite(const std::string& feature, int value) const;
    /// The entries of TriggerSource.
    [[nodiscard]] std::string ReadEntry(int place) const;
    [[nodiscard]] std::string WriteEntry(int place) const;
    /// Pushes TriggerSoftware.
    [[nodiscard]] std::string Push() const;
    /// How every line of a read and of a write begins.
    [[nodiscard]] std::string AnyRead() const;
    [[nodiscard]] std::string AnyWrite() const;
    [[nodiscard]] std::string AnyRead(const std::string& feature) const;
    [[nodiscard]] std::string AnyWrite(const std::string& feature) const;

private:
    Road road_;
};

}  // namespace page_test
