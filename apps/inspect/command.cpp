#include "apps/inspect/command.h"

#include "inspection/feature_value.h"
#include "platform/visible_text.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {

void progress::show(std::size_t done, std::size_t all, const std::string& what) {
    if (!shown_) return;
    clear();
    const std::string line = platform::visible_text(fmt::format("{} of {}: {}", done, all, what));
    err_ << line << std::flush;
    width_ = line.size();
}

void progress::clear() {
    if (width_ == 0) return;
    err_ << '\r' << std::string(width_, ' ') << '\r' << std::flush;
    width_ = 0;
}

void write_error(std::ostream& err, std::string_view line) {
    err << "selvane_inspect: " << on_one_line(line) << '\n';
}

void write_line(std::ostream& out, std::string_view line) { out << visible_text(line) << '\n'; }

void write_json(std::ostream& out, const nlohmann::ordered_json& value) {
    constexpr int indent = 2;
    const std::string text = value.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    out << platform::visible_json(text) << '\n';
}

}  // namespace selvane_inspect
