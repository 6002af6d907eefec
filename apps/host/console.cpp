#include "apps/host/console.h"

#include "platform/text.h"
#include "platform/visible_text.h"

#include <windows.h>

#include <shellapi.h>

#include <memory>

namespace selvane_host {
namespace {

void write_to(DWORD stream, std::string_view text) {
    const HANDLE handle = GetStdHandle(stream);
    DWORD mode = 0;
    DWORD written = 0;
    if (GetConsoleMode(handle, &mode) != 0) {
        const std::wstring wide = platform::widen(text);
        WriteConsoleW(handle, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
    } else {
        WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    }
}

struct local_free {
    void operator()(void* memory) const noexcept { LocalFree(memory); }
};

}  // namespace

void write_output(std::string_view text) { write_to(STD_OUTPUT_HANDLE, text); }

void write_line(std::string_view line) { write_output(platform::visible_text(line) + "\n"); }

void write_error(std::string_view line) {
    write_to(STD_ERROR_HANDLE, "selvane_host: " + platform::visible_text(line) + "\n");
}

std::vector<std::string> command_line() {
    int count = 0;
    const std::unique_ptr<wchar_t*, local_free> words(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> arguments;
    for (int at = 1; words && at < count; ++at) arguments.push_back(platform::narrow(words.get()[at]));
    return arguments;
}

std::string system_message(unsigned long code) {
    wchar_t* text = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
        code, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    const std::unique_ptr<wchar_t, local_free> owner(text);
    std::string message = platform::narrow(std::wstring_view(text, length));
    while (!message.empty() && (message.back() == '\n' || message.back() == '\r' || message.back() == ' ')) {
        message.pop_back();
    }
    return message.empty() ? "error " + std::to_string(code) : message;
}

}  // namespace selvane_host
