#pragma once

#include "apps/inspect/run.h"
#include "inspection/inspect_error.h"

#include <cstddef>
#include <ostream>
#include <string>
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

/// A line on standard error that tells how far a long run has come, and is gone when it is over. Silent where
/// nobody watches.
class progress {
public:
    progress(std::ostream& err, bool shown) : err_(err), shown_(shown) {}
    ~progress() { clear(); }
    progress(const progress&) = delete;
    progress& operator=(const progress&) = delete;

    void show(std::size_t done, std::size_t all, const std::string& what);
    /// Makes room for other output.
    void clear();

private:
    std::ostream& err_;
    bool shown_;
    std::size_t width_ = 0;
};

/// One line on standard error behind the program's name.
void write_error(std::ostream& err, std::string_view line);

/// Writes a line. Names and texts of descriptions may stand in it as they are: whatever a terminal would obey
/// goes out as escapes, so that one line stays one line.
void write_line(std::ostream& out, std::string_view line);

/// Writes a value as indented JSON. Bytes that are no UTF-8 become U+FFFD.
void write_json(std::ostream& out, const nlohmann::ordered_json& value);

}  // namespace selvane_inspect
