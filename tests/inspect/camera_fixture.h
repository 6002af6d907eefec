#pragma once

#include "tests/inspect/inspection.h"

#include <string>
#include <vector>

#include <sys/types.h>

namespace inspect_test {

/// Whether this machine has what the tests of cameras need.
[[nodiscard]] bool has_camera_tools();

/// What a program prints, both outputs together.
[[nodiscard]] std::string OutputOf(const std::string& command);

/// Aravis' camera made of software on the loopback interface of a network of this program's own.
class CameraTest : public InspectTest {
protected:
    static constexpr const char* name = "Aravis-Fake-GV01";

    void SetUp() override;
    void TearDown() override;

    /// Ends the camera's process at once.
    void Unplug();
    /// The process stands still and keeps its connections.
    void Freeze() const;

    /// The inspector over this camera: `--camera NAME` behind the command.
    [[nodiscard]] static Outcome CallOn(const std::string& command,
                                        const std::vector<std::string>& rest = {});

private:
    pid_t camera_ = -1;
};

}  // namespace inspect_test
