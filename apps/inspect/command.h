#pragma once

#include "apps/inspect/inspect_error.h"
#include "apps/inspect/run.h"

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>
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

/// The command line as the commands add to it.
class command_set {
public:
    using action = std::function<int(const channels&)>;

    explicit command_set(CLI::App& app) : app_(app) {}

    /// Adds a command whose options live as long as the command line. `carry_out` gets them when the command
    /// is the one that was called.
    template <class Options>
    Options& add(const char* name, const char* about, int (*carry_out)(const Options&, const channels&),
                 CLI::App*& command) {
        const auto options = std::make_shared<Options>();
        command = add_subcommand(name, about);
        command->callback([this, options, carry_out] {
            chosen_ = [options, carry_out](const channels& to) { return carry_out(*options, to); };
        });
        return *options;
    }

    /// What was called; empty before the command line has been read.
    [[nodiscard]] const action& chosen() const noexcept { return chosen_; }
    [[nodiscard]] bool wants_json() const noexcept { return json_; }

private:
    CLI::App* add_subcommand(const char* name, const char* about);

    CLI::App& app_;
    action chosen_;
    bool json_ = false;
};

// Each adds one command.
void add_info(command_set& commands);
void add_list(command_set& commands);
void add_describe(command_set& commands);
void add_get(command_set& commands);
void add_set(command_set& commands);
void add_eval(command_set& commands);
void add_lint(command_set& commands);
void add_pages(command_set& commands);
void add_dump(command_set& commands);

}  // namespace selvane_inspect
