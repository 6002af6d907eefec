#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace host_test {

/// What a program left behind.
struct ProcessEnd {
    unsigned long code = 0;
    std::string output;
    std::string errors;
    bool timed_out = false;  ///< it had to be ended after two minutes
};

/// selvane_host.exe as the build made it.
[[nodiscard]] std::filesystem::path HostProgram();

/// Runs a program with pipes for both of its outputs, and waits for its end. Arguments are UTF-8.
[[nodiscard]] ProcessEnd RunProgram(const std::filesystem::path& program,
                                    const std::vector<std::string>& arguments);
[[nodiscard]] ProcessEnd RunHost(const std::vector<std::string>& arguments);

/// A folder for one test, empty at first and removed at the end.
class ScratchFolder {
public:
    ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();

    [[nodiscard]] const std::filesystem::path& Path() const noexcept { return path_; }
    /// Writes a file there and gives its path in UTF-8.
    std::string Write(const std::string& name, const std::string& contents) const;

private:
    std::filesystem::path path_;
};

[[nodiscard]] std::string ReadFile(const std::filesystem::path& file);
[[nodiscard]] std::vector<std::string> Lines(const std::string& text);
[[nodiscard]] bool EndsWith(const std::string& text, const std::string& end);

}  // namespace host_test
