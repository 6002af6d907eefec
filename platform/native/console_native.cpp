#include "platform/console.h"

#include <unistd.h>

namespace platform {

std::vector<std::string> program_arguments(int count, const char* const* words) {
    return count > 1 ? std::vector<std::string>(words + 1, words + count) : std::vector<std::string>();
}

void prepare_console() {}

bool is_error_a_terminal() { return isatty(STDERR_FILENO) != 0; }

}  // namespace platform
