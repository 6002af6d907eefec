// What a page costs beyond the driver's own time: to build it on a canvas that only notes what is placed, and
// to ask for everything that its controls show. The driver is a simulated camera whose own time is measured
// apart.

#include "adapter/genicam_adapter_device.h"
#include "propui/page_groups.h"
#include "propui/page_layout.h"
#include "simcam/simulated_camera.h"
#include "tests/simcam/page_view.h"
#include "tests/support/recorder_canvas.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <map>
#include <string>

namespace {

using test_support::RecorderCanvas;
using clock_type = std::chrono::steady_clock;

/// The property set of a camera that measures how long its answers take. Lives longer than who refers to it.
class timed_driver final : public IKsPropertySet {
public:
    explicit timed_driver(simcam::simulated_camera& camera) : camera_(camera) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (iid != platform::iid_unknown && iid != platform::iid_property_set)
            return camera_.QueryInterface(iid, out);
        *out = static_cast<IKsPropertySet*>(this);
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                                  DWORD data_size) override {
        return timed(
            [&] { return camera_.property_set()->Set(set, id, instance, instance_size, data, data_size); });
    }
    HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                                  DWORD data_size, DWORD* returned) override {
        return timed([&] {
            return camera_.property_set()->Get(set, id, instance, instance_size, data, data_size, returned);
        });
    }
    HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID set, DWORD id, DWORD* support) override {
        return timed([&] { return camera_.property_set()->QuerySupported(set, id, support); });
    }

    clock_type::duration spent{};
    std::uint64_t calls = 0;

private:
    template <class Call>
    HRESULT timed(Call call) {
        const auto start = clock_type::now();
        const HRESULT result = call();
        spent += clock_type::now() - start;
        ++calls;
        return result;
    }

    simcam::simulated_camera& camera_;
};

class fullest_page {
public:
    explicit fullest_page(bool named) : camera_(simcam::make_camera(options(named))), driver_(*camera_) {
        sources_.filter = &driver_;
        sources_.groups = &groups_;
        sources_.built_in = ZELAdapterHelper::StaticItemTable();
        const auto& table = adapter_.get_item_table();
        sources_.described = {table.data(), table.size()};
    }

    void build(RecorderCanvas& canvas) {
        benchmark::DoNotOptimize(ZELPropUI::PageLayout(sources_, &canvas).BuildPage(false));
    }
    [[nodiscard]] timed_driver& driver() { return driver_; }

private:
    static simcam::camera_options options(bool named) {
        simcam::camera_options made = simcam_test::over_one_access_path(*simcam::ready_made("full"), named);
        made.keep_transcript = false;
        return made;
    }

    simcam::camera_ptr camera_;
    timed_driver driver_;
    genicam_adapter::GenICamAdapterDevice adapter_{&driver_};
    std::vector<std::wstring> groups_ = ZELPropUI::GroupsOf(ZELPropUI::PageName::Exposure);
    ZELPropUI::PageSources sources_;
};

// The best of many: what else the machine does only ever adds.
template <class Work>
void measure(benchmark::State& state, timed_driver& driver, Work work) {
    auto beyond = clock_type::duration::max();
    std::uint64_t calls = 0;
    for ([[maybe_unused]] const auto _ : state) {
        driver.spent = {};
        driver.calls = 0;
        const auto start = clock_type::now();
        work();
        beyond = std::min(beyond, clock_type::now() - start - driver.spent);
        calls = driver.calls;
    }
    state.counters["beyond_us"] = std::chrono::duration<double, std::micro>(beyond).count();
    state.counters["calls"] = static_cast<double>(calls);
}

void build(benchmark::State& state, bool named) {
    fullest_page page(named);
    measure(state, page.driver(), [&] {
        RecorderCanvas canvas;
        page.build(canvas);
    });
}

void refresh(benchmark::State& state, bool named) {
    fullest_page page(named);
    RecorderCanvas canvas;
    page.build(canvas);
    simcam_test::refresh(canvas);
    measure(state, page.driver(), [&] { simcam_test::refresh(canvas); });
}

// What a call of the driver asks for: the end of a feature's path, or a property that is no feature's.
std::string kind_of(const simcam::driver_call& call) {
    const std::size_t end = call.path.rfind('/');
    return end == std::string::npos ? "other" : call.path.substr(end + 1);
}

// The calls by which all pages are built and shown for the first time.
void open_pages(benchmark::State& state, bool named) {
    std::map<std::string, double> counts;
    for ([[maybe_unused]] const auto _ : state) {
        counts.clear();
        simcam_test::camera_on_pages seen(
            simcam_test::over_one_access_path(*simcam::ready_made("full"), named));
        static_cast<void>(seen.adapter->get_item_table());
        for (const ZELPropUI::PageName page : ZELPropUI::all_pages) {
            seen.camera->clear_transcript();
            RecorderCanvas canvas;
            seen.build(page, canvas);
            simcam_test::refresh(canvas);
            for (const simcam::driver_call& call : seen.camera->calls()) {
                ++counts["calls"];
                ++counts["of_" + kind_of(call)];
            }
        }
    }
    for (const auto& [name, count] : counts) state.counters[name] = count;
}

BENCHMARK_CAPTURE(open_pages, named, true)->Iterations(1);
BENCHMARK_CAPTURE(open_pages, registers, false)->Iterations(1);
BENCHMARK_CAPTURE(build, named, true);
BENCHMARK_CAPTURE(build, registers, false);
BENCHMARK_CAPTURE(refresh, named, true);
BENCHMARK_CAPTURE(refresh, registers, false);

}  // namespace
