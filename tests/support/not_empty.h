#pragma once

#include <gtest/gtest.h>

#include <iterator>

namespace test_support {

/// A list that a test goes through: where it is empty, the test would have looked at nothing.
template <class List>
[[nodiscard]] List NotEmpty(List list) {
    EXPECT_NE(std::begin(list), std::end(list)) << "nothing to look at";
    return list;
}

}  // namespace test_support
