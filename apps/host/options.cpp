#include "apps/host/options.h"

#include "apps/host/host_error.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <set>

namespace selvane_host {
namespace {

constexpr const char* named_path = "named";
constexpr const char* register_path = "registers";

constexpr int longest_delay = 10000;

constexpr const char* about =
    "Opens the Selvane property pages of a simulated camera, or of a video capture device, in the "
    "platform's property frame.";
constexpr const char* exit_codes =
    "Exit codes: 0 fine, 1 no page has anything to show or the check found something, 2 wrong use or "
    "unusable input.";

// What the command line fills; the paths are UTF-8 until it has been read.
struct raw_options {
    std::vector<std::string> descriptions;
    std::string memory;
    std::string pictures;
    std::string access_path;
    std::string driver;
    int delay = 0;
};

void add_camera_options(CLI::App& app, host_options& options, raw_options& raw) {
    CLI::Option* files =
        app.add_option("FILE", raw.descriptions, "Device descriptions in place of the bundled one");
    CLI::Option* camera =
        app.add_option("--camera", options.camera, "A ready-made camera")->type_name("NAME");
    CLI::Option* access =
        app.add_option(
               "--access", raw.access_path,
               "Only this access path to the features: named or registers (default: what the camera has)")
            ->type_name("PATH")
            ->check(CLI::IsMember(std::set<std::string>{named_path, register_path}));
    CLI::Option* memory =
        app.add_option("--memory", raw.memory, "Register contents on top of what the camera starts with")
            ->type_name("FILE");
    CLI::Option* delay = app.add_option("--delay", raw.delay,
                                        "How long each call of the simulated driver takes, in milliseconds")
                             ->type_name("MS")
                             ->check(CLI::Range(0, longest_delay));
    CLI::Option* device =
        app.add_option("--device", options.device, "The video capture device of that name, no simulation")
            ->type_name("NAME");
    CLI::Option* driver =
        app.add_option("--driver", raw.driver, "The driver in that DLL, no simulation")->type_name("DLL");
    for (CLI::Option* real : {device, driver}) {
        for (CLI::Option* simulated : {files, camera, access, memory, delay}) real->excludes(simulated);
    }
    driver->excludes(device);
}

void add_outputs(CLI::App& app, host_options& options, raw_options& raw) {
    app.add_flag("--trace", options.trace, "Print every call of the driver");
    app.add_flag("--layout", options.layout,
                 "Print where the shown page has its controls, and again when something has changed");
    CLI::Option* probe =
        app.add_flag("--probe", options.probe, "Tell which pages have something to show, and leave");
    app.add_option("--pictures", raw.pictures, "Save a picture of each page there as PNG, and leave")
        ->type_name("DIR")
        ->excludes(probe);
    app.add_flag("--registered", options.registered,
                 "Show the pages that are registered, not those beside the program");
    app.add_flag("--list-cameras", options.list_cameras, "Name the ready-made cameras, and leave");
    app.add_flag("--list", options.list_devices, "Name the video capture devices, and leave");
}

void add_check(CLI::App& app, host_options& options) {
    CLI::Option* check = app.add_flag("--check-driver", options.check_driver,
                                      "Ask the driver as the pages would, tell what is wrong, and leave");
    app.add_flag("--write", options.write, "The check writes values back that it has read")->needs(check);
    CLI::Option* json =
        app.add_flag("--json", options.json, "The check tells its findings as JSON")->needs(check);
    json->excludes(app.get_option("--trace"));
    for (const char* other : {"--layout", "--probe", "--pictures", "--registered"})
        check->excludes(app.get_option(other));
}

// The library breaks some of its messages into lines.
std::string one_line(std::string text) {
    while (!text.empty() && text.back() == '\n') text.pop_back();
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

void refuse_empty(const CLI::App& app, const char* option, bool empty) {
    if (app.count(option) > 0 && empty) throw wrong_use(std::string(option) + " needs a value");
}

}  // namespace

host_options parse_options(std::vector<std::string> arguments) {
    CLI::App app(about, "selvane_host");
    app.footer(exit_codes);
    app.set_version_flag("--version", "selvane_host " SELVANE_VERSION);
    host_options options;
    raw_options raw;
    add_camera_options(app, options, raw);
    add_outputs(app, options, raw);
    add_check(app, options);
    std::reverse(arguments.begin(), arguments.end());  // as the library wants them
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) {
        options.message = app.help();
    } catch (const CLI::CallForVersion& version) {
        options.message = std::string(version.what()) + "\n";
    } catch (const CLI::Error& error) {
        throw wrong_use(one_line(error.what()) + " (--help tells the options)");
    }
    refuse_empty(app, "--camera", options.camera.empty());
    refuse_empty(app, "--device", options.device.empty());
    refuse_empty(app, "--driver", raw.driver.empty());
    refuse_empty(app, "--memory", raw.memory.empty());
    refuse_empty(app, "--pictures", raw.pictures.empty());
    for (const std::string& file : raw.descriptions)
        options.descriptions.push_back(std::filesystem::u8path(file));
    if (raw.access_path == named_path) options.access = access_path::named;
    if (raw.access_path == register_path) options.access = access_path::registers;
    options.driver = std::filesystem::u8path(raw.driver);
    options.delay = std::chrono::milliseconds(raw.delay);
    options.memory = std::filesystem::u8path(raw.memory);
    options.pictures = std::filesystem::u8path(raw.pictures);
    return options;
}

}  // namespace selvane_host
