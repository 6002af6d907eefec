#include "apps/inspect/run.h"

#include "platform/console.h"

#include <iostream>

int main(int count, char** words) {
    platform::prepare_console();
    selvane_inspect::run_environment environment;
    environment.show_progress = platform::is_error_a_terminal();
    return selvane_inspect::run(platform::program_arguments(count, words), std::cout, std::cerr, environment);
}
