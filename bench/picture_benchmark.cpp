// A frame of the simulated camera as a stream makes it: the camera is asked for its state, the picture
// painted.

#include "simcam/picture_painter.h"
#include "simcam/simulated_camera.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <vector>

namespace {

using namespace simcam;

constexpr double frames_a_second = 30;
constexpr double percent = 100;

void make_frames(benchmark::State& bench, const frame_format& format) {
    camera_options options = *ready_made("full");
    options.keep_transcript = false;
    const camera_ptr camera = make_camera(options);
    picture_painter painter;
    std::vector<std::uint8_t> frame(frame_size(format));
    std::uint64_t number = 0;
    const std::clock_t start = std::clock();
    for (auto unused : bench) {
        static_cast<void>(unused);
        painter.paint(camera->picture(), format, ++number, frame.data());
        benchmark::DoNotOptimize(frame.data());
    }
    const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    bench.counters["percent_of_a_core_at_30"] =
        seconds / static_cast<double>(number) * frames_a_second * percent;
}

void rgb24_640x480(benchmark::State& bench) { make_frames(bench, {pixel_format::rgb24, 640, 480}); }
void yuy2_640x480(benchmark::State& bench) { make_frames(bench, {pixel_format::yuy2, 640, 480}); }
void rgb24_1280x720(benchmark::State& bench) { make_frames(bench, {pixel_format::rgb24, 1280, 720}); }
void yuy2_1280x720(benchmark::State& bench) { make_frames(bench, {pixel_format::yuy2, 1280, 720}); }

// Someone moves a slider all the time: each frame has another brightness.
void rgb24_640x480_changing(benchmark::State& bench) {
    const camera_ptr camera = make_camera("described");
    const frame_format format = {pixel_format::rgb24, 640, 480};
    picture_painter painter;
    std::vector<std::uint8_t> frame(frame_size(format));
    std::uint64_t number = 0;
    for (auto unused : bench) {
        static_cast<void>(unused);
        picture_state state = camera->picture();
        state.light = 1 + static_cast<double>(++number % 64) / 64;
        painter.paint(state, format, number, frame.data());
    }
}

BENCHMARK(rgb24_640x480)->Unit(benchmark::kMicrosecond);
BENCHMARK(yuy2_640x480)->Unit(benchmark::kMicrosecond);
BENCHMARK(rgb24_1280x720)->Unit(benchmark::kMicrosecond);
BENCHMARK(yuy2_1280x720)->Unit(benchmark::kMicrosecond);
BENCHMARK(rgb24_640x480_changing)->Unit(benchmark::kMicrosecond);

}  // namespace
