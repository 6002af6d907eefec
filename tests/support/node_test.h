#pragma once

#include "tests/support/error_code.h"
#include "tests/support/test_document.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// What tests of nodes have in common.
namespace node_test {

using namespace GenICam;
using test_support::ChangeCounter;
using test_support::code;
using test_support::TestDocument;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

/// The two kinds of nodes that hold numbers, for what is the same with both.
struct Integers {
    using node = IInteger;
    using number = std::int64_t;
    static constexpr const char* element = "Integer";
    static constexpr const char* class_prefix = "GenICam::integer_";
    static node& In(const TestDocument& doc, const char* name) { return doc.Integer(name); }
};
struct Floats {
    using node = IFloat;
    using number = double;
    static constexpr const char* element = "Float";
    static constexpr const char* class_prefix = "GenICam::float_";
    static node& In(const TestDocument& doc, const char* name) { return doc.Float(name); }
};
using Numbers = testing::Types<Integers, Floats>;

struct NumberName {
    template <class Kind>
    static std::string GetName(int) {
        return Kind::element;
    }
};

/// What a node answers that has no such limit.
constexpr std::nullopt_t none = std::nullopt;

template <class Number>
bool Answers(const result<Number>& told, const std::optional<Number>& expected) {
    if (!expected) return told.has_error() && told.error() == code(not_implemented);
    return told.has_value() && told.value() == *expected;
}

template <class Number>
std::string TextOf(const result<Number>& told) {
    return told.has_value() ? testing::PrintToString(told.value()) : told.error().message();
}

template <class Number>
struct Range {
    std::optional<Number> min, max, inc, default_value;
};

template <class Node, class Number>
testing::AssertionResult TellsRange(Node& node, const Range<Number>& expected) {
    const bool same = Answers(node.get_min(0), expected.min) && Answers(node.get_max(0), expected.max) &&
                      Answers(node.get_inc(0), expected.inc) &&
                      Answers(node.get_default(0), expected.default_value);
    return (same ? testing::AssertionSuccess() : testing::AssertionFailure())
           << "minimum " << TextOf(node.get_min(0)) << ", maximum " << TextOf(node.get_max(0))
           << ", increment " << TextOf(node.get_inc(0)) << ", default " << TextOf(node.get_default(0));
}

/// Whether a node tells this minimum, maximum, increment and default. `none`: it fails with
/// `not_implemented`.
inline testing::AssertionResult HasRange(IInteger& node, std::optional<std::int64_t> min,
                                         std::optional<std::int64_t> max, std::optional<std::int64_t> inc,
                                         std::optional<std::int64_t> default_value) {
    return TellsRange(node, Range<std::int64_t>{min, max, inc, default_value});
}
inline testing::AssertionResult HasRange(IFloat& node, std::optional<double> min, std::optional<double> max,
                                         std::optional<double> inc, std::optional<double> default_value) {
    return TellsRange(node, Range<double>{min, max, inc, default_value});
}

}  // namespace node_test
