#include "apps/host/console.h"

#include "platform/text.h"
#include "platform/visible_text.h"
#include "platform/windows/owned.h"

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

}  // namespace

void write_output(std::string_view text) { write_to(STD_OUTPUT_HANDLE, text); }

void write_line(std::string_view line) { write_output(platform::visible_text(line) + "\n"); }

void write_error(std::string_view line) {
    write_to(STD_ERROR_HANDLE, "selvane_host: " + platform::visible_text(line) + "\n");
}

std::string system_message(unsigned long code) {
    platform::local_memory<wchar_t> text;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
        code, 0, reinterpret_cast<wchar_t*>(text.put()), 0, nullptr);
    std::string message = platform::narrow(std::wstring_view(text.get(), length));
    while (!message.empty() && (message.back() == '\n' || message.back() == '\r' || message.back() == ' ')) {
        message.pop_back();
    }
    return message.empty() ? "error " + std::to_string(code) : message;
}

}  // namespace selvane_host
