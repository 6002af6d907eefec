#pragma once

#include <clocale>
#include <cstdlib>

namespace test_support {

/// What `strtod` gives in the C locale, whatever the locale of the process. Native tests alone.
inline double plain_strtod(const char* text, char** end) {
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtod_l(text, end, plain);
}

}  // namespace test_support
