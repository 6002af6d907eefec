#pragma once

#include "apps/inspect/inspect_error.h"
#include "apps/inspect/run.h"

#include <ostream>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace selvane_inspect {

/// Where a command writes.
struct channels {
    std::ostream& out;
    std::ostream& err;
    run_environment environment;
    bool json = false;  ///< whether the caller wants JSON in place of text
};

/// One line on standard error behind the program's name.
void write_error(std::ostream& err, std::string_view line);

/// Writes a line. Names and texts of descriptions may stand in it as they are: whatever a terminal would obey
/// goes out as escapes, so that one line stays one line.
void write_line(std::ostream& out, std::string_view line);

/// Writes a value as indented JSON. Bytes that are no UTF-8 become U+FFFD.
void write_json(std::ostream& out, const nlohmann::ordered_json& value);

}  // namespace selvane_inspect
