#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace selvane_host {

/// The platform's property frame while it is open, found by its tabs. Holds handles only.
class frame_window {
public:
    /// The frame of the calling thread; empty while there is none on the screen.
    [[nodiscard]] static std::optional<frame_window> find();

    [[nodiscard]] HWND handle() const noexcept { return frame_; }
    [[nodiscard]] int page_count() const noexcept;
    /// From 0; negative while no page is shown.
    [[nodiscard]] int shown_page() const noexcept;
    /// Shows a page as a click on its tab does.
    void show_page(int page) const noexcept;
    [[nodiscard]] std::string page_title(int page) const;
    /// Of the tab, in pixels of the screen.
    [[nodiscard]] RECT tab_rect(int page) const noexcept;
    /// Paints at once what is to be painted.
    void repaint() const noexcept;
    void close() const noexcept;

private:
    frame_window(HWND frame, HWND tabs) noexcept : frame_(frame), tabs_(tabs) {}

    HWND frame_;
    HWND tabs_;
};

/// The class of a window, as it was registered.
[[nodiscard]] std::wstring class_name(HWND window);
[[nodiscard]] std::string window_text(HWND window);

}  // namespace selvane_host
