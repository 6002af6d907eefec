#pragma once

#include <cstdlib>
#include <string_view>

namespace test_support {

/// How many of the positions that a sweep can visit (calls, allocations, features) it visits. `some` is what
/// a developer waits for; SELVANE_SWEEP in the environment asks for `more` or for `all`.
enum class sweep { some, more, all };

inline sweep sweep_of_run() {
    static const sweep asked = [] {
        const char* const value = std::getenv("SELVANE_SWEEP");
        const std::string_view text = value != nullptr ? value : "";
        return text == "all" ? sweep::all : text == "more" ? sweep::more : sweep::some;
    }();
    return asked;
}

/// One of the three, by what the run asks for.
template <class Value>
Value by_sweep(Value some, Value more, Value all) {
    const sweep asked = sweep_of_run();
    return asked == sweep::all ? all : asked == sweep::more ? more : some;
}

}  // namespace test_support
