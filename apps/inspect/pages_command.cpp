#include "apps/inspect/commands.h"
#include "inspection/marked_items.h"
#include "inspection/pages/page_preview.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

// The files of the pages that have something to show.
std::vector<std::string> save_pictures(const std::vector<drawn_page>& pages, const std::string& folder) {
    const std::filesystem::path path = std::filesystem::u8path(folder);
    std::error_code failure;
    std::filesystem::create_directories(path, failure);
    if (!std::filesystem::is_directory(path, failure)) throw wrong_use("cannot make the folder " + folder);
    std::vector<std::string> files;
    for (const drawn_page& page : pages) {
        if (!page.offered) continue;
        files.push_back((path / (std::string(page_word(page.name)) + ".svg")).u8string());
        write_file(files.back(), page_svg(page));
    }
    return files;
}

// Why no page appears, where nobody has marked anything; empty for other reasons.
std::string reason_for_nothing(const std::vector<drawn_page>& drawn, const description& input) {
    const bool any =
        std::any_of(drawn.begin(), drawn.end(), [](const drawn_page& page) { return page.offered; });
    if (any || has_marks(input)) return {};
    return fmt::format("{}: {}. {}", input.path(), no_marks, no_marks_remedy);
}

}  // namespace

int pages(const pages_options& options, const channels& to) {
    const access_path access =
        options.access_path == named_path ? access_path::named : access_path::registers;
    const auto opened = open(options.input);
    const std::vector<drawn_page> drawn = preview_pages(*opened, access);
    const std::vector<std::string> files =
        options.folder.empty() ? std::vector<std::string>() : save_pictures(drawn, options.folder);
    nlohmann::ordered_json json = {
        {"command", "pages"}, {"file", options.input.file}, {"access", options.access_path}};
    const std::string reason = reason_for_nothing(drawn, *opened);
    if (!reason.empty()) json["note"] = reason;
    bool first = true;
    for (const drawn_page& page : drawn) {
        json["pages"].push_back(page_json(page));
        if (!to.json) to.out << (first ? "" : "\n") << page_text(page);
        first = false;
    }
    if (to.json) {
        json["pictures"] = files;
        write_json(to.out, json);
        return exit_code::fine;
    }
    if (!files.empty()) to.out << '\n';
    for (const std::string& file : files) write_line(to.out, "picture " + file);
    if (!reason.empty()) to.out << '\n';
    if (!reason.empty()) write_line(to.out, reason);
    return exit_code::fine;
}

}  // namespace selvane_inspect
