#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace selvane_inspect {

/// What the program cannot see of where it runs.
struct run_environment {
    bool show_progress = false;  ///< whether someone watches standard error
};

/// The program without its main function: carries out a command line, without the program's name, and gives
/// the exit code. Texts are UTF-8.
[[nodiscard]] int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
                      const run_environment& environment = {});

}  // namespace selvane_inspect
