#include "tests/host/host_process.h"

#include "platform/text.h"

#include <windows.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace host_test {
namespace {

constexpr DWORD patience_ms = 120000;
constexpr std::size_t longest_path = 32768;

// The end of a pipe that the child writes to is inherited, the other one is not.
class Pipe {
public:
    Pipe() {
        SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        if (CreatePipe(&read_, &write_, &inherited, 0) == 0) throw std::runtime_error("no pipe");
        SetHandleInformation(read_, HANDLE_FLAG_INHERIT, 0);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        CloseWriteEnd();
        CloseHandle(read_);
    }

    [[nodiscard]] HANDLE WriteEnd() const noexcept { return write_; }
    void CloseWriteEnd() noexcept {
        if (write_ != nullptr) CloseHandle(write_);
        write_ = nullptr;
    }
    // Until the last holder of the other end is gone.
    [[nodiscard]] std::string ReadAll() const {
        std::string all;
        char part[4096];
        DWORD read = 0;
        while (::ReadFile(read_, part, sizeof part, &read, nullptr) != 0 && read > 0) all.append(part, read);
        return all;
    }

private:
    HANDLE read_ = nullptr;
    HANDLE write_ = nullptr;
};

// No argument of these tests holds a quote or ends in a backslash.
std::wstring CommandLine(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
    std::wstring line = L"\"" + program.wstring() + L"\"";
    for (const std::string& argument : arguments) line += L" \"" + platform::widen(argument) + L"\"";
    return line;
}

PROCESS_INFORMATION Start(std::wstring line, const Pipe& output, const Pipe& errors) {
    STARTUPINFOW start{};
    start.cb = sizeof(start);
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = output.WriteEnd();
    start.hStdError = errors.WriteEnd();
    // Wine's desktop is a program that the first one with a window starts, and it inherits from that one: it
    // must not be one that writes to our pipes.
    GetDesktopWindow();
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr,
                       &start, &process) == 0) {
        throw std::runtime_error("the program cannot be started");
    }
    return process;
}

}  // namespace

std::filesystem::path HostProgram() {
    std::wstring own(longest_path, L'\0');
    own.resize(GetModuleFileNameW(nullptr, own.data(), static_cast<DWORD>(own.size())));
    return std::filesystem::path(own).parent_path() / "selvane_host.exe";
}

ProcessEnd RunProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
    Pipe output;
    Pipe errors;
    const PROCESS_INFORMATION process = Start(CommandLine(program, arguments), output, errors);
    output.CloseWriteEnd();
    errors.CloseWriteEnd();
    ProcessEnd end;
    std::thread output_reader([&] { end.output = output.ReadAll(); });
    std::thread error_reader([&] { end.errors = errors.ReadAll(); });
    end.timed_out = WaitForSingleObject(process.hProcess, patience_ms) != WAIT_OBJECT_0;
    if (end.timed_out) TerminateProcess(process.hProcess, 255);
    output_reader.join();
    error_reader.join();
    GetExitCodeProcess(process.hProcess, &end.code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return end;
}

ProcessEnd RunHost(const std::vector<std::string>& arguments) { return RunProgram(HostProgram(), arguments); }

ScratchFolder::ScratchFolder() {
    static int count = 0;
    path_ = std::filesystem::temp_directory_path() /
            ("selvane_host_test_" + std::to_string(GetCurrentProcessId()) + "_" + std::to_string(++count));
    std::filesystem::create_directories(path_);
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string ScratchFolder::Write(const std::string& name, const std::string& contents) const {
    const std::filesystem::path file = path_ / std::filesystem::u8path(name);
    std::ofstream(file, std::ios::binary) << contents;
    return file.u8string();
}

std::string ReadFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::vector<std::string> Lines(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

bool EndsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace host_test
