#pragma once

#include "simcam/simulated_camera.h"

#include <ostream>
#include <string>

namespace page_test {

/// How the pages reach the features of a camera.
enum class AccessPath { Named, Registers };

void PrintTo(AccessPath access_path, std::ostream* out);
[[nodiscard]] std::string NameOf(AccessPath access_path);

/// The ready-made camera of that name, with one access path.
[[nodiscard]] simcam::camera_options CameraOn(AccessPath access_path, const std::string& name);

/// The small camera with something on each page. On the register access path its description has a register
/// in place of every value that a node holds by name: 8 bytes, little-endian, never cached.
[[nodiscard]] simcam::camera_options SimpleCamera(AccessPath access_path);

/// Whether the driver may see this call while a page is reached by this access path.
[[nodiscard]] bool IsOnAccessPath(AccessPath access_path, const simcam::driver_call& call);

/// What the driver of the small camera writes down for one access to a feature.
class AccessPathLines {
public:
    explicit AccessPathLines(AccessPath access_path) : access_path_(access_path) {}

    /// The read that tells whether a feature may be changed.
    [[nodiscard]] std::string Locked(const std::string& feature, bool enabled) const;
    [[nodiscard]] std::string Read(const std::string& feature, double value) const;
    [[nodiscard]] std::string Read(const std::string& feature, int value) const;
    [[nodiscard]] std::string Write(const std::string& feature, double value) const;
    [[nodiscard]] std::string Write(const std::string& feature, int value) const;
    [[nodiscard]] std::string RefusedWrite(const std::string& feature, int value) const;
    /// The entries of TriggerSource.
    [[nodiscard]] std::string ReadEntry(int index) const;
    [[nodiscard]] std::string WriteEntry(int index) const;
    /// Pushes TriggerSoftware.
    [[nodiscard]] std::string Push() const;
    /// How every line of a read and of a write begins.
    [[nodiscard]] std::string AnyRead() const;
    [[nodiscard]] std::string AnyWrite() const;
    [[nodiscard]] std::string AnyRead(const std::string& feature) const;
    [[nodiscard]] std::string AnyWrite(const std::string& feature) const;

private:
    AccessPath access_path_;
};

}  // namespace page_test
