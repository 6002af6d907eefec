#pragma once

#include "apps/host/trace_filter.h"
#include "simcam/call_text.h"
#include "simcam/feature_server.h"

#include <set>
#include <utility>

namespace selvane_host {

/// Turns calls into lines. It reads along when descriptions are handed out, to know the kinds of the features
/// whose values pass later.
class call_printer {
public:
    explicit call_printer(line_sink sink) : sink_(std::move(sink)) {}

    /// Makes the call by `work`, which answers with an HRESULT, and prints it.
    template <class Work>
    HRESULT run(simcam::driver_call& call, Work work) {
        const unsigned long long start = now();
        try {
            call.result = work();
        } catch (...) {
            print(call, now() - start, true);
            throw;
        }
        print(call, now() - start, false);
        return call.result;
    }

    /// Reads a description that the driver has handed out, once for each index.
    void learn(const simcam::driver_call& call, std::string_view description);

private:
    [[nodiscard]] static unsigned long long now();
    void print(const simcam::driver_call& call, unsigned long long microseconds, bool threw) const;

    line_sink sink_;
    simcam::feature_server features_;
    std::set<simcam::bytes> known_requests_;
};

}  // namespace selvane_host
