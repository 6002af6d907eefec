#include "apps/inspect/command.h"

#include "apps/inspect/feature_value.h"

#include <nlohmann/json.hpp>

namespace selvane_inspect {

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
