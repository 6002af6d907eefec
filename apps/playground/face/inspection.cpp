#include "apps/playground/face/inspection.h"

#include "apps/inspect/command.h"
#include "apps/inspect/run.h"
#include "inspection/description.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <system_error>

#include <nlohmann/json.hpp>

namespace selvane_playground {
namespace {

// What the web part asks for. The others would make the file larger.
constexpr selvane_inspect::command_adder commands[] = {selvane_inspect::add_describe,
                                                       selvane_inspect::add_lint, selvane_inspect::add_pages};

/// A file that is there as long as the inspector reads it. A browser keeps it in its own memory.
class passing_file {
public:
    passing_file(const char* name, std::string_view contents)
        : path_((std::filesystem::temp_directory_path() / name).u8string()) {
        selvane_inspect::write_file(path_, std::string(contents));
    }
    passing_file(const passing_file&) = delete;
    passing_file& operator=(const passing_file&) = delete;
    ~passing_file() {
        std::error_code ignored;
        std::filesystem::remove(std::filesystem::u8path(path_), ignored);
    }
    [[nodiscard]] const std::string& path() const noexcept { return path_; }

private:
    std::string path_;
};

}  // namespace

nlohmann::ordered_json inspect(std::vector<std::string> arguments, std::string_view description,
                               const std::string& registers) {
    const passing_file text("selvane_playground.xml", description);
    const passing_file memory("selvane_playground.memory", registers);
    std::replace(arguments.begin(), arguments.end(), std::string("FILE"), text.path());
    if (!registers.empty()) {
        arguments.emplace_back("--memory");
        arguments.push_back(memory.path());
    }
    arguments.emplace_back("--json");
    std::ostringstream out;
    std::ostringstream err;
    const int code = selvane_inspect::run(commands, arguments, out, err);
    const auto output = nlohmann::ordered_json::parse(out.str(), nullptr, false);
    return {{"code", code},
            {"output", output.is_discarded() ? nlohmann::ordered_json() : output},
            {"message", err.str()}};
}

}  // namespace selvane_playground
