#pragma once

#include "genicam/core/eval_value.h"
#include "genicam/inode.h"
#include "simcam/driver_call.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

namespace selvane_inspect {

/// A value on its way to a feature, read from text for the feature's kind.
class feature_write {
public:
    /// Integers in decimal or behind 0x, floats, true and false or 1 and 0, entries by name or number, text
    /// as it is, 1 for a command, bytes in hexadecimal for a register. Throws `inspect_error` for anything
    /// else.
    feature_write(GenICam::INode& feature, std::string_view text);

    /// Writes to a feature of the same kind: that one, or its like in another description of the same text.
    [[nodiscard]] std::error_code carry_out(GenICam::INode& feature) const;

private:
    void read_integer(std::string_view text);
    void read_float(std::string_view text);
    void read_truth(std::string_view text);
    void read_bytes(std::string_view text);
    void read_entry(GenICam::IEnumeration& feature, std::string_view text);

    GenICam::eval_value number_;
    std::string text_;
    simcam::bytes bytes_;
};

}  // namespace selvane_inspect
