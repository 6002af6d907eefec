#pragma once

#include <stdexcept>
#include <string>

namespace selvane_host {

/// How the program ends.
namespace exit_code {
constexpr int fine = 0;
constexpr int nothing_to_show = 1;  ///< no page takes the camera, or the camera cannot be reached
constexpr int findings = 1;         ///< the check of a driver found something
constexpr int wrong_use = 2;        ///< options, descriptions, DLL, device or folder that cannot be used
}  // namespace exit_code

/// Ends the program with one line on standard error. The text is UTF-8.
class host_error : public std::runtime_error {
public:
    host_error(int code, const std::string& text) : std::runtime_error(text), code_(code) {}
    [[nodiscard]] int code() const noexcept { return code_; }

private:
    int code_;
};

[[nodiscard]] inline host_error wrong_use(const std::string& text) { return {exit_code::wrong_use, text}; }

}  // namespace selvane_host
