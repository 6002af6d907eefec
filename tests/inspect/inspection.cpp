#include "tests/inspect/inspection.h"

#include <sstream>

namespace inspect_test {

nlohmann::json Outcome::Json() const {
    nlohmann::json parsed = nlohmann::json::parse(out, nullptr, false);
    EXPECT_FALSE(parsed.is_discarded()) << out;
    return parsed;
}

Outcome Call(const std::vector<std::string>& arguments, bool show_progress) {
    std::ostringstream out;
    std::ostringstream err;
    selvane_inspect::run_environment environment;
    environment.show_progress = show_progress;
    const int code = selvane_inspect::run(arguments, out, err, environment);
    return {code, out.str(), err.str()};
}

std::string WithoutNumbers(const std::string& text) {
    std::string shape;
    for (const char c : text) {
        const bool is_digit = c >= '0' && c <= '9';
        if (!is_digit || shape.empty() || shape.back() != '0') shape += is_digit ? '0' : c;
    }
    return shape;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

}  // namespace inspect_test
