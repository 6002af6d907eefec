#pragma once

#include "apps/playground/face/playground.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace playground_test {

using json = nlohmann::json;

/// The engine's face as the web part uses it.
class PlaygroundTest : public testing::Test {
protected:
    json Ask(const json& request, std::string_view payload = {}) {
        return json::parse(engine_.answer(request.dump(), payload));
    }
    json Open(std::string_view description, const char* access = "registers", bool simulated = false) {
        return Ask({{"do", "open"}, {"access", access}, {"simulated", simulated}}, description);
    }
    json Show(const char* page) { return Ask({{"do", "show"}, {"page", page}}); }
    json Act(const char* page, std::size_t control, json deed) {
        deed.update({{"do", "act"}, {"page", page}, {"control", control}});
        return Ask(deed);
    }
    /// A description that is built in.
    std::string Bundled(const char* name) {
        return Ask({{"do", "text"}, {"name", name}}).at("text").get<std::string>();
    }

    selvane_playground::playground engine_;
};

/// The number of the n-th control of a kind in a layout, from 0.
inline std::size_t NumberOf(const json& layout, const char* kind, std::size_t n = 0) {
    for (std::size_t at = 0; at < layout.size(); ++at) {
        if (layout[at].at("kind") == kind && n-- == 0) return at;
    }
    ADD_FAILURE() << "no " << kind;
    return layout.size();
}

}  // namespace playground_test
