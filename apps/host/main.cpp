#include "apps/check/report_text.h"
#include "apps/host/camera_setup.h"
#include "apps/host/console.h"
#include "apps/host/devices.h"
#include "apps/host/driver_file.h"
#include "apps/host/frame.h"
#include "apps/host/host_error.h"
#include "apps/host/options.h"
#include "apps/host/page_layout_text.h"
#include "apps/host/page_offer.h"
#include "apps/host/page_server.h"
#include "apps/host/picture_walk.h"
#include "apps/host/trace_filter.h"
#include "platform/console.h"

#include <exception>
#include <optional>

#include <nlohmann/json.hpp>

namespace {

using namespace selvane_host;
using object_ptr = platform::com_ptr<IUnknown>;

struct camera_to_show {
    object_ptr filter;
    std::string caption;
};

camera_to_show find_camera(const host_options& options) {
    if (!options.device.empty()) {
        object_ptr filter = open_device(options.device);
        // A device tells there why it has nothing to show, too.
        const std::string about = vendor_information(*filter);
        if (!about.empty()) write_line("device \"" + options.device + "\": " + about);
        return {filter, options.device};
    }
    if (!options.driver.empty()) return {open_driver(options.driver), options.driver.filename().u8string()};
    const simcam::camera_ptr camera = make_wanted_camera(options);
    return {object_ptr(camera.get()), camera_caption(*camera)};
}

std::vector<CLSID> choose_pages(const host_options& options, IUnknown& filter) {
    const std::vector<page_answer> answers = ask_pages(filter);
    if (options.probe || options.trace || options.layout) {
        for (const page_answer& answer : answers) write_line(describe_answer(answer));
    }
    std::vector<CLSID> pages = willing_pages(answers);
    if (pages.empty())
        throw host_error(exit_code::nothing_to_show, "no page has anything to show for this camera");
    return pages;
}

void show_pages(const host_options& options, const camera_to_show& camera, const std::vector<CLSID>& pages) {
    std::optional<picture_walk> walk;
    if (!options.pictures.empty()) walk.emplace(options.pictures);
    std::string listed;
    show_frame(camera.caption, *camera.filter, pages, [&](const frame_window& frame) {
        if (options.layout) {
            const std::string layout = describe_layout(frame);
            if (layout != listed) write_output(layout);
            listed = layout;
        }
        if (walk) walk->step(frame);
    });
    if (walk) walk->finish();
}

int check_camera(const host_options& options, const camera_to_show& camera) {
    selvane_check::check_options wanted;
    wanted.write = options.write;
    const selvane_check::driver_report report = selvane_check::check_driver(*camera.filter, wanted);
    write_output(options.json ? selvane_check::report_json(report, camera.caption).dump(2) + "\n"
                              : selvane_check::report_text(report, camera.caption));
    return selvane_check::is_faulty(report) ? exit_code::findings : exit_code::fine;
}

int work_on_camera(const host_options& options) {
    const com_apartment apartment;
    camera_to_show camera = find_camera(options);
    if (options.trace) camera.filter = make_trace_filter(*camera.filter, write_line);
    if (options.check_driver) return check_camera(options, camera);
    std::optional<page_server> server;
    if (!options.registered) server.emplace(page_server_path());
    const std::vector<CLSID> pages = choose_pages(options, *camera.filter);
    if (!options.probe) show_pages(options, camera, pages);
    return exit_code::fine;
}

int run(const host_options& options) {
    if (!options.message.empty()) {
        write_output(options.message);
    } else if (options.list_cameras) {
        write_output(list_cameras());
    } else if (options.list_devices) {
        const com_apartment apartment;
        write_output(list_devices());
    } else {
        return work_on_camera(options);
    }
    return exit_code::fine;
}

}  // namespace

int main(int count, char** words) {
    // A DLL that cannot be loaded is reported on standard error, not in a box.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    try {
        return run(parse_options(platform::program_arguments(count, words)));
    } catch (const host_error& failure) {
        write_error(failure.what());
        return failure.code();
    } catch (const std::exception& failure) {
        write_error(failure.what());
    } catch (...) {
        write_error("an unknown failure");
    }
    return exit_code::wrong_use;
}
