// The line that tells how far a long run is.

#include "apps/inspect/progress.h"

#include <sstream>

#include <gtest/gtest.h>

namespace {

using selvane_inspect::progress;

TEST(Progress, ShowsItselfAndGoes) {
    std::ostringstream err;
    {
        progress line(err, true);
        line.show(1, 12, "a.xml");
        EXPECT_EQ(err.str(), "1 of 12: a.xml");
        line.show(2, 12, "b");
    }
    EXPECT_EQ(err.str(), "1 of 12: a.xml\r              \r2 of 12: b\r          \r");
}

TEST(Progress, ClearsOnlyWhatIsThere) {
    std::ostringstream err;
    progress line(err, true);
    line.clear();
    EXPECT_EQ(err.str(), "");
}

TEST(Progress, IsQuietWhereNobodyWatches) {
    std::ostringstream err;
    {
        progress line(err, false);
        line.show(1, 2, "a.xml");
    }
    EXPECT_EQ(err.str(), "");
}

}  // namespace
