#pragma once

#include <stdexcept>
#include <string>

namespace selvane_inspect {

namespace exit_code {
constexpr int fine = 0;
constexpr int findings = 1;   ///< or an operation that was refused
constexpr int wrong_use = 2;  ///< or input that cannot be used
}  // namespace exit_code

/// What ends a command: one line for whoever called it.
class inspect_error : public std::runtime_error {
public:
    inspect_error(int code, const std::string& line) : std::runtime_error(line), code_(code) {}
    [[nodiscard]] int code() const noexcept { return code_; }

private:
    int code_;
};

[[nodiscard]] inline inspect_error wrong_use(const std::string& line) { return {exit_code::wrong_use, line}; }
[[nodiscard]] inline inspect_error refused(const std::string& line) { return {exit_code::findings, line}; }

}  // namespace selvane_inspect
