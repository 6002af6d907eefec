#include "platform/console.h"

#include "platform/text.h"
#include "platform/windows/owned.h"

#include <shellapi.h>

namespace platform {
// The words that the C library hands over are in the system's code page.
std::vector<std::string> program_arguments(int, const char* const*) {
    int count = 0;
    const local_memory<wchar_t*> words(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int at = 1; words && at < count; ++at) arguments.push_back(narrow(words.get()[at]));
    return arguments;
}

void prepare_console() { SetConsoleOutputCP(CP_UTF8); }

bool is_error_a_terminal() {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

}  // namespace platform
