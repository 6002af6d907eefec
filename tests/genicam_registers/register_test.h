#pragma once

#include "genicam/ieval.h"
#include "genicam/inode.h"
#include "tests/support/error_code.h"
#include "tests/support/not_empty.h"
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

/// A register "r" at 0x100, and its like "dyn" whose address is computed.
inline std::string both_registers(const std::string& kind, int size, const std::string& children) {
    return element(kind, fixed_span(size) + children) +
           element(kind, fixed_span(size) + children + "<pAddress>zero</pAddress>", "dyn") +
           number("zero", "0");
}

// The node of a register whose numbers are of that kind.
inline IInteger& node_for(std::int64_t, const TestDocument& doc, const char* name) {
    return doc.Integer(name);
}
inline IFloat& node_for(double, const TestDocument& doc, const char* name) { return doc.Float(name); }

/// The bytes of a register with these children, and the number that they are read as or that is written.
template <class Number>
struct register_row {
    Bytes bytes;
    std::string children;
    Number value;
};

template <class Number>
void expect_reads(const char* kind, const std::vector<register_row<Number>>& rows) {
    for (const register_row<Number>& row : test_support::NotEmpty(rows)) {
        const int size = static_cast<int>(row.bytes.size());
        TestDocument doc(both_registers(kind, size, row.children));
        doc.device.Put(0x100, row.bytes);
        for (const char* name : {"r", "dyn"}) {
            EXPECT_EQ(value_of(node_for(Number(), doc, name).get_val(0)), row.value) << size << row.children;
        }
        EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, size), ReadOf(0x100, size)));
    }
}

template <class Number>
void expect_writes(const char* kind, const std::vector<register_row<Number>>& rows) {
    for (const register_row<Number>& row : test_support::NotEmpty(rows)) {
        TestDocument doc(both_registers(kind, static_cast<int>(row.bytes.size()), row.children));
        for (const char* name : {"r", "dyn"})
            EXPECT_FALSE(node_for(Number(), doc, name).set_val(row.value, 0));
        EXPECT_THAT(doc.device.TakeAccesses(),
                    ElementsAre(WriteOf(0x100, row.bytes), WriteOf(0x100, row.bytes)))
            << row.value << row.children;
    }
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
