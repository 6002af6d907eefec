#pragma once

#include <cstddef>
#include <ostream>
#include <string>

namespace selvane_inspect {

/// A line on standard error that tells how far a long run has come, and is gone when it is over. Silent where
/// nobody watches.
class progress {
public:
    progress(std::ostream& err, bool shown) : err_(err), shown_(shown) {}
    ~progress() { clear(); }
    progress(const progress&) = delete;
    progress& operator=(const progress&) = delete;

    void show(std::size_t done, std::size_t all, const std::string& what);
    /// Makes room for other output.
    void clear();

private:
    std::ostream& err_;
    bool shown_;
    std::size_t width_ = 0;
};

}  // namespace selvane_inspect
