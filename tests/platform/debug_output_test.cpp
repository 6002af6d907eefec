#include "platform/debug_output.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string heard;

void Hear(const char* text) { heard += text; }

TEST(DebugOutput, GoesToTheSinkWhereThereIsOne) {
    platform::set_debug_sink(Hear);
    platform::write_debug_output("a text\n");
    platform::set_debug_sink(nullptr);
    EXPECT_EQ(heard, "a text\n");
}

#ifndef _WIN32

TEST(DebugOutput, GoesToStandardErrorWhereThereIsNoChannel) {
    testing::internal::CaptureStderr();
    platform::write_debug_output("a text\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "a text\n");
}

#endif

}  // namespace
