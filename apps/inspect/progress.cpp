#include "apps/inspect/progress.h"

#include "platform/visible_text.h"

#include <fmt/format.h>

namespace selvane_inspect {

void progress::show(std::size_t done, std::size_t all, const std::string& what) {
    if (!shown_) return;
    clear();
    const std::string line = platform::visible_text(fmt::format("{} of {}: {}", done, all, what));
    err_ << line << std::flush;
    width_ = line.size();
}

void progress::clear() {
    if (width_ == 0) return;
    err_ << '\r' << std::string(width_, ' ') << '\r' << std::flush;
    width_ = 0;
}

}  // namespace selvane_inspect
