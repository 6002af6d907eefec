#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include <gsl/span>

namespace selvane_inspect {

class command_set;
/// Adds one command to those that a command line may name.
using command_adder = void (*)(command_set&);

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
void add_cameras(command_set& commands);

/// What the program cannot see of where it runs.
struct run_environment {
    bool show_progress = false;  ///< whether someone watches standard error
};

/// The program without its main function: carries out a command line, without the program's name, and gives
/// the exit code. Texts are UTF-8.
[[nodiscard]] int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
                      const run_environment& environment = {});

/// The same with these commands alone: whoever needs a few is spared the others.
[[nodiscard]] int run(gsl::span<const command_adder> commands, const std::vector<std::string>& arguments,
                      std::ostream& out, std::ostream& err, const run_environment& environment = {});

}  // namespace selvane_inspect
