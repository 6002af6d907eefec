#include "apps/playground/face/playground.h"

#include "apps/inspect/memory_options.h"
#include "apps/playground/face/inspection.h"
#include "platform/text.h"
#include "propui/control_logic.h"
#include "simcam/camera_options.h"

#include <algorithm>
#include <map>
#include <stdexcept>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_playground {
namespace {

using json = nlohmann::ordered_json;
using selvane_inspect::access_path;
using ZELPropUI::PageName;

// What is known of a page before it is shown.
json page_json(PageName page, const workbench& bench) {
    json known = {{"page", selvane_inspect::page_word(page)}, {"title", ZELPropUI::TitleOf(page)}};
    if (const auto answer = bench.answer_of(page)) known["offered"] = *answer;
    return known;
}

json pages_json(const workbench& bench) {
    auto pages = json::array();
    for (const PageName page : ZELPropUI::all_pages) pages.push_back(page_json(page, bench));
    return pages;
}

PageName page_of(const json& request) {
    const auto& word = request.at("page").get_ref<const std::string&>();
    for (const PageName page : ZELPropUI::all_pages) {
        if (selvane_inspect::page_word(page) == word) return page;
    }
    throw std::invalid_argument("there is no page " + word);
}

std::string edit_characters() {
    std::string characters;
    for (char c = ' '; c <= '~'; ++c) {
        if (ZELPropUI::IsEditCharacter(static_cast<std::uint32_t>(c))) characters += c;
    }
    return characters;
}

outcome carry_out(live_page& page, std::size_t control, const json& request) {
    const auto& deed = request.at("deed").get_ref<const std::string&>();
    if (deed == "move") return page.move(control, request.at("value"));
    if (deed == "commit") {
        return page.commit(control, platform::widen(request.at("text").get_ref<const std::string&>()));
    }
    if (deed == "pick") return page.pick(control, request.at("value"));
    if (deed == "toggle") return page.toggle(control);
    if (deed == "push") return page.push(control);
    throw std::invalid_argument("nobody can " + deed + " a control");
}

json error_json(const std::exception& failure) { return {{"error", {{"message", failure.what()}}}}; }

}  // namespace

std::string playground::answer(std::string_view request, std::string_view payload) {
    json answered;
    try {
        answered = carry_out(json::parse(request), payload);
    } catch (const malformed_text& failure) {
        answered = error_json(failure);
        answered["error"]["line"] = failure.at().line;
        answered["error"]["column"] = failure.at().column;
    } catch (const std::exception& failure) {
        answered = error_json(failure);
    }
    answered["calls"] = bench_ ? bench_->take_calls() : std::vector<std::string>();
    return answered.dump(-1, ' ', false, json::error_handler_t::replace);
}

json playground::carry_out(const json& request, std::string_view payload) {
    const auto& what = request.at("do").get_ref<const std::string&>();
    if (what == "open") return open(request, payload);
    if (what == "offer") return offer();
    if (what == "show") return show(request);
    if (what == "act") return act(request);
    if (what == "refresh") return refresh(request);
    if (what == "registers") return registers();
    if (what == "poke") return poke(request);
    if (what == "before") return {{"registers", workbench::lines_of(before_)}};
    if (what == "inspect") {
        return inspect(request.at("arguments").get<std::vector<std::string>>(), payload,
                       request.value("registers", std::string()));
    }
    if (what == "text") {
        const auto& name = request.at("name").get_ref<const std::string&>();
        return {{"text", simcam::bundled_description(name)}};
    }
    throw std::invalid_argument("nobody knows how to " + what);
}

workbench& playground::bench() {
    if (!bench_) throw std::logic_error("no description is open");
    return *bench_;
}

json playground::open(const json& request, std::string_view payload) {
    camera_settings settings;
    if (request.value("access", "named") == "registers") settings.access = access_path::registers;
    settings.simulated = request.value("simulated", false);
    if (request.contains("registers")) settings.registers = request.at("registers").get<std::string>();
    auto made = std::make_unique<workbench>(std::string(payload), settings);
    const bool wants_one = request.contains("page");
    bool found = wants_one && made->offer(page_of(request));
    for (const PageName page : ZELPropUI::all_pages) {
        if (wants_one && found) break;
        found = made->offer(page) || found;
    }
    bench_ = std::move(made);
    remember_registers();
    return {{"width", selvane_inspect::page_width},
            {"height", selvane_inspect::page_height},
            {"edit_characters", edit_characters()},
            {"pages", pages_json(*bench_)}};
}

json playground::offer() {
    for (const PageName page : ZELPropUI::all_pages) bench().offer(page);
    return {{"pages", pages_json(bench())}};
}

json playground::show(const json& request) {
    const PageName name = page_of(request);
    const bool has_something = bench().offer(name);
    json answered = page_json(name, bench());
    if (!has_something) return answered;
    const live_page& page = bench().show(name);
    answered["layout"] = page.layout_json();
    answered["state"] = page.state_json();
    return answered;
}

json playground::act(const json& request) {
    live_page& page = bench().show(page_of(request));
    const std::size_t control = request.at("control");
    if (request.at("deed") == "focus") return {{"editable", page.focus(control)}};
    remember_registers();
    const outcome became = selvane_playground::carry_out(page, control, request);
    if (became == outcome::done) page.refresh();
    json answered = {{"state", page.state_json()}};
    if (became == outcome::refused) {
        answered["box"] = {{"text", platform::narrow(ZELPropUI::edit_error_text)},
                           {"caption", platform::narrow(ZELPropUI::edit_error_caption)}};
    }
    return answered;
}

json playground::refresh(const json& request) {
    live_page& page = bench().show(page_of(request));
    page.refresh();
    return {{"state", page.state_json()}};
}

json playground::registers() { return {{"registers", workbench::lines_of(bench().memory())}}; }

json playground::poke(const json& request) {
    const auto address = selvane_inspect::parse_address(request.at("address").get<std::string>());
    const auto bytes = selvane_inspect::parse_bytes(request.at("bytes").get<std::string>());
    if (!address || !bytes) throw std::invalid_argument("that is no address, or these are no bytes");
    remember_registers();
    bench().memory().poke(*address, *bytes);
    return registers();
}

void playground::remember_registers() { before_ = bench().memory(); }

}  // namespace selvane_playground
