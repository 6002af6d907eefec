#pragma once

#include <limits>

#include <malloc.h>

/// What was freed stays with the process: fresh memory costs time of the system's own, which differs from
/// load to load and with the size of a document, and the parser alone pays it as well.
inline void keep_memory() {
    constexpr int most = std::numeric_limits<int>::max();
    mallopt(M_MMAP_THRESHOLD, most);
    mallopt(M_TRIM_THRESHOLD, most);
}
