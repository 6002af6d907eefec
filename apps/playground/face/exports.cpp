#include "apps/playground/face/playground.h"

#include <cstddef>
#include <string>
#include <string_view>

#include <emscripten/emscripten.h>

namespace {

selvane_playground::playground engine;
std::string payload;
std::string answered;

}  // namespace

/// Room for the payload of the next request.
extern "C" EMSCRIPTEN_KEEPALIVE char* playground_room(std::size_t size) {
    payload.resize(size);
    return payload.data();
}

/// The answer is there until the next request.
extern "C" EMSCRIPTEN_KEEPALIVE const char* playground_answer(const char* request) {
    answered = engine.answer(request, payload);
    payload.clear();
    return answered.c_str();
}
