#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace clients_test {

/// The property frame of another program, worked by mouse and keys.
class foreign_frame {
public:
    /// Waits until another process shows a frame with pages, for at most a minute.
    [[nodiscard]] static std::optional<foreign_frame> wait();

    [[nodiscard]] HWND handle() const noexcept { return frame_; }

    void click(HWND control) const;
    void press(WORD key, int times = 1) const;
    void type(const std::wstring& text) const;
    void close() const;

private:
    explicit foreign_frame(HWND frame) noexcept : frame_(frame) {}
    HWND frame_;
};

}  // namespace clients_test
