#pragma once

#include "platform/hresult.h"

#include <exception>
#include <string>
#include <utility>

namespace genicam_adapter {

/// A failure of the adapter that its callers cannot go on from: a message and E_FAIL.
class hr_exception : public std::exception {
public:
    explicit hr_exception(std::string message) : message_(std::move(message)) {}
    [[nodiscard]] const char* what() const noexcept override { return message_.c_str(); }
    [[nodiscard]] HRESULT hr() const noexcept { return hr_; }

private:
    std::string message_;
    HRESULT hr_ = E_FAIL;
};

}  // namespace genicam_adapter
