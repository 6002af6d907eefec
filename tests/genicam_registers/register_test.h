#pragma once

#include "genicam/ieval.h"
#include "genicam/inode.h"
#include "tests/support/error_code.h"
#include "tests/support/test_document.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace register_test {

using namespace GenICam;
using test_support::Bytes;
using test_support::ChangeCounter;
using test_support::code;
using test_support::ReadOf;
using test_support::TestDocument;
using test_support::WriteOf;
using testing::ElementsAre;
using testing::IsEmpty;

/// What a success returns.
const std::error_code ok;

/// The value of a result that must have one.
template <class T>
T value_of(const result<T>& outcome) {
    EXPECT_TRUE(outcome.has_value()) << outcome.error().message();
    return outcome ? outcome.assume_value() : T();
}

/// The failure of a result; success where it has a value.
template <class T>
std::error_code failure_of(const result<T>& outcome) {
    return outcome ? std::error_code() : outcome.error();
}

/// An element named "r" of that kind.
inline std::string element(const std::string& kind, const std::string& children,
                           const std::string& name = "r") {
    return "<" + kind + " Name='" + name + "'>" + children + "</" + kind + ">";
}

inline std::string address(const std::string& text) { return "<Address>" + text + "</Address>"; }
inline std::string length(const std::string& text) { return "<Length>" + text + "</Length>"; }

/// `Address` 0x100 with a length.
inline std::string fixed_span(int bytes) { return address("0x100") + length(std::to_string(bytes)); }

inline std::string little_endian() { return "<Endianess>LittleEndian</Endianess>"; }

/// A node whose value is that number.
inline std::string number(const std::string& name, const std::string& text) {
    return element("Integer", "<Value>" + text + "</Value>", name);
}

/// A node that cannot be read: `not_implemented`, without a message.
inline std::string broken(const std::string& name) {
    return element("Integer", "<pValue>nowhere</pValue>", name);
}

/// What the load printed apart from what `broken` does.
inline std::vector<std::string> messages_of(const TestDocument& doc) {
    std::vector<std::string> messages;
    for (const std::string& message : doc.load_messages) {
        if (message.find("integer_pValue_type") == std::string::npos) messages.push_back(message);
    }
    return messages;
}

inline std::vector<std::string> dependents_of(const TestDocument& doc, const char* name) {
    std::vector<std::string> names;
    for (IEval* dependent : doc.Node(name).get_eval()->get_dependents()) {
        names.emplace_back(dependent->get_node()->get_name());
    }
    return names;
}

}  // namespace register_test
