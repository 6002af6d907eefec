#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace selvane_host {

/// By which access path the simulated driver lets the pages reach the camera.
enum class access_path { as_offered, named, registers };

/// What the user asked for.
struct host_options {
    std::vector<std::filesystem::path> descriptions;  ///< in place of the camera's own
    std::string camera;                               ///< of the ready-made ones; empty for the usual one
    access_path access = access_path::as_offered;
    std::chrono::milliseconds delay{0};  ///< of each call of the simulated driver
    std::filesystem::path memory;        ///< register contents of the simulated camera; empty for its own
    std::string device;                  ///< name of a real device; empty for the simulated camera
    std::filesystem::path driver;        ///< DLL with a driver; empty for the simulated camera
    std::filesystem::path pictures;      ///< folder for pictures of the pages; empty for none
    bool registered = false;             ///< the system's pages, not those beside the program
    bool check_driver = false;
    bool write = false;  ///< the check may write to the camera
    bool json = false;
    bool trace = false;
    bool layout = false;
    bool probe = false;
    bool list_cameras = false;
    bool list_devices = false;
    /// Text to print and leave with; empty to go on.
    std::string message;
};

/// Arguments without the program's name, in UTF-8. Throws `host_error`.
[[nodiscard]] host_options parse_options(std::vector<std::string> arguments);

}  // namespace selvane_host
