// Answers requests to the playground, one a line on standard input, on standard output. `file` of a request
// names the file whose bytes go with it.

#include "apps/playground/face/playground.h"
#include "inspection/description.h"

#include <iostream>
#include <string>

#include <nlohmann/json.hpp>

int main() {
    selvane_playground::playground engine;
    for (std::string line; std::getline(std::cin, line);) {
        const auto request = nlohmann::json::parse(line);
        const std::string file = request.value("file", "");
        std::cout << engine.answer(line, file.empty() ? std::string() : selvane_inspect::read_file(file))
                  << std::endl;
    }
}
