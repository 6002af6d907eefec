#pragma once

#include <windows.h>

namespace ZELPropUI::Framework {

/// The device context of a window, or of the screen for null, for one query. It is given back by DeleteDC,
/// which ends a context of the cache for good; dialogs and the screen have no other kind.
class DeviceContext {
public:
    explicit DeviceContext(HWND window) noexcept : context_(GetDC(window)) {}
    DeviceContext(const DeviceContext&) = delete;
    DeviceContext& operator=(const DeviceContext&) = delete;
    ~DeviceContext() { DeleteDC(context_); }

    [[nodiscard]] HDC Get() const noexcept { return context_; }

private:
    HDC context_;
};

/// Selects a font, null allowed, for as long as it lives.
class SelectedFont {
public:
    SelectedFont(HDC context, HFONT font) noexcept
        : context_(context), before_(font != nullptr ? SelectObject(context, font) : nullptr) {}
    SelectedFont(const SelectedFont&) = delete;
    SelectedFont& operator=(const SelectedFont&) = delete;
    ~SelectedFont() {
        if (before_ != nullptr) SelectObject(context_, before_);
    }

private:
    HDC context_;
    HGDIOBJ before_;
};

/// Owns a font.
class Font {
public:
    explicit Font(HFONT font) noexcept : font_(font) {}
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;
    ~Font() {
        if (font_ != nullptr) DeleteObject(font_);
    }

    [[nodiscard]] HFONT Get() const noexcept { return font_; }

private:
    HFONT font_;
};

}  // namespace ZELPropUI::Framework
