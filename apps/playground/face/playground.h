#pragma once

#include "apps/playground/face/workbench.h"

#include <memory>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace selvane_playground {

/// The engine as the web part sees it: requests and answers are JSON objects, a description or the contents
/// of registers stand beside a request as they are. `request.do` is one of
///
///     open       a camera with the description; `access` "named" or "registers", `simulated`, `registers` as
///                lines. It is offered to all pages as a host does; with `page` to that one first, and to
///                others until one has something to show
///     offer      the camera to the other pages
///     show       the controls of `page`, made at the first time
///     act        `deed` on `control` of `page`: move (`value`), commit (`text`), pick (`value`), toggle,
///                push, focus
///     refresh    of the open controls of `page`
///     registers  what the registers hold
///     poke       writes `bytes` at `address` into the registers, past the driver
///     before     what the registers held before the last act or poke
///     inspect    `arguments` of the inspector, with FILE for the description, and `registers` as lines
///     text       a description that comes along, by its `name`
///
/// Every answer has the driver's calls. One of a failure has `error` with a `message`, and with `line` and
/// `column` where the description is not well-formed; then camera and pages stay as they were.
class playground {
public:
    [[nodiscard]] std::string answer(std::string_view request, std::string_view payload = {});

private:
    using json = nlohmann::ordered_json;

    [[nodiscard]] json carry_out(const json& request, std::string_view payload);
    [[nodiscard]] json open(const json& request, std::string_view payload);
    [[nodiscard]] json offer();
    [[nodiscard]] json show(const json& request);
    [[nodiscard]] json act(const json& request);
    [[nodiscard]] json refresh(const json& request);
    [[nodiscard]] json registers();
    [[nodiscard]] json poke(const json& request);
    [[nodiscard]] workbench& bench();
    void remember_registers();

    std::unique_ptr<workbench> bench_;
    simcam::register_memory before_;
};

}  // namespace selvane_playground
