#pragma once

namespace platform {

/// Writes a terminated text to the debugger's channel; to standard error where there is none. Adds no line
/// end.
void write_debug_channel(const char* text);

/// The same, or to the sink where one is set.
void write_debug_output(const char* text);

/// The performance counter in microseconds, from an arbitrary start.
[[nodiscard]] unsigned long long performance_microseconds();

/// Receives every text of `write_debug_output` instead of the channel; null restores the channel.
using debug_sink = void (*)(const char* text);
void set_debug_sink(debug_sink sink);

}  // namespace platform
