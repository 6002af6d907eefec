#include "simcam/fault.h"

#include <stdexcept>
#include <utility>

namespace simcam {

fault fail_nth(std::uint64_t n, HRESULT result) {
    fault made;
    made.first = n;
    made.count = 1;
    made.result = result;
    return made;
}

fault fail_when(call_filter when, HRESULT result) {
    fault made;
    made.when = std::move(when);
    made.result = result;
    return made;
}

fault lost_after(std::uint64_t n) {
    fault made;
    made.first = n + 1;
    made.result = camera_lost;
    return made;
}

fault act_at(std::uint64_t n, std::function<void()> action) {
    fault made;
    made.first = n;
    made.count = 1;
    made.action = std::move(action);
    return made;
}

fault throw_at(std::uint64_t n) {
    return act_at(n, [] { throw std::runtime_error("the driver throws"); });
}

fault claim_size(call_filter when, DWORD returned) {
    fault made;
    made.when = std::move(when);
    made.returned = returned;
    return made;
}

fault answer_bytes(call_filter when, bytes data) {
    fault made;
    made.when = std::move(when);
    made.data = std::move(data);
    return made;
}

}  // namespace simcam
