#include "platform/debug_output.h"

namespace platform {
namespace {

debug_sink current_sink = nullptr;

}  // namespace

void write_debug_output(const char* text) {
    if (current_sink != nullptr) {
        current_sink(text);
    } else {
        write_debug_channel(text);
    }
}

void set_debug_sink(debug_sink sink) { current_sink = sink; }

}  // namespace platform
