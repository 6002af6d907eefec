#include "server/counters.h"

#include "items/unknown.h"

namespace selvane_server {
namespace {

Counters counters;

}  // namespace

Counters& ServerCounters() noexcept { return counters; }

bool CanUnload() noexcept {
    return counters.server_locks <= 0 && counters.live_factories <= 0 &&
           ZELAdapterHelper::CUnknown::LiveObjects() <= 0;
}

}  // namespace selvane_server
