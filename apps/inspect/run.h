#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include <gsl/span>

namespace selvane_inspect {

class command_set;
/// Adds one command to those that a command line may name.
using command_adder = void (*)(command_set&);

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
