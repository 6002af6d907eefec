// The line that tells how far a long run is.

#include "apps/inspect/command.h"
#include "tests/inspect/inspection.h"

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

// On a terminal what is told and how far it is share a line.
TEST(Progress, GoesBeforeAReportOrAFailure) {
    for (const std::string& file :
         {std::string("absent.xml"), inspect_test::ProjectDescription("identity")}) {
        std::ostringstream terminal;
        EXPECT_NE(selvane_inspect::run({"lint", file, file}, terminal, terminal, {true}), 1);
        const std::string line = "1 of 2: " + file;
        const std::string start = line + "\r" + std::string(line.size(), ' ') + "\r";
        EXPECT_EQ(terminal.str().substr(0, start.size()), start);
        EXPECT_GT(terminal.str().size(), start.size() + file.size());
    }
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
